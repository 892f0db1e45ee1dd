// DDB: a multiple of the straight-line rate of what is left, never below salvage.
//
//  (1) The period is at least 1 and at most the life, which need not be whole.
//  (2) A factor that is absent, missing, zero or negative is 2.
//  (3) A salvage above the cost leaves nothing to depreciate.
//  (4) Once two amounts in succession leave the sum as it was, they alternate. Equal amounts are passed over in jumps that
//      keep every bit (calendar/repeated_sum.hpp). A walk that would go past fifty million periods is replaced by its
//      closed form; past ten million where amounts are near the denormal numbers.
#include "abi/arguments.hpp"
#include "calendar/repeated_sum.hpp"
#include "depreciation/declining_spans.hpp"
#include "depreciation/literal_steps.hpp"

namespace finance {

namespace {

// What a period takes of what is left.
double amount_after(const DecliningAsset& a, double salvage, double accumulated) {
    const double remaining = a.cost - accumulated;
    if (salvage > remaining) return 0.0;
    const double declining = remaining * a.factor / a.life;
    const double all = a.depreciable - accumulated;
    return all < declining ? all : declining;
}

// The amount of the last of `period` periods. As the sum moves away from where an amount began to be taken, no later
// amount is that one again once another is.
double amount_of_period(const DecliningAsset& a, double salvage, std::int32_t period) {
    double accumulated = 0.0;
    double before = 0.0;
    double d = 0.0;
    LiteralSteps steps{a.cost};
    for (std::int64_t i = 1; i <= period; ++i) {
        if (!steps.next()) return closed_amount(a, salvage, period);
        const double d_before = d;
        d = amount_after(a, salvage, accumulated);
        const double two_before = before;
        before = accumulated;
        accumulated += d;
        if (i < short_walk) continue;
        if (same_bits(accumulated, two_before)) return (period - i) % 2 == 0 ? d : d_before;
        if (!steps.are_equal(d)) continue;
        const RepeatedSum now = repeat_while(
            accumulated, period - i, [&](double sum) { return sum + d; },
            [&](double sum) { return same_bits(amount_after(a, salvage, sum), d); });
        accumulated = now.sum;
        i += now.times;
    }
    return d;
}

}  // namespace

// cost, salvage, life, period, factor
FINANCE_HANDLER(DDB) {
    Arguments in{context, result, count};
    DecliningAsset a{};
    double salvage;
    std::int32_t period;
    if (!in.number(1, a.cost) || !in.number(2, salvage) || !in.positive(3, a.life) || !in.count(4, period)) {
        return in.status();
    }
    if (!(period <= a.life)) return in.invalid(4);
    constexpr double usual_factor = 2.0;
    in.optional_number(5, a.factor);
    if (!(a.factor > 0.0)) a.factor = usual_factor;
    a.depreciable = a.cost - salvage;
    return in.answer(salvage > a.cost ? 0.0 : amount_of_period(a, salvage, period));
}

}  // namespace finance
