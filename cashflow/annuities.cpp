// The level payments of annuities.hpp for one call, and sums over ranges of them.
#include "cashflow/annuities.hpp"

#include "cashflow/annuity_sums.hpp"

namespace finance {

// ---- Handlers

FINANCE_HANDLER_OF(FV)
FINANCE_HANDLER_OF(PV)
FINANCE_HANDLER_OF(PMT)
FINANCE_HANDLER_OF(IPMT)
FINANCE_HANDLER_OF(PPMT)
FINANCE_HANDLER_OF(ISPMT)

namespace {

// A range that does not fit the loan, by the first rule that it breaks: the argument at fault, or 0.
int range_fault(const AnnuityRecord& a) {
    if (a.startPeriod > a.nper) return 4;
    if (a.endPeriod > a.nper) return 5;
    if (a.startPeriod > a.endPeriod) return 4;
    if (a.type >= 2) return 6;
    return 0;
}

}  // namespace

FINANCE_HANDLER(CUMIPMT) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!in.positive(1, a.rate) || !in.whole(2, a.nper) || !in.positive(3, a.presentValue) ||
        !in.whole(4, a.startPeriod) || !in.whole(5, a.endPeriod) || !in.payment_timing(6, a.type)) {
        return in.status();
    }
    return in.answer_if(zComputeCUMIPMT(&a), a.cumulative);
}

FINANCE_HANDLER(CUMPRINC) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!in.positive(1, a.rate) || !in.whole(2, a.nper) || !in.number(3, a.presentValue) ||
        !in.count(4, a.startPeriod) || !in.whole_from_1(5, a.endPeriod) || !in.optional_exact(6, a.type)) {
        return in.status();
    }
    if (const int fault = range_fault(a); fault != 0) return in.invalid(fault);
    return in.answer_if(zComputeCUMPRINC(&a), a.cumulative);
}

// ---- Kernels

int zComputeFV(AnnuityRecord* record) { return future_value(*record) ? 0 : 1; }
int zComputePV(AnnuityRecord* record) { return present_value(*record) ? 0 : 1; }
int zComputePMT(AnnuityRecord* record) { return level_payment(*record) ? 0 : 1; }
int zComputeIPMT(AnnuityRecord* record) { return interest_part(*record) ? 0 : 1; }
int zComputePPMT(AnnuityRecord* record) { return principal_part(*record) ? 0 : 1; }

namespace {

// What the periods of the range add up to, period by period (annuity_sums.hpp). A payment at time 0 is all principal.
int sum_range(AnnuityRecord& a, double (*sum)(const LoanWalk&), bool of_principal) {
    if (zComputePMT(&a) != 0) return 1;
    const double at_time_0 = of_principal && at_start(a) ? a.pmt : 0.0;
    if (at_start(a) && a.endPeriod == 1) {
        a.cumulative = at_time_0;
        return 0;
    }
    const std::int64_t shift = at_start(a) ? 1 : 0;
    a.cumulative = sum({.rate = a.rate,
                        .payment = a.pmt,
                        .presentValue = a.presentValue,
                        .balance = at_start(a) ? a.presentValue + a.pmt : a.presentValue,
                        .sum = a.startPeriod == 1 ? at_time_0 : 0.0,
                        .nper = a.nper,
                        .first = a.startPeriod - shift,
                        .last = a.endPeriod - shift,
                        .at_start = at_start(a)});
    return 0;
}

}  // namespace

int zComputeCUMIPMT(AnnuityRecord* record) { return sum_range(*record, sum_of_interest, false); }

int zComputeCUMPRINC(AnnuityRecord* record) { return sum_range(*record, sum_of_principal, true); }

}  // namespace finance
