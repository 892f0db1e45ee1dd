// Flows on arbitrary dates, discounted by days over 365 from the first one given, which need not be the earliest.
#pragma once

#include <cstdint>

#include "cashflow/newton.hpp"

namespace finance {

struct DatedCashFlows {
    std::int32_t count;       // m
    double* values;           // m amounts, in argument order
    std::int64_t* dates;      // m day numbers; only differences are used
    double guess;             // XIRR: first starting rate
    std::int32_t guessGiven;  // flag
    double rate;              // XNPV: the discount rate; XIRR: the answer
    double result;            // XNPV
};

enum XirrOutcome : int {
    XIRR_SOLVED = 0,
    XIRR_NO_CONVERGENCE = 1,
    XIRR_NO_USABLE_FLOWS = 2,
};

int zComputeXNPV(DatedCashFlows* flows);  // result; always 0
int zComputeXIRR(DatedCashFlows* flows);  // rate; an XirrOutcome

// Present value at the trial rate; never refuses. Leaves the largest discounted flow in residualScale.
std::uint32_t ComputeF_XIRR(NewtonProblem* problem);

}  // namespace finance
