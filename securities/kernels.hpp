// The kernels of coupon securities. Each takes a record whose arguments have been checked, leaves its answer in the field
// named beside it, and returns 0, or another number where there is none.
#pragma once

#include "cashflow/newton.hpp"
#include "securities/security_record.hpp"

namespace finance {

// Coupons in regular periods. 1 or 2 where the yield has no discount factor; a search 1 where it found none.
int zComputePRICE(SecurityComputeRecord* record);     // price
int zComputeYIELD(SecurityComputeRecord* record);     // yield
int zComputeDURATION(SecurityComputeRecord* record);  // duration, in years

// An irregular first period. 2 where the yield has no discount factor; a search 1 where it found none.
inline constexpr int ODDF_NO_REFERENCE_DATE =
    1234567;                                           // the first coupon date is not a date of the maturity's schedule
int zComputeODDFPRICE(SecurityComputeRecord* record);  // oddFirstPrice
int zComputeODDFYIELD(SecurityComputeRecord* record);  // yield

// An irregular last period. 2 where the yield has no discount factor; 1 where price or time to maturity leaves no yield.
int zComputeODDLPRICE(SecurityComputeRecord* record);  // oddLastPrice
int zComputeODDLYIELD(SecurityComputeRecord* record);  // yield

// Interest accrued from issue to settlement.
int zComputeACCRINT(SecurityComputeRecord* record);   // accruedInterest; always 0
int zComputeACCRINTM(SecurityComputeRecord* record);  // yearFraction; 1 where it is negative

// All interest at maturity. 1 where the divisor is 0.
int zComputePRICEMAT(SecurityComputeRecord* record);  // maturityPrice
int zComputeYIELDMAT(SecurityComputeRecord* record);  // yield

// Price at the trial yield, less the price; 2 where it has no discount factor. userData is the record.
std::uint32_t ComputeF_YIELD(NewtonProblem* problem);
std::uint32_t ComputeF_ODDFYIELD(NewtonProblem* problem);

}  // namespace finance
