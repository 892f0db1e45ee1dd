// The schedule's rules step by step, with no step left out: what searches, lists and sums must agree with bit for bit.
// Slow on purpose. The single step (zAdvanceDate) and the day counts are the module's own; they have their own tests.
#pragma once

#include "calendar/coupon_list.hpp"
#include "calendar/coupon_schedule.hpp"
#include "calendar/proportion_sum.hpp"

namespace finance::test::literal {

void find_coupons(CouponInfo* info);
double count_coupons(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms);
double count_whole_coupons(const CalendarDate& date, const CalendarDate& maturity, const CouponTerms& terms);

// For frequencies with months per period only: without, dates do not come in order.
void list_coupons(CouponList* list);
double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms);

}  // namespace finance::test::literal
