// DDB for one call.
//
// Once two amounts in succession leave the sum as it was, they alternate. Equal amounts are passed over in jumps that keep
// every bit (calendar/repeated_sum.hpp). A walk that would go past fifty million periods is replaced by its closed form;
// past ten million where amounts are near the denormal numbers.
#include "depreciation/double_declining_balance.hpp"

#include "calendar/repeated_sum.hpp"

namespace finance {

// As the sum moves away from where an amount began to be taken, no later amount is that one again once another is.
static double amount_of_period(const DecliningAsset& a, double salvage, std::int32_t period) {
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

FINANCE_HANDLER_OF(DDB)

}  // namespace finance
