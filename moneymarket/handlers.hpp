// The calculations of this folder.
#pragma once

#include "abi/handler.hpp"

namespace finance {

// treasury_bills.cpp
FINANCE_HANDLER(TBILLEQ);
FINANCE_HANDLER(TBILLPRICE);
FINANCE_HANDLER(TBILLYIELD);

// fractional_prices.cpp
FINANCE_HANDLER(DOLLARDE);
FINANCE_HANDLER(DOLLARFR);

}  // namespace finance
