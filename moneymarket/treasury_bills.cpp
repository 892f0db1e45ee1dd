#include "moneymarket/treasury_bills.hpp"

namespace finance {

FINANCE_HANDLER_OF(TBILLEQ)
FINANCE_HANDLER_OF(TBILLPRICE)
FINANCE_HANDLER_OF(TBILLYIELD)

}  // namespace finance
