// DDB: a multiple of the straight-line rate of what is left, never below salvage.
//
//  (1) The period is at least 1 and at most the life, which need not be whole.
//  (2) A factor that is absent, missing, zero or negative is 2.
//  (3) A salvage above the cost leaves nothing to depreciate.
//  (4) Once a period's amount no longer changes the sum, all later amounts are equal to it. A walk that would go past
//      ten million periods is replaced by its closed form.
#include <cmath>

#include "abi/arguments.hpp"
#include "depreciation/handlers.hpp"

namespace finance {

namespace {

constexpr std::int32_t longest_literal_walk = 10'000'000;

struct Asset {
    double cost;
    double salvage;
    double life;
    double factor;
};

// Before period i is left cost (1 - q)^(i-1), q = factor / life; the period that would go below salvage goes to it, and
// nothing is left for later ones.
double closed_amount(const Asset& a, double period) {
    const double q = a.factor / a.life;
    const double growth = std::log1p(-q);
    const double left_before = a.cost * std::exp((period - 1.0) * growth);
    const double left_after = a.cost * std::exp(period * growth);
    if (a.cost <= 0.0 || left_after > a.salvage) return left_before * q;
    return left_before > a.salvage ? left_before - a.salvage : 0.0;
}

// The amount of the last of `period` periods.
double amount_of_period(const Asset& a, std::int32_t period) {
    double accumulated = 0.0;
    double d = 0.0;
    for (std::int32_t i = 1; i <= period; ++i) {
        if (i > longest_literal_walk) return closed_amount(a, period);
        const double remaining = a.cost - accumulated;
        if (a.salvage > remaining) {
            d = 0.0;
        } else {
            const double declining = remaining * a.factor / a.life;
            const double all = a.cost - a.salvage - accumulated;
            d = all < declining ? all : declining;
        }
        const double before = accumulated;
        accumulated += d;
        if (same_bits(accumulated, before)) break;
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
