// SLN and SYD: equal amounts, and amounts that fall by the sum of the years' digits.
//
//  (1) SLN's life is a number above 0; SYD's life and period are counts of at least 1.
//  (2) SYD does not compare the period with the life: beyond it amounts are zero or negative.
#pragma once

#include "abi/arguments.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// (cost - salvage) / life
FINANCE_CALCULATION(SLN) {
    typename In::Number cost{};
    typename In::Number salvage{};
    typename In::Number life{};
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.positive(3, life)) return in.status();
    return in.answer((cost - salvage) / life);
}

// (cost - salvage) ((L - P) + 1) / (L (1 + L) / 2)
FINANCE_CALCULATION(SYD) {
    using N = typename In::Number;
    N cost{};
    N salvage{};
    WholeOf<N> life{};
    WholeOf<N> period{};
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.count(3, life) || !in.count(4, period)) {
        return in.status();
    }
    const N L = as_number(life);
    const N P = as_number(period);
    return in.answer((cost - salvage) * ((L - P) + 1.0) * 2.0 / L / (1.0 + L));
}

}  // namespace finance
