#include "securities/coupon_quantities.hpp"

#include "calendar/coupon_schedule.hpp"

namespace finance {

bool find_coupon_quantities(SecurityComputeRecord* record) {
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
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

}  // namespace finance
