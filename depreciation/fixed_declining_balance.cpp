// DB for one call. Once a period's amount no longer changes the sum, all later amounts are equal to it.
#include "depreciation/fixed_declining_balance.hpp"

#include "abi/steps.hpp"

namespace finance {

FINANCE_HANDLER_OF(DB)

// Within 1.5 million of them the sum settles or overflows, as the rate is 0 or at least 0.001 in size.
DecliningYears<double> depreciate(double cost, double rate, double first, std::int64_t last) {
    DecliningYears<double> now{first, first};
    for (std::int64_t i = 2; i <= last; ++i) {
        count_step();
        const double before = now.accumulated;
        now.amount = (cost - now.accumulated) * rate;
        now.accumulated += now.amount;
        if (same_bits(now.accumulated, before)) break;
    }
    return now;
}

}  // namespace finance
