// Sums over the coupons of a regular bond, and of several side by side: their steps are the same, and a lane that has its
// last term keeps its sums. One bond's may end early, or in a closed form (long_sums.hpp); bonds of so many coupons that
// this pays are left to single calls.
#pragma once

#include <algorithm>
#include <cstdint>

#include "abi/conversions.hpp"
#include "cashflow/newton_search.hpp"
#include "lanes/lanes.hpp"
#include "securities/long_sums.hpp"

namespace finance {

// Coupons of rows side by side: a hundred years of months, and no more than calls add term by term in each of a search's
// hundred sums, denormal ones too. (In builds that walk short that is the less.)
constexpr double most_coupons_in_lanes = std::min(1200.0, longest_literal_search / (128.0 * cost_of_denormals));
template <typename Set>
LaneTruth<Set> has_too_many_coupons(Lanes<Set> n) {
    return n > most_coupons_in_lanes;
}

// The terms after k up to n of each lane, by step(sums). Counted in whole numbers, which leaves registers to the sums.
template <typename Sums, typename Set, typename Step>
[[gnu::always_inline]] inline void walk_lanes(Sums& sums, std::int32_t k, Lanes<Set> n, Step step) {
    double fewest = n[0];
    double most = n[0];
    for (int lane = 1; lane < Set::width; ++lane) {
        fewest = std::min(fewest, n[lane]);
        most = std::max(most, n[lane]);
    }
    const std::int32_t end = truncate_to_int32(std::min(most, most_coupons_in_lanes));
    const std::int32_t end_of_all = std::min(truncate_to_int32(fewest), end);
    if (end > k) count_steps(end - k);
    for (; k < end_of_all; ++k) step(sums);
    for (; k < end; ++k) {
        Sums next = sums;
        step(next);
        sums = select(Lanes<Set>{static_cast<double>(k)} < n, next, sums);
    }
}

// ---- 1 + v + .. + v^(n-1), by a running product

template <typename N>
struct PowersSum {
    N S = 0.0;
    N term = 1.0;  // the next one

    void step(N v) {
        S = S + term;
        term = term * v;
    }
    friend PowersSum select(TruthOf<N> truth, const PowersSum& yes, const PowersSum& no) {
        return {select(truth, yes.S, no.S), select(truth, yes.term, no.term)};
    }
};

double sum_of_discounts(double v, double n);

template <typename Set>
Lanes<Set> sum_of_discounts(Lanes<Set> v, Lanes<Set> n) {
    PowersSum<Lanes<Set>> sums;
    walk_lanes(sums, 0, n, [v](auto& now) { now.step(v); });
    return sums.S;
}

// ---- What a search asks of a trial yield: a price less the one given, and its derivative by the yield

template <typename N>
struct YieldObjective {
    N value;
    N derivative;
};

// Where yields are found, from 0.1, of those in lanes that are searched for; price_less_given(s) is asked at s = 1 + yield/f.
template <typename Set, typename Objective>
[[gnu::always_inline]] inline LaneTruth<Set> search_yields(Lanes<Set>& yield, LaneTruth<Set> searching, double f,
                                                           Objective price_less_given) {
    using N = Lanes<Set>;
    NewtonProblemOf<N> problem;
    problem.start = 0.1;
    problem.residualScale = 0.0;
    const auto found = newton_search<N>(problem, searching, [&](NewtonProblemOf<N>& now, LaneTruth<Set>) {
        const N s = 1.0 + now.x / f;
        const YieldObjective<N> at = price_less_given(s);
        now.value = at.value;
        now.derivative = at.derivative;
        return !(s < smallest_that_counts);
    });
    yield = problem.x;
    return found;
}

}  // namespace finance
