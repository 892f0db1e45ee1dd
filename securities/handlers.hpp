// The calculations of this folder.
#pragma once

#include "abi/handler.hpp"

namespace finance {

// accrued_interest.cpp
FINANCE_HANDLER(ACCRINT);
FINANCE_HANDLER(ACCRINTM);

// price_and_yield.cpp
FINANCE_HANDLER(PRICE);
FINANCE_HANDLER(YIELD);

// duration.cpp
FINANCE_HANDLER(DURATION);
FINANCE_HANDLER(MDURATION);

// odd_first_period.cpp
FINANCE_HANDLER(ODDFPRICE);
FINANCE_HANDLER(ODDFYIELD);

// odd_last_period.cpp
FINANCE_HANDLER(ODDLPRICE);
FINANCE_HANDLER(ODDLYIELD);

// interest_at_maturity.cpp
FINANCE_HANDLER(PRICEMAT);
FINANCE_HANDLER(YIELDMAT);

}  // namespace finance
