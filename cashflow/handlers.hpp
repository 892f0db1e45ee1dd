// The calculations of this folder.
#pragma once

#include "abi/handler.hpp"

namespace finance {

// annuities.cpp
FINANCE_HANDLER(CUMIPMT);
FINANCE_HANDLER(CUMPRINC);
FINANCE_HANDLER(FV);
FINANCE_HANDLER(IPMT);
FINANCE_HANDLER(ISPMT);
FINANCE_HANDLER(PMT);
FINANCE_HANDLER(PPMT);
FINANCE_HANDLER(PV);

}  // namespace finance
