// ACCRINTM: interest accrued from issue to settlement, all of it paid at maturity. ACCRINT, on coupons, walks from one
// coupon date to the next (accrued_interest.cpp).
//
//  (1) Settlement may not be before issue. On the day of issue nothing has accrued, whatever the other arguments.
//  (2) A call that ends before the par value has one of 1000. (The dispatcher lets none through.)
#pragma once

#include "calendar/date_arguments.hpp"
#include "calendar/day_count_in_lanes.hpp"

namespace finance {

template <typename In, typename N>
[[gnu::always_inline]] inline bool read_par(In& in, int i, N& par) {
    constexpr double usual_par = 1000.0;
    par = usual_par;
    return !in.given(i) || in.positive(i, par);
}

// issue, settlement, rate, par, basis
//   rate t par for t years since issue
// Error  2 ulp worst of 1e4 draws, up to 4000 days, against 200 bits
FINANCE_CALCULATION(ACCRINTM) {
    using N = typename In::Number;
    CalendarDateOf<N> issue{};
    CalendarDateOf<N> settlement{};
    CouponTerms terms{};
    N rate;
    N par;
    if (!read_date(in, 1, issue) || !read_date(in, 2, settlement) || in.refuses(2, before(settlement, issue)) ||
        in.settles(same_day(settlement, issue), 0.0) || !in.positive(3, rate) || !read_par(in, 4, par)) {
        return in.status();
    }
    terms.frequency = 1;
    terms.stepUnit = STEP_YEARS;
    if (!in.basis(5, terms.basis)) return in.status();
    const N t = years_between(issue, settlement, terms);
    return in.answer_where(!(t < 0.0), rate * t * par);
}

}  // namespace finance
