// Level payments: the record that the eight calculations share, and their kernels.
//
// Amounts follow the sign rule of a purse: money paid is negative, money received positive. A kernel takes a record
// whose arguments have been checked, leaves its answer in the field named beside it, and returns 0, or 1 where the
// growth factor (1 + r)^n overflows.
#pragma once

#include <cstdint>

namespace finance {

struct AnnuityRecord {
    std::int32_t nper;         // number of periods
    std::int32_t per;          // the period asked for
    std::int32_t startPeriod;  // first and last period of a range, both counted
    std::int32_t endPeriod;
    std::int32_t type;    // 1: payments at the start of each period; any other value: at its end
    double pmt;           // level payment per period
    double presentValue;  // P of PMT, IPMT, PPMT, CUMIPMT, CUMPRINC
    double otherAmount;   // P of FV; F, the future value, of all others
    double rate;          // per period, as a fraction
    double interestPart;
    double principalPart;
    double cumulative;
    double fvResult;
    double pvResult;
};

int zComputeFV(AnnuityRecord* record);        // fvResult
int zComputePV(AnnuityRecord* record);        // pvResult
int zComputePMT(AnnuityRecord* record);       // pmt
int zComputeIPMT(AnnuityRecord* record);      // interestPart
int zComputePPMT(AnnuityRecord* record);      // principalPart (and interestPart, pmt)
int zComputeCUMIPMT(AnnuityRecord* record);   // cumulative
int zComputeCUMPRINC(AnnuityRecord* record);  // cumulative

}  // namespace finance
