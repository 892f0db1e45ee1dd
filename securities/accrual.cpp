#include "securities/accrual.hpp"

#include <algorithm>

#include "calendar/coupon_days.hpp"

namespace finance {

double whole_and_first_periods(const CouponList& list) {
    double n = list.wholePeriods;
    if ((list.boundaryFlags & END_ON_COUPON) != 0) n = n - 1.0;
    const CouponPeriod& period = list.firstPeriod;
    const bool issued_on_coupon = (list.boundaryFlags & START_ON_COUPON) != 0;
    const double first =
        issued_on_coupon ? 0.0 : CountTheCouponDays(list.startDate, &period.end, list.terms) / period.days;
    return std::max(n, 0.0) + first;
}

const CouponPeriod& last_accrual_period(const CouponList& list) {
    return list.exactEndPeriod != nullptr ? *list.exactEndPeriod : *list.currentPeriod;
}

}  // namespace finance
