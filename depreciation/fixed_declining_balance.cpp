// DB: a fixed rate of what is left, rounded to three decimals; the first year covers some months only.
//
//  (1) The rate takes cost to salvage over the life. It is not tested: where salvage / cost is negative it is what the
//      arithmetic makes of it.
//  (2) Periods count to one beyond the life, the partial last year. The months of the first year are not bounded.
//  (3) Once a period's amount no longer changes the sum, all later amounts are equal to it.
#include <cmath>

#include "abi/arguments.hpp"
#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "depreciation/rounding.hpp"
#include "elementary/functions.hpp"

namespace finance {

namespace {

struct Declining {
    double accumulated;
    double amount;  // of the last period
};

// Periods 2 .. last. Within 1.5 million of them the sum settles or overflows, as the rate is 0 or at least 0.001 in size.
Declining depreciate(double cost, double rate, double first, std::int64_t last) {
    Declining now{first, first};
    for (std::int64_t i = 2; i <= last; ++i) {
        count_step();
        const double before = now.accumulated;
        now.amount = (cost - now.accumulated) * rate;
        now.accumulated += now.amount;
        if (same_bits(now.accumulated, before)) break;
    }
    return now;
}

}  // namespace

// cost, salvage, life L, period p, months m of the first year
FINANCE_HANDLER(DB) {
    Arguments in{context, result, count};
    double cost;
    double salvage;
    std::int64_t L;
    std::int64_t p;
    std::int32_t months = 12;
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.whole_from_1(3, L) || !in.whole_from_1(4, p) ||
        (in.given(5) && !in.count(5, months))) {
        return in.status();
    }
    if (p > L + 1) return in.invalid(4);
    const double m = months;
    const double rate0 = -zexpm1(elementary::log(salvage / cost) / static_cast<double>(L));
    const double rate = round_half_away(rate0 * 1000.0) / 1000.0;
    const double first = cost * m * rate / 12.0;
    if (p == 1) return in.answer(first);
    if (p <= L) return in.answer(depreciate(cost, rate, first, p).amount);
    const double accumulated = depreciate(cost, rate, first, L).accumulated;
    return in.answer((12.0 - m) * rate * (cost - accumulated) / 12.0);
}

}  // namespace finance
