// Price and yield of a security whose first coupon period is irregular.
#pragma once

#include "cashflow/newton.hpp"
#include "securities/security_record.hpp"

namespace finance {

// The first coupon date is not a date of the maturity's schedule.
inline constexpr int ODDF_NO_REFERENCE_DATE = 1234567;

int zComputeODDFPRICE(SecurityComputeRecord* record);  // oddFirstPrice; 2, or ODDF_NO_REFERENCE_DATE
int zComputeODDFYIELD(SecurityComputeRecord* record);  // yield; 1, or ODDF_NO_REFERENCE_DATE

// Price at the trial yield, less the price; 2 where it has no discount factor. userData is the record.
std::uint32_t ComputeF_ODDFYIELD(NewtonProblem* problem);

}  // namespace finance
