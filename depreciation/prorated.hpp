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

// The amount of the last of `periods` periods (at least 1): each takes r of what is left, rounded half away from zero,
// nothing where salvage is more than what is left. In the last but one of n periods r becomes 0.5, in the last 1.
//
// Runs of equal amounts are passed over at once. Where that leaves more than ten million steps the amount is formed
// from what would be left without rounding, and is within one unit; in the periods where salvage is crossed, it is that
// or 0.
double degressive_amount(double remaining, double salvage, double r, std::int32_t n, std::int32_t periods);

}  // namespace finance
