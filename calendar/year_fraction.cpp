#include "calendar/year_fraction.hpp"

namespace finance {

FINANCE_HANDLER_OF(YEARFRAC)

int zComputeYEARFRAC(YearFractionRecord* record) { return year_fraction(*record) ? 0 : 1; }

}  // namespace finance
