// Depreciation for one accounting period of an asset bought part-way through the first one.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

struct ProratedRecord {
    CalendarDate* purchase;  // of both dates only julianDay need be set
    CalendarDate* firstPeriodEnd;
    CouponTerms* terms;
    std::int32_t period;  // 0: the first, prorated one
    double cost;
    double salvage;
    double rate;  // per full period
    double result;
};

int zComputeAMORLINC(ProratedRecord* record);   // result; always 0
int zComputeAMORDEGRC(ProratedRecord* record);  // result; always 0

}  // namespace finance
