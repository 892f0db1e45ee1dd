#include "securities/coupon_quantities.hpp"

#include "calendar/coupon_days.hpp"
#include "calendar/coupon_schedule.hpp"
#include "calendar/plain_schedule.hpp"

namespace finance {

namespace {

bool find_in_schedule(SecurityComputeRecord* record) {
    record->couponCount = CountTheCoupons(record->settlement, record->maturity, record->maturity, record->terms);
    CouponInfo info{};
    info.settlement = record->settlement;
    info.maturity = record->maturity;
    info.terms = record->terms;
    info.requests = REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_IN_PERIOD;
    FindCouponInfo(&info);
    record->daysInPeriod = info.daysInPeriod;
    record->daysAccrued = info.daysSincePrevious;
    return info.coincidentCoupon != nullptr;
}

// The next coupon date is made only where it is asked for its day.
bool find_in_plain_schedule(SecurityComputeRecord* record, const PlainSchedule& plain) {
    CouponTerms* terms = record->terms;
    CalendarDate previous;
    plain.set_coupon(&previous, plain.later() + 1);
    record->couponCount = plain.later() + 1;
    record->daysInPeriod = terms->periodDays;
    if (terms->basis == BASIS_ACTUAL) {
        CalendarDate next;
        plain.set_coupon(&next, plain.later());
        record->daysInPeriod = period_days(previous, next, terms);
    }
    record->daysAccrued = days_between(previous, *record->settlement, *terms);
    return plain.on_coupon();
}

}  // namespace

// Dates beyond all years may come out of order from their splitting; the plain count is for settlement before maturity.
bool find_coupon_quantities(SecurityComputeRecord* record) {
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    const CalendarDate& settlement = *record->settlement;
    const CalendarDate& maturity = *record->maturity;
    const bool plain = PlainSchedule::applies(settlement, maturity, *record->terms) && before(settlement, maturity);
    return plain ? find_in_plain_schedule(record, {settlement, maturity, *record->terms}) : find_in_schedule(record);
}

}  // namespace finance
