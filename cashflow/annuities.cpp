// Level payments: FV, PV, PMT, their interest and principal parts, and interest on a loan with constant principal.
//
//  (1) r is the rate of one period, n the number of periods, P the present and F the future value. Payments fall at the
//      end of each period; with type 1 at its start.
//  (2) The growth factor (1 + r)^n is e^(n ln(1 + r)), never a power of 1 + r, which has lost the digits of a small r.
//      An exponent of 709.782712893384 or more overflows, and the calculation fails.
//  (3) FV, PMT, their parts and ISPMT need a rate above 0. PV takes any rate above -1; at 0 it answers 0/0.
//  (4) The payment timing must be exactly whole and at most 1; negative whole numbers act as 0.
//  (5) CUMIPMT sums what falls in its range and compares nothing; CUMPRINC refuses a range that does not fit the loan.
#include "abi/arguments.hpp"
#include "cashflow/annuity_sums.hpp"
#include "cashflow/kernels.hpp"
#include "cashflow/numeric_kernels.hpp"

namespace finance {

// ---- Handlers

namespace {

bool read_rate_and_nper(Arguments& in, AnnuityRecord& a) { return in.positive(1, a.rate) && in.count(2, a.nper); }

// rate, per, nper, pv, fv, type
template <auto Compute, auto Answer>
Status payment_part(Arguments&& in) {
    AnnuityRecord a{};
    if (!in.positive(1, a.rate) || !in.count(2, a.per) || !in.count(3, a.nper)) return in.status();
    if (a.nper < a.per) return in.invalid(2);
    if (!in.number(4, a.presentValue) || !in.amount_and_timing(5, a.otherAmount, a.type)) return in.status();
    return in.answer_if(Compute(&a), a.*Answer);
}

// A range that does not fit the loan, by the first rule that it breaks: the argument at fault, or 0.
int range_fault(const AnnuityRecord& a) {
    if (a.startPeriod > a.nper) return 4;
    if (a.endPeriod > a.nper) return 5;
    if (a.startPeriod > a.endPeriod) return 4;
    if (a.type >= 2) return 6;
    return 0;
}

}  // namespace

FINANCE_HANDLER(FV) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!read_rate_and_nper(in, a)) return in.status();
    const bool no_payment = is_missing(in.number_or_missing(3));
    in.optional_number(3, a.pmt);
    // One of payment and present value may be missing, not both.
    if (no_payment && in.has_value(4) && is_missing(in.number_or_missing(4))) return in.invalid(4);
    if (!in.amount_and_timing(4, a.otherAmount, a.type)) return in.status();
    return in.answer_if(zComputeFV(&a), a.fvResult);
}

FINANCE_HANDLER(PV) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!in.above(1, -1.0, a.rate) || !in.count(2, a.nper) || !in.number(3, a.pmt) ||
        !in.amount_and_timing(4, a.otherAmount, a.type)) {
        return in.status();
    }
    return in.answer_if(zComputePV(&a), a.pvResult);
}

FINANCE_HANDLER(PMT) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!read_rate_and_nper(in, a) || !in.number(3, a.presentValue) ||
        !in.amount_and_timing(4, a.otherAmount, a.type)) {
        return in.status();
    }
    return in.answer_if(zComputePMT(&a), a.pmt);
}

FINANCE_HANDLER(IPMT) { return payment_part<zComputeIPMT, &AnnuityRecord::interestPart>({context, result, count}); }

FINANCE_HANDLER(PPMT) { return payment_part<zComputePPMT, &AnnuityRecord::principalPart>({context, result, count}); }

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

// Interest in a period of a loan repaid by constant principal: -P r (n - k) / n for period k.
FINANCE_HANDLER(ISPMT) {
    Arguments in{context, result, count};
    AnnuityRecord a{};
    if (!in.positive(1, a.rate) || !in.count(2, a.per) || !in.count(3, a.nper) || !in.number(4, a.presentValue)) {
        return in.status();
    }
    const double n = a.nper;
    const double k = a.per;
    return in.answer((0.0 - a.presentValue * a.rate) * (n - k) / n);
}

// ---- Kernels

namespace {

// e = (1 + r)^periods - 1 for L = ln(1 + r); false where it overflows (2).
bool growth(double periods, double L, double& e) {
    const double x = periods * L;
    if (x >= largest_exponent) return false;
    e = periods == 0.0 ? 0.0 : zexpm1(x);
    return true;
}

bool at_start(const AnnuityRecord& a) { return a.type == 1; }

// Interest of period k within the level payment: 0 at the very start, else r times the balance before it.
int interest_of_period(AnnuityRecord& a) {
    const double r = a.rate;
    const double P = a.presentValue;
    if (a.per == 1) {
        a.interestPart = at_start(a) ? 0.0 : 0.0 - P * r;
        return 0;
    }
    double e = 0.0;
    if (!growth(static_cast<double>(a.per) - 1.0, zln1px(r), e)) return 1;
    const double g = 1.0 + e;
    double interest = (0.0 - P * r) * g;
    if (at_start(a)) interest = interest / (1.0 + r);
    a.interestPart = interest - e * a.pmt;
    return 0;
}

}  // namespace

// Worth at the end of n payments and an initial amount P.
//   -(1+r)^n P - pmt ((1+r)^n - 1)/r           at the start of each period the second term times 1 + r
int zComputeFV(AnnuityRecord* record) {
    AnnuityRecord& a = *record;
    const double r = a.rate;
    double e;
    if (!growth(a.nper, zln1px(r), e)) return 1;
    const double q = at_start(a) ? e * a.pmt * (1.0 + r) / r : e * a.pmt / r;
    a.fvResult = (0.0 - (1.0 + e) * a.otherAmount) - q;
    return 0;
}

// Worth today of n payments and a final amount F.
//   -F (1+r)^-n + pmt ((1+r)^-n - 1)/r         at the start of each period the second term times 1 + r
int zComputePV(AnnuityRecord* record) {
    AnnuityRecord& a = *record;
    const double r = a.rate;
    double e;
    if (!growth(-static_cast<double>(a.nper), zln1px(r), e)) return 1;
    const double q = at_start(a) ? e * a.pmt * (1.0 + r) / r : e * a.pmt / r;
    a.pvResult = (0.0 - a.otherAmount) * (1.0 + e) + q;
    return 0;
}

// Level payment that repays P and leaves F.
//   -r (P (1+r)^n + F) / ((1+r)^n - 1)         at the start of each period divided by 1 + r
int zComputePMT(AnnuityRecord* record) {
    AnnuityRecord& a = *record;
    const double r = a.rate;
    double e;
    if (!growth(a.nper, zln1px(r), e)) return 1;
    a.pmt = (0.0 - r) * ((1.0 + e) * a.presentValue + a.otherAmount) / e;
    if (at_start(a)) a.pmt = a.pmt / (1.0 + r);
    return 0;
}

// The first period needs no payment, and so cannot fail.
int zComputeIPMT(AnnuityRecord* record) {
    if (record->per != 1 && zComputePMT(record) != 0) return 1;
    return interest_of_period(*record);
}

// Payment less interest; the payment is formed in any case, and can fail in the first period too.
int zComputePPMT(AnnuityRecord* record) {
    if (zComputePMT(record) != 0 || interest_of_period(*record) != 0) return 1;
    record->principalPart = record->pmt - record->interestPart;
    return 0;
}

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
