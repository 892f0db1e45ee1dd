// The calculations of straight_line.hpp for one call.
#include "depreciation/straight_line.hpp"

namespace finance {

FINANCE_HANDLER_OF(SLN)
FINANCE_HANDLER_OF(SYD)

}  // namespace finance
