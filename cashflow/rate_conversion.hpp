// EFFECT and NOMINAL: one rate compounded.
//
//  (1) Rates are not bounded. Below -1 the logarithm answers with a NaN, at -1 with an infinity; both are answers.
//  (2) EFFECT keeps the periods per year in 32 bits, NOMINAL in 64.
#pragma once

#include "abi/arguments.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// (1 + rate/m)^m - 1
FINANCE_CALCULATION(EFFECT) {
    using N = typename In::Number;
    N rate{};
    WholeOf<N> periods_per_year{};
    if (!in.number(1, rate) || !in.count(2, periods_per_year)) return in.status();
    const N m = as_number(periods_per_year);
    return in.answer(zexpm1(m * zln1px(rate / m)));
}

// m ((1 + rate)^(1/m) - 1)
FINANCE_CALCULATION(NOMINAL) {
    using N = typename In::Number;
    N rate{};
    LongWholeOf<N> periods_per_year{};
    if (!in.number(1, rate) || !in.whole_from_1(2, periods_per_year)) return in.status();
    const N m = as_number(periods_per_year);
    return in.answer(m * zexpm1(zln1px(rate) / m));
}

}  // namespace finance
