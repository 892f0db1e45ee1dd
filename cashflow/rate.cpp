// The rate and the number of periods of rate.hpp for one call.
#include "cashflow/rate.hpp"

namespace finance {

FINANCE_HANDLER_OF(RATE)
FINANCE_HANDLER_OF(NPER)

int zComputeRATE(RateRecord* record) { return annuity_rate(*record) ? 0 : 1; }

std::uint32_t ComputeF_RATE(NewtonProblem* problem) {
    return rate_sides(record_of<const RateRecord>(problem), *problem) ? 0U : 1U;
}

}  // namespace finance
