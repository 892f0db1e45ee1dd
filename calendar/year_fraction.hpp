// The fraction of a year between two dates.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

struct YearFractionRecord {
    CalendarDate start;
    CalendarDate end;
    CouponTerms terms;
    double fraction;
};

// fraction from the two dates, of which only julianDay need be set. Returns 0, or 1 for a negative fraction.
int zComputeYEARFRAC(YearFractionRecord* record);

}  // namespace finance
