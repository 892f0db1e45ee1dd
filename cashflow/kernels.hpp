// The kernels of level payments and of dated flows. Each takes a record whose arguments have been checked.
#pragma once

#include <cstdint>

#include "cashflow/newton.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// ---- Level payments: the record that the eight calculations share, and their kernels
//
// Amounts follow the sign rule of a purse: money paid is negative, money received positive. A kernel leaves its answer
// in the field named beside it, and returns 0, or 1 where the growth factor (1 + r)^n overflows.

template <typename N>
struct AnnuityRecordOf {
    WholeOf<N> nper;         // number of periods
    WholeOf<N> per;          // the period asked for
    WholeOf<N> startPeriod;  // first and last period of a range, both counted
    WholeOf<N> endPeriod;
    std::int32_t type;  // 1: payments at the start of each period; any other value: at its end
    N pmt;              // level payment per period
    N presentValue;     // P of PMT, IPMT, PPMT, CUMIPMT, CUMPRINC
    N otherAmount;      // P of FV; F, the future value, of all others
    N rate;             // per period, as a fraction
    N interestPart;
    N principalPart;
    N cumulative;
    N fvResult;
    N pvResult;
};
using AnnuityRecord = AnnuityRecordOf<double>;

int zComputeFV(AnnuityRecord* record);        // fvResult
int zComputePV(AnnuityRecord* record);        // pvResult
int zComputePMT(AnnuityRecord* record);       // pmt
int zComputeIPMT(AnnuityRecord* record);      // interestPart
int zComputePPMT(AnnuityRecord* record);      // principalPart (and interestPart, pmt)
int zComputeCUMIPMT(AnnuityRecord* record);   // cumulative
int zComputeCUMPRINC(AnnuityRecord* record);  // cumulative

// ---- RATE: the periodic rate of an annuity, and NPER's closed form beside it in rate.hpp

template <typename N>
struct RateRecordOf {
    WholeOf<N> nper;    // n
    std::int32_t type;  // 1: payments at the start of each period
    N pmt;              // a
    N presentValue;     // P
    N futureValue;      // F
    N rate;             // the answer
    N c;                // F / a
    N d;                // -P / a
};
using RateRecord = RateRecordOf<double>;

// rate from the other fields. Returns 0, or 1 where there is no rate or none was found.
int zComputeRATE(RateRecord* record);

// ln of the present value of payments and final amount over that of the loan; userData is the record.
std::uint32_t ComputeF_RATE(NewtonProblem* problem);

// ---- Flows on arbitrary dates, discounted by days over 365 from the first one given, which need not be the earliest

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
