#include "moneymarket/fractional_prices.hpp"

namespace finance {

FINANCE_HANDLER_OF(DOLLARDE)
FINANCE_HANDLER_OF(DOLLARFR)

}  // namespace finance
