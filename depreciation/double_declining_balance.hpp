// DDB: a multiple of the straight-line rate of what is left, never below salvage.
//
//  (1) The period is at least 1 and at most the life, which need not be whole.
//  (2) A factor that is absent, missing, zero or negative is 2.
//  (3) A salvage above the cost leaves nothing to depreciate.
#pragma once

#include "abi/arguments.hpp"
#include "depreciation/declining_spans.hpp"
#include "depreciation/literal_steps.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// What a period takes of what is left.
template <typename N>
N amount_after(const DecliningAssetOf<N>& a, N salvage, N accumulated) {
    const N remaining = a.cost - accumulated;
    return choose(
        salvage > remaining, [] { return N{0.0}; },
        [&] {
            const N declining = remaining * a.factor / a.life;
            const N everything = a.depreciable - accumulated;
            return select(everything < declining, everything, declining);
        });
}

// The amount of the last of `period` periods, a short walk. (One call has a walk of its own, which knows how to end.)
template <typename N>
N amount_of_period(const DecliningAssetOf<N>& a, N salvage, N period) {
    N accumulated = 0.0;
    N amount = 0.0;
    for (double i = 1.0; i <= short_walk && any(period >= i); i += 1.0) {
        const N d = amount_after(a, salvage, accumulated);
        amount = select(period == i, d, amount);
        accumulated += d;
    }
    return amount;
}

// cost, salvage, life, period, factor
FINANCE_CALCULATION(DDB) {
    using N = typename In::Number;
    DecliningAssetOf<N> a{};
    N salvage{};
    WholeOf<N> period{};
    if (!in.number(1, a.cost) || !in.number(2, salvage) || !in.positive(3, a.life) || !in.count(4, period)) {
        return in.status();
    }
    if (in.refuses(4, !(as_number(period) <= a.life)) || in.leaves(as_number(period) > short_walk)) return in.status();
    constexpr double usual_factor = 2.0;
    in.optional_number(5, a.factor);
    a.factor = select(a.factor > 0.0, a.factor, N{usual_factor});
    a.depreciable = a.cost - salvage;
    const auto nothing = salvage > a.cost;
    if (all(nothing)) return in.answer(N{0.0});
    return in.answer(select(nothing, N{0.0}, amount_of_period(a, salvage, period)));
}

}  // namespace finance
