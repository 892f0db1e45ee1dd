// Days inside a coupon period, and stretches of time as fractions of one.
#pragma once

#include "calendar/day_count.hpp"

namespace finance {

// Days of the basis between two dates of one coupon period; how it differs from the other counts: day_count.hpp.
// Writes dayCount, and where the basis has them cappedDayCount and countYearLength.
double CountTheCouponDays(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms);

// Days of a whole coupon period: counted for ACTUAL, else periodDays.
inline double period_days(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    return terms->basis == BASIS_ACTUAL ? CountTheCouponDays(&start, &end, terms) : terms->periodDays;
}

// start..end as a fraction of the period; with proportionFloor at least 1.
double Compute1CouponProportion(const CalendarDate* start, const CalendarDate* end, const CalendarDate* periodStart,
                                const CalendarDate* periodEnd, CouponTerms* terms);

// start..end in coupon periods: the fraction before the first coupon date, whole periods by their days, the fraction
// after the last.
double ComputeCouponProportions(const CalendarDate* start, const CalendarDate* end, const CalendarDate* maturity,
                                CouponTerms* terms);

// settlement to the next coupon date as a fraction of the period; 0 on a coupon date. The second argument is not read.
double ComputeFromSettlementToNextCoupon(const CalendarDate* settlement, const CalendarDate* spare,
                                         const CalendarDate* maturity, CouponTerms* terms);

}  // namespace finance
