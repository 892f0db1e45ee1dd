// The calculations of this folder.
#pragma once

#include "abi/handler.hpp"

namespace finance {

// straight_line.cpp
FINANCE_HANDLER(SLN);
FINANCE_HANDLER(SYD);

// fixed_declining_balance.cpp
FINANCE_HANDLER(DB);

// double_declining_balance.cpp
FINANCE_HANDLER(DDB);

// variable_declining_balance.cpp
FINANCE_HANDLER(VDB);

// prorated.cpp
FINANCE_HANDLER(AMORDEGRC);
FINANCE_HANDLER(AMORLINC);

}  // namespace finance
