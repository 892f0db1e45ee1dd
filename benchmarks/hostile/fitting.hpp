// Values fitted to the other values of their call, and calls put right.
#pragma once

#include "hostile/call_draws.hpp"

namespace finance::hostile {

// Coupons or periods a year: the frequency of the call, 1 where it has none.
double periods_a_year(const Call& call);

// One rate, amount, count or factor, where the call has one, made to fit what else is given.
void fit(Call& call, const Draw& draw);

// Values beyond their bounds moved within, values that are not in order exchanged.
void put_right(Call& call);

// The coupon date on or before `point` of a maturity's schedule, NaN where there is none.
double coupon_before(double point, double maturity, double frequency, const Draw& draw);

}  // namespace finance::hostile
