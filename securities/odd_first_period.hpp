// ODDFPRICE and ODDFYIELD: the first period runs from issue to a first coupon date that is not a period away.
//
//  (1) issue, settlement, first coupon and maturity stand in this order of time. Two neighbours on one day: both answer
//      0, whatever the other arguments.
//  (2) The first coupon date must be a date of the maturity's schedule; if not, it is the argument at fault.
//  (3) Time is counted in coupon periods: A1 since issue, DFC in the first period, e = W + DSC1 from settlement to the
//      first coupon, and N periods from there to maturity.
#pragma once

#include "elementary/functions.hpp"
#include "lanes/lanes.hpp"
#include "lanes/rows.hpp"
#include "securities/coupon_sums.hpp"
#include "securities/security_record.hpp"

namespace finance {

// ---- Kernels

template <typename N>
struct OddFirstBond {
    double f;  // coupons a year
    N c;       // 100 rate / f
    N R;
    N A1;
    N DFC;
    N e;
    N later;  // N
};

template <typename N>
struct LaterCouponsOf {
    N sum;  // v^(e+1) + .. + v^(e+N)
    N t;    // the last of them; v^e where there are none

    void step(N v) {
        t = t * v;
        sum = sum + t;
    }
    friend LaterCouponsOf select(TruthOf<N> truth, const LaterCouponsOf& yes, const LaterCouponsOf& no) {
        return {select(truth, yes.sum, no.sum), select(truth, yes.t, no.t)};
    }
};

// Of the first coupon, c v^e, and of the later ones.
template <typename N>
N odd_first_price(const OddFirstBond<N>& bond, N first, N sum, N t) {
    return (sum - bond.A1) * bond.c + first * bond.DFC + t * bond.R;
}

// (sum of v^(e+1) .. v^(e+N) - A1) c + c v^e DFC + v^(e+N) R         v = 1 / (y/f + 1), t = v^e
//   where later_coupons(c t) adds up the later ones.
// Error  278 ulp of price plus twice c A1, worst of 1e4 draws, N from 1 to 240, against 200 bits
template <typename N, typename Later>
[[gnu::always_inline]] inline N odd_first_price(const OddFirstBond<N>& bond, N t, Later later_coupons) {
    const N first = bond.c * t;
    const LaterCouponsOf<N> later = later_coupons(first);
    return odd_first_price(bond, first, later.sum, later.t);
}

// F and F' of the sums over later coupons, for a last power t and its derivative g; of the first one: v^e, its derivative.
template <typename N>
N odd_first_excess(const OddFirstBond<N>& bond, N price, N first_t, N S, N t) {
    return bond.c * (bond.DFC * first_t + S - bond.A1) + bond.R * t - price;
}
template <typename N>
N odd_first_slope(const OddFirstBond<N>& bond, N first_g, N D, N g) {
    return bond.c * bond.DFC * first_g + bond.c * D + bond.R * g;
}

template <typename N, typename OverF>
[[gnu::always_inline]] inline void add_later_coupon(DiscountSumsOf<N>& now, N v, OverF over_f) {
    now.t = now.t * v;
    now.S = now.S + now.t;
    now.g = now.g * v - over_f(now.t * v);
    now.D = now.D + now.g;
}

// F(x)  = c (DFC v^e + S - A1) + R v^(e+N) - P, the price at yield x less the price          v = 1 / (x/f + 1), t0 = v^e
// F'(x) = c DFC g0 + c G + R g
//   where add(sums, g0) adds the later coupons to the sums before them.
// Error  F 216 ulp of its terms added up, F' 279 ulp, worst of 1e4 draws, N from 1 to 240, against 200 bits
template <typename N, typename Add>
[[gnu::always_inline]] inline YieldObjective<N> odd_first_price_less_given(const OddFirstBond<N>& bond, N price, N v,
                                                                           N t0, Add add) {
    const N g0 = -bond.e * t0 * v / bond.f;
    DiscountSumsOf<N> sums{0.0, t0, 0.0, g0};
    add(sums, g0);
    return {odd_first_excess(bond, price, t0, sums.S, sums.t), odd_first_slope(bond, g0, sums.D, sums.g)};
}

// ---- A row of a column (odd_first_columns.hpp)

struct OddFirstRow {
    OddFirstBond<double> bond;
    double given;  // yield or price
};

// Reads a row's arguments and walks its dates, as a call does. False where a call is to decide: what is given is refused,
// settled or rare.
bool read_odd_first_row(const RowBlock& block, std::size_t row, OddFirstRow& read);

}  // namespace finance
