// DDB: a multiple of the straight-line rate of what is left, never below salvage.
//
//  (1) The period is at least 1 and at most the life, which need not be whole.
//  (2) A factor that is absent, missing, zero or negative is 2.
//  (3) A salvage above the cost leaves nothing to depreciate.
//  (4) Once a period's amount no longer changes the sum, all later amounts are equal to it; once two in succession leave
//      it as it was, they alternate. A walk that would go past ten million periods is replaced by its closed form.
#include <algorithm>

#include "abi/arguments.hpp"
#include "depreciation/decline.hpp"
#include "depreciation/handlers.hpp"

namespace finance {

namespace {

struct Asset {
    double cost;
    double salvage;
    double life;
    double factor;
};

// What a period takes of what is left before it, in exact arithmetic.
double amount_of(const Asset& a, double left) {
    if (a.salvage > left) return 0.0;
    return std::min(left * a.factor / a.life, left - a.salvage);
}

// After i periods is left cost (1 - q)^i, q = factor / life, until a period takes all down to salvage. Above q = 1, where
// what is left changes sign, a first period that does so is followed by the same powers of salvage.
double closed_amount(const Asset& a, std::int32_t period) {
    const Decline decline{a.factor, a.life};
    const bool all_at_once = a.cost - a.salvage < a.cost * a.factor / a.life;
    if (all_at_once) return amount_of(a, a.salvage * decline.left(period - 2));
    const double before = a.cost * decline.left(period - 1);
    return amount_of(a, before);
}

// The amount of the last of `period` periods. A sum that comes back to what it was two periods before goes on so.
double amount_of_period(const Asset& a, std::int32_t period) {
    double accumulated = 0.0;
    double before = 0.0;
    double d = 0.0;
    for (std::int32_t i = 1; i <= period; ++i) {
        if (i > longest_literal_walk) return closed_amount(a, period);
        const double d_before = d;
        const double remaining = a.cost - accumulated;
        if (a.salvage > remaining) {
            d = 0.0;
        } else {
            const double declining = remaining * a.factor / a.life;
            const double all = a.cost - a.salvage - accumulated;
            d = all < declining ? all : declining;
        }
        const double two_before = before;
        before = accumulated;
        accumulated += d;
        if (same_bits(accumulated, before)) return d;
        if (i > 1 && same_bits(accumulated, two_before)) return (period - i) % 2 == 0 ? d : d_before;
    }
    return d;
}

}  // namespace

// cost, salvage, life, period, factor
FINANCE_HANDLER(DDB) {
    Arguments in{context, result, count};
    Asset a{};
    std::int32_t period;
    if (!in.number(1, a.cost) || !in.number(2, a.salvage) || !in.positive(3, a.life) || !in.count(4, period)) {
        return in.status();
    }
    if (!(period <= a.life)) return in.invalid(4);
    constexpr double usual_factor = 2.0;
    in.optional_number(5, a.factor);
    if (!(a.factor > 0.0)) a.factor = usual_factor;
    return in.answer(a.salvage > a.cost ? 0.0 : amount_of_period(a, period));
}

}  // namespace finance
