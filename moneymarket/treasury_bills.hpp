// TBILLEQ, TBILLPRICE, TBILLYIELD: discount bills, quoted on 360 days.
//
//  (1) Dates are plain day numbers above 0; they need not be whole, and the term is not bounded.
//  (2) Maturity after settlement: TBILLEQ looks at it after its rate, TBILLYIELD before its price, TBILLPRICE never.
//  (3) D is the term in days.
#pragma once

#include "abi/arguments.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// A term above half a year: the yield that a coupon after half a year would make equivalent. False where the root has
// none.
template <typename N>
TruthOf<N> long_bill_yield(N r, N D, N& yield) {
    const N t = D / 365.0;
    const N q = r * D / (r * D - 360.0);
    const N discriminant = t * t - (2.0 * t - 1.0) * q;
    const auto has_none = discriminant < 0.0;
    yield = choose(
        has_none, [] { return N{0.0}; }, [&] { return (sqrt(discriminant) - t) / (t - 0.5); });
    return !has_none;
}

// 365 r / (360 - r D) for up to 182 days. Without a root the result is left as the caller had it.
FINANCE_CALCULATION(TBILLEQ) {
    using N = typename In::Number;
    constexpr double longest_short_bill = 182.0;
    N settlement;
    N maturity;
    N r;
    if (!in.positive(1, settlement) || !in.positive(2, maturity) || !in.positive(3, r) ||
        in.refuses(2, settlement >= maturity)) {
        return in.status();
    }
    const N D = maturity - settlement;
    const auto is_short = D <= longest_short_bill;
    auto answered = is_short;
    const N yield = choose(
        is_short, [&] { return 365.0 * r / (360.0 - r * D); },
        [&] {
            N of_long_bill;
            answered = either(is_short, long_bill_yield(r, D, of_long_bill));
            return of_long_bill;
        });
    return in.answer_or_leave(answered, yield);
}

// (1 - r D / 360) 100
FINANCE_CALCULATION(TBILLPRICE) {
    using N = typename In::Number;
    N settlement;
    N maturity;
    N r;
    if (!in.positive(1, settlement) || !in.positive(2, maturity) || !in.positive(3, r)) return in.status();
    const N D = maturity - settlement;
    return in.answer((1.0 - r * D / 360.0) * 100.0);
}

// (100 - p) / p 360 / D
FINANCE_CALCULATION(TBILLYIELD) {
    using N = typename In::Number;
    N settlement;
    N maturity;
    N p;
    if (!in.positive(1, settlement) || !in.positive(2, maturity) || in.refuses(2, settlement >= maturity) ||
        !in.positive(3, p)) {
        return in.status();
    }
    const N D = maturity - settlement;
    return in.answer((100.0 - p) / p * 360.0 / D);
}

}  // namespace finance
