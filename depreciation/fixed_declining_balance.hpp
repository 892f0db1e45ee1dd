// DB: a fixed rate of what is left, rounded to three decimals; the first year covers some months only.
//
//  (1) The rate takes cost to salvage over the life. It is not tested: where salvage / cost is negative it is what the
//      arithmetic makes of it.
//  (2) Periods count to one beyond the life, the partial last year. The months of the first year are not bounded.
#pragma once

#include "abi/arguments.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "depreciation/literal_steps.hpp"
#include "depreciation/rounding.hpp"
#include "elementary/functions.hpp"
#include "lanes/lanes.hpp"

namespace finance {

template <typename N>
struct DecliningYears {
    N accumulated;
    N amount;  // of the last period
};

// Periods 2 .. last, after the first one's amount.
DecliningYears<double> depreciate(double cost, double rate, double first, std::int64_t last);

// Of short walks; the others leave.
template <typename N>
DecliningYears<N> depreciate(N cost, N rate, N first, N last) {
    DecliningYears<N> now{first, first};
    for (double i = 2.0; i <= short_walk && any(last >= i); i += 1.0) {
        const auto walks = last >= i;
        now.amount = select(walks, (cost - now.accumulated) * rate, now.amount);
        now.accumulated = select(walks, now.accumulated + now.amount, now.accumulated);
    }
    return now;
}

// cost, salvage, life L, period p, months m of the first year
FINANCE_CALCULATION(DB) {
    using N = typename In::Number;
    N cost{};
    N salvage{};
    LongWholeOf<N> L{};
    LongWholeOf<N> p{};
    WholeOf<N> months = 12;
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.whole_from_1(3, L) || !in.whole_from_1(4, p) ||
        (in.given(5) && !in.count(5, months))) {
        return in.status();
    }
    if (in.refuses(4, p > L + 1) || in.leaves(as_number(p) > short_walk)) return in.status();
    const N m = as_number(months);
    const N rate0 = -zexpm1(elementary::log(salvage / cost) / as_number(L));
    const N rate = round_half_away(rate0 * 1000.0) / 1000.0;
    const N first = cost * m * rate / 12.0;
    const auto is_first = p == 1;
    if (all(is_first)) return in.answer(first);
    const auto is_beyond = p > L;
    const DecliningYears<N> years = depreciate(cost, rate, first, select(is_beyond, L, p));
    const N later = choose(
        is_beyond, [&] { return (12.0 - m) * rate * (cost - years.accumulated) / 12.0; }, [&] { return years.amount; });
    return in.answer(select(is_first, first, later));
}

}  // namespace finance
