// Price and yield of a security that pays coupons in regular periods.
#pragma once

#include "cashflow/newton.hpp"
#include "securities/security_record.hpp"

namespace finance {

int zComputePRICE(SecurityComputeRecord* record);  // price; 1 or 2 where the yield has no discount factor
int zComputeYIELD(SecurityComputeRecord* record);  // yield; 1 where the search found none

// Price at the trial yield, less the price; 2 where it has no discount factor. userData is the record.
std::uint32_t ComputeF_YIELD(NewtonProblem* problem);

}  // namespace finance
