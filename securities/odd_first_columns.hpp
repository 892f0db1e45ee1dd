// ODDFPRICE and ODDFYIELD of the rows of a block. Arguments are read and dates walked row by row, as of calls, which is
// most of a price; rows of as many coupons go side by side through sums and searches.
#pragma once

#include <bit>

#include "lanes/staged_rows.hpp"
#include "securities/odd_first_period.hpp"

namespace finance {

template <typename N>
struct OddFirstBonds {
    OddFirstBond<N> bond;
    N given;  // yields or prices
};

// In one place for prices and yields: in each of them it would be the larger part.
template <typename Set>
[[gnu::noinline]] void set_power(Lanes<Set>& power, const Lanes<Set>& v, const Lanes<Set>& e) {
    power = elementary::pow(v, e);
}

template <typename Set>
LaneTruth<Set> price_odd_first(const OddFirstBonds<Lanes<Set>>& of, LaneTruth<Set> wanted, Lanes<Set>& price) {
    using N = Lanes<Set>;
    const N s = of.given / of.bond.f + 1.0;
    const N v = 1.0 / s;
    N first_t;
    set_power(first_t, v, of.bond.e);
    price = odd_first_price(of.bond, first_t, [&](N) {
        LaterCouponsOf<N> sums{0.0, first_t};
        walk_lanes(sums, 0, of.bond.later, [v](LaterCouponsOf<N>& now) { now.step(v); });
        return sums;
    });
    return wanted & !(s < smallest_that_counts);
}

template <typename Set>
LaneTruth<Set> search_odd_first_yield(const OddFirstBonds<Lanes<Set>>& of, LaneTruth<Set> searching,
                                      Lanes<Set>& yield) {
    using N = Lanes<Set>;
    return search_yields(yield, searching, of.bond.f, [&of](N s) {
        const N v = 1.0 / s;
        N first_t;
        set_power(first_t, v, of.bond.e);
        return odd_first_price_less_given(of.bond, of.given, v, first_t, [&of, v](DiscountSumsOf<N>& sums, N) {
            with_division_by(of.bond.f, [&](auto over_f) {
                walk_lanes(sums, 0, of.bond.later,
                           [v, over_f](DiscountSumsOf<N>& terms) { add_later_coupon(terms, v, over_f); });
            });
        });
    });
}

// Prices, or the yields of prices.
template <typename TwoVectors>
std::uint64_t odd_first_periods_of_block(const RowBlock& block, bool yields) {
    enum Figure : std::size_t { f, n, c, R, A1, DFC, e, given, figures };
    StagedRows<figures> staged;
    for (std::uint64_t left = block.wanted; left != 0; left &= left - 1) {
        const auto row = static_cast<std::size_t>(std::countr_zero(left));
        OddFirstRow read;
        if (!read_odd_first_row(block, row, read)) continue;
        const OddFirstBond<double>& bond = read.bond;
        staged.lay_down(row, {bond.f, bond.later, bond.c, bond.R, bond.A1, bond.DFC, bond.e, read.given});
    }
    return staged.template solve_in_order<
        TwoVectors>(f, n, block.results, [yields](const auto& of, const auto& wanted, auto& answer) {
        const OddFirstBonds<Lanes<TwoVectors>> some{{of[f][0], of[c], of[R], of[A1], of[DFC], of[e], of[n]}, of[given]};
        return yields ? search_odd_first_yield(some, wanted, answer) : price_odd_first(some, wanted, answer);
    });
}

}  // namespace finance
