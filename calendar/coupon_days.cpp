#include "calendar/coupon_days.hpp"

#include <algorithm>

#include "abi/conversions.hpp"
#include "calendar/coupon_schedule.hpp"
#include "calendar/period_walk.hpp"
#include "calendar/proportion_sum.hpp"

namespace finance {

namespace {

double at_most(double days, double limit) { return limit < days ? limit : days; }

double plain_360(std::int32_t d1, std::int32_t m1, std::int32_t y1, std::int32_t d2, std::int32_t m2, std::int32_t y2) {
    const std::int64_t days = 360 * (std::int64_t{y2} - y1) + 30 * (std::int64_t{m2} - m1) + d2 - d1;
    return static_cast<double>(days);
}

// 30/360 with the month-end rule of coupon periods: a start at the end of a month, February excepted, begins the next
// one, and then an end on its month's last day or on the 30th does so too.
double month_end_360(const CalendarDate& start, const CalendarDate& end) {
    std::int32_t d1 = start.day;
    std::int32_t m1 = start.month;
    std::int32_t y1 = start.year;
    std::int32_t d2 = end.day;
    std::int32_t m2 = end.month;
    std::int32_t y2 = end.year;
    const std::int32_t L1 = zlastDay(y1, m1);
    const std::int32_t L2 = zlastDay(y2, m2);
    if (d1 == L1 && m1 != 2) {
        ToTheFirstOfTheNextMonth(&d1, &m1, &y1);
        if (d2 == L2 || d2 == 30) ToTheFirstOfTheNextMonth(&d2, &m2, &y2);
    }
    if ((m2 == 2 && d2 == L2) || d2 == 31) d2 = 30;
    return plain_360(std::min(d1, 30), m1, y1, d2, m2, y2);
}

double european_360(const CalendarDate& start, const CalendarDate& end) {
    return plain_360(std::min(start.day, 30), start.month, start.year, std::min(end.day, 30), end.month, end.year);
}

double actual_days(const CalendarDate& start, const CalendarDate& end) {
    return static_cast<double>(wrapping_add(end.julianDay, -start.julianDay));
}

// The count itself is what counts; the capped one stands beside it.
double count_beside_cap(double days, double year_length, CouponTerms* terms) {
    terms->dayCount = days;
    terms->cappedDayCount = at_most(days, terms->periodDays);
    terms->countYearLength = year_length;
    return days;
}

double count_30_360(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    if (terms->couponDayRule != 0) {
        terms->dayCount = static_cast<double>(zdays360(&start, &end, 0));
        return terms->dayCount;
    }
    const double days = at_most(month_end_360(start, end), terms->periodDays);
    return count_beside_cap(days, 360.0, terms);
}

}  // namespace

double CountTheCouponDays(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms) {
    switch (terms->basis) {
        case BASIS_30_360:
            return count_30_360(*start, *end, terms);
        case BASIS_ACTUAL:
            terms->dayCount = actual_days(*start, *end);
            terms->cappedDayCount = terms->dayCount;
            terms->countYearLength = 1.0;
            return terms->dayCount;
        case BASIS_ACT_360:
            return count_beside_cap(actual_days(*start, *end), 360.0, terms);
        case BASIS_ACT_365:
            return count_beside_cap(actual_days(*start, *end), 365.0, terms);
        case BASIS_EU30_360:
            return count_beside_cap(european_360(*start, *end), 360.0, terms);
        default:
            return terms->dayCount;
    }
}

double Compute1CouponProportion(const CalendarDate* start, const CalendarDate* end, const CalendarDate* periodStart,
                                const CalendarDate* periodEnd, CouponTerms* terms) {
    const double days = CountTheCouponDays(start, end, terms);
    const double proportion = terms->basis == BASIS_ACTUAL ? days / CountTheCouponDays(periodStart, periodEnd, terms)
                                                           : terms->dayCount / terms->periodDays;
    return terms->proportionFloor != 0 && proportion < 1.0 ? 1.0 : proportion;
}

double ComputeCouponProportions(const CalendarDate* start, const CalendarDate* end, const CalendarDate* maturity,
                                CouponTerms* terms) {
    CouponInfo info;
    coupons_around(&info, *start, *maturity, terms);
    if (before(*info.nextCoupon, *end)) {
        const double total =
            Compute1CouponProportion(start, info.nextCoupon, info.previousCoupon, info.nextCoupon, terms);
        return sum_of_proportions(total, *info.nextCoupon, *end, WalkEnd::on_or_after, terms);
    }
    // On a coupon date under ACTUAL the divisor is the empty period from that date to itself.
    const CalendarDate* period_end = info.coincidentCoupon != nullptr ? info.coincidentCoupon : info.nextCoupon;
    return Compute1CouponProportion(start, end, info.previousCoupon, period_end, terms);
}

double ComputeFromSettlementToNextCoupon(const CalendarDate* settlement, const CalendarDate* /*spare*/,
                                         const CalendarDate* maturity, CouponTerms* terms) {
    CouponInfo info;
    coupons_around(&info, *settlement, *maturity, terms);
    if (info.coincidentCoupon != nullptr) return 0.0;
    const double days = CountTheCouponDays(settlement, info.nextCoupon, terms);
    return days / period_days(*info.previousCoupon, *info.nextCoupon, terms);
}

}  // namespace finance
