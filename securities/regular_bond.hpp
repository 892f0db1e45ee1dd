// PRICE and YIELD: a security with N coupons to be paid, in regular periods.
//
//  (1) f is the number of coupons a year, c = 100 rate / f the coupon, R the redemption, v = 1 / (1 + y/f).
//  (2) A of the E days of the coupon period have accrued at settlement; E - A remain, whatever a count of them says. On
//      a coupon date, and where nothing would remain, nothing has accrued.
//  (3) Settlement on maturity: both answer 0, whatever the other arguments. Settlement after it is refused.
//  (4) With one coupon left interest is simple, and YIELD is a closed form; otherwise it is searched from 0.1.
#pragma once

#include "elementary/functions.hpp"
#include "lanes/lanes.hpp"
#include "securities/coupon_sums.hpp"
#include "securities/security_record.hpp"

namespace finance {

// ---- Kernels

// The quantities of (2).
template <typename N>
[[gnu::always_inline]] inline void find_period_fractions(SecurityComputeRecordOf<N>& record) {
    const auto on_coupon_date = find_coupon_quantities(&record);
    const N E = record.daysInPeriod;
    const N A = record.daysAccrued;
    const auto whole = either((E - A) / E <= 0.0, on_coupon_date);
    record.daysAccrued = select(whole, N{0.0}, A);
    record.daysToNextCoupon = select(whole, E, E - A);
    record.accruedFraction = record.daysAccrued / E;
    record.remainingFraction = record.daysToNextCoupon / E;
}

// What a price is made of.
template <typename N>
struct PriceParts {
    N v;
    N n;  // coupons
    N c;
    N R;
    N d;    // of the period remaining
    N a;    // and accrued
    N y_f;  // y/f
    TruthOf<N> has_factor;
};

// Guard  1 + y/f at least 2^-26.5
template <typename N>
[[gnu::always_inline]] inline PriceParts<N> price_parts(SecurityComputeRecordOf<N>& record) {
    find_period_fractions(record);
    const double f = clamped_frequency(*record.terms);
    const N y_f = record.yield / f;
    const N v = 1.0 / (1.0 + y_f);
    const auto no_factor = either(1.0 + y_f < smallest_that_counts, -y_f * v <= -1.0);
    return {v,
            record.couponCount,
            100.0 * record.rate / f,
            record.redemption,
            record.remainingFraction,
            record.accruedFraction,
            y_f,
            !no_factor};
}

template <typename N>
N price_with_one_coupon(const PriceParts<N>& p) {
    return (p.R + p.c) / (1.0 + p.y_f * p.d) - p.c * p.a;
}

// Of v^d, R v^(n-1), c, 1 + v + .. + v^(n-1) and c a.
template <typename N>
N price_with_more_coupons(N first, N last, N c, N sum, N accrued) {
    return first * (last + c * sum) - accrued;
}

// One coupon left   (R + c) / (1 + (y/f) d) - c a
// More              v^d (R v^(N-1) + c (1 + v + .. + v^(N-1))) - c a
//   with a and d the fractions of the period accrued and remaining
// Error  one coupon left 2.3 ulp, more 307 ulp, of price plus twice c a: worst of 1e4 draws, 1 to 360 coupons, 200 bits
inline bool price_of_regular_bond(SecurityComputeRecord& record) {
    const PriceParts<double> p = price_parts(record);
    if (!p.has_factor) return false;
    if (p.n == 1.0) {
        record.price = price_with_one_coupon(p);
    } else if (p.n > 1.0) {
        const double first = elementary::pow(p.v, p.d);
        const double last = p.R * elementary::pow(p.v, p.n - 1.0);
        record.price = price_with_more_coupons(first, last, p.c, sum_of_discounts(p.v, p.n), p.c * p.a);
    } else {
        record.price = 0.0 * record.price - p.c * p.a;
    }
    return true;
}

// Simple interest to the one coupon left; the frequency as it is stored.
// Error  2.5 ulp of the yield with ratio + 1 for ratio - 1, worst of 1e4 draws, against 200 bits
template <typename N>
N yield_of_last_period(const SecurityComputeRecordOf<N>& record) {
    const double f0 = record.terms->frequency;
    const N E = record.daysInPeriod;
    const N a = record.daysAccrued / E;
    const N ratio = (record.redemption / 100.0 + record.rate / f0) / (record.price / 100.0 + a * record.rate / f0);
    return (ratio - 1.0) * f0 * E / record.daysToNextCoupon;
}

// F and F' of the sums, for a last power t and its derivative g.
template <typename N>
YieldObjective<N> price_and_slope(const SecurityComputeRecordOf<N>& record, N c, const DiscountSumsOf<N>& sums, N t,
                                  N g) {
    const N R = record.redemption;
    return {c * (sums.S - record.accruedFraction) + (R * t - record.price), c * sums.D + R * g};
}

// F(x)  = c (S - a) + (R t - P), the price at yield x less the price
// F'(x) = c D + R g
// Error  F 312 ulp of its terms added up, F' 340 ulp, worst of 1e4 draws, 2 to 360 coupons, against 200 bits
//   for s = 1 + x/f; the coupons after the first are added by add(sums, v, f, c).
template <typename N, typename Add>
[[gnu::always_inline]] inline YieldObjective<N> price_less_given(const SecurityComputeRecordOf<N>& record, N s,
                                                                 Add add) {
    const double f = clamped_frequency(*record.terms);
    const N c = 100.0 * record.rate / f;
    const N v = 1.0 / s;
    const N first = elementary::pow(v, record.remainingFraction);
    const N slope = first * v * (-record.remainingFraction) / f;
    DiscountSumsOf<N> sums{first, first, slope, slope};
    add(sums, v, f, c);
    return price_and_slope(record, c, sums, sums.t, sums.g);
}

template <typename Set>
LaneTruth<Set> search_yield(SecurityComputeRecordOf<Lanes<Set>>& record, LaneTruth<Set> searching) {
    using N = Lanes<Set>;
    return search_yields(record.yield, searching, clamped_frequency(*record.terms), [&record](N s) {
        return price_less_given(record, s, [&record](DiscountSumsOf<N>& sums, N v, double f, N) {
            N e = record.remainingFraction;
            with_division_by(f, [&](auto over_f) {
                walk_lanes(sums, 1, record.couponCount, [&](DiscountSumsOf<N>& terms) {
                    e = e + 1.0;
                    terms.step(v, e, over_f);
                });
            });
        });
    });
}

// ---- Calculations (of rows of columns: bond_columns.hpp)

// settlement, maturity, rate, given (yield or price), redemption, frequency, basis
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_regular_bond(In& in, SecurityOf<N>& bond, bool (In::*take)(int, N&), N& given) {
    return read_settlement_and_maturity(in, bond) && !in.settles(same_day(bond.settlement, bond.maturity), 0.0) &&
           read_bond_terms(in, 3, take, given, bond);
}

}  // namespace finance
