// Interest accrued since issue, in coupon periods: the part of the first period, the whole ones, the part of the last.
//
// ACCRINT and the odd first period walk alike and differ in this:
//
//                                    ACCRINT                        odd first period
//   one ratio, issue to target       target before the end of       target before it or on it
//                                    the first period
//   the last part is divided by      the period written last        the period that it starts in
#pragma once

#include "calendar/coupon_list.hpp"

namespace finance {

// max(n, 0) + first of a list that goes beyond its first period: n whole periods, less the one that ends on the target;
// first, the part of the first period that issue leaves, 0 when issue is a coupon date.
double whole_and_first_periods(const CouponList& list);

// The period in which the last part begins: the one that ends exactly on the target, or else the one written last.
const CouponPeriod& last_accrual_period(const CouponList& list);

}  // namespace finance
