// RATE: the periodic rate of an annuity, and NPER's closed form beside it in rate.cpp.
#pragma once

#include <cstdint>

#include "cashflow/newton.hpp"

namespace finance {

struct RateRecord {
    std::int32_t nper;    // n
    std::int32_t type;    // 1: payments at the start of each period
    double pmt;           // a
    double presentValue;  // P
    double futureValue;   // F
    double rate;          // the answer
    double c;             // F / a
    double d;             // -P / a
};

// rate from the other fields. Returns 0, or 1 where there is no rate or none was found.
int zComputeRATE(RateRecord* record);

// ln of the present value of payments and final amount over that of the loan; userData is the record.
std::uint32_t ComputeF_RATE(NewtonProblem* problem);

}  // namespace finance
