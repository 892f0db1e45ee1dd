#include "securities/coupon_quantities.hpp"

#include "calendar/coupon_schedule.hpp"

namespace finance {

bool find_coupon_quantities(SecurityComputeRecord* record) {
    constexpr std::uint32_t quantities = REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_IN_PERIOD | REQUEST_COUNT;
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    CouponInfo info;
    record->couponCount = coupons_around(&info, *record->settlement, *record->maturity, record->terms, quantities);
    record->daysInPeriod = info.daysInPeriod;
    record->daysAccrued = info.daysSincePrevious;
    return info.coincidentCoupon != nullptr;
}

}  // namespace finance
