// Level payments: FV, PV, PMT, their interest and principal parts, and interest on a loan with constant principal.
//
//  (1) r is the rate of one period, n the number of periods, P the present and F the future value. Payments fall at the
//      end of each period; with type 1 at its start.
//  (2) The growth factor (1 + r)^n is e^(n ln(1 + r)), never a power of 1 + r, which has lost the digits of a small r.
//      An exponent of 709.782712893384 or more overflows, and the calculation fails.
//  (3) FV, PMT, their parts and ISPMT need a rate above 0. PV takes any rate above -1; at 0 it answers 0/0.
//  (4) The payment timing must be exactly whole and at most 1; negative whole numbers act as 0.
//  (5) CUMIPMT sums what falls in its range and compares nothing; CUMPRINC refuses a range that does not fit the loan.
#pragma once

#include "abi/arguments.hpp"
#include "cashflow/kernels.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// ---- Kernels

// e = (1 + r)^periods - 1 for L = ln(1 + r); false where it overflows (2).
template <typename N>
[[gnu::always_inline]] inline TruthOf<N> growth(N periods, N L, N& e) {
    const N x = periods * L;
    e = choose(
        periods == 0.0, [] { return N{0.0}; }, [&] { return zexpm1(x); });
    return !(x >= largest_exponent);
}

template <typename N>
bool at_start(const AnnuityRecordOf<N>& a) {
    return a.type == 1;
}

// Each leaves its answer in the field named beside it, and says whether there is one.

// Worth at the end of n payments and an initial amount P: fvResult.
//   -(1+r)^n P - pmt ((1+r)^n - 1)/r           at the start of each period the second term times 1 + r
template <typename N>
[[gnu::always_inline]] inline TruthOf<N> future_value(AnnuityRecordOf<N>& a) {
    const N r = a.rate;
    N e;
    const auto fits = growth(as_number(a.nper), zln1px(r), e);
    const N q = at_start(a) ? e * a.pmt * (1.0 + r) / r : e * a.pmt / r;
    a.fvResult = (0.0 - (1.0 + e) * a.otherAmount) - q;
    return fits;
}

// Worth today of n payments and a final amount F: pvResult.
//   -F (1+r)^-n + pmt ((1+r)^-n - 1)/r         at the start of each period the second term times 1 + r
template <typename N>
[[gnu::always_inline]] inline TruthOf<N> present_value(AnnuityRecordOf<N>& a) {
    const N r = a.rate;
    N e;
    const auto fits = growth(-as_number(a.nper), zln1px(r), e);
    const N q = at_start(a) ? e * a.pmt * (1.0 + r) / r : e * a.pmt / r;
    a.pvResult = (0.0 - a.otherAmount) * (1.0 + e) + q;
    return fits;
}

// Level payment that repays P and leaves F: pmt.
//   -r (P (1+r)^n + F) / ((1+r)^n - 1)         at the start of each period divided by 1 + r
template <typename N>
[[gnu::always_inline]] inline TruthOf<N> level_payment(AnnuityRecordOf<N>& a) {
    const N r = a.rate;
    N e;
    const auto fits = growth(as_number(a.nper), zln1px(r), e);
    a.pmt = (0.0 - r) * ((1.0 + e) * a.presentValue + a.otherAmount) / e;
    if (at_start(a)) a.pmt = a.pmt / (1.0 + r);
    return fits;
}

// Interest of period k within the level payment: 0 at the very start, else r times the balance before it.
template <typename N>
TruthOf<N> interest_of_period(AnnuityRecordOf<N>& a) {
    const N r = a.rate;
    const N k = as_number(a.per);
    N e;
    const auto fits = growth(k - 1.0, zln1px(r), e);
    const auto first = k == 1.0;
    a.interestPart = choose(
        first, [&] { return at_start(a) ? N{0.0} : 0.0 - a.presentValue * r; },
        [&] {
            N interest = (0.0 - a.presentValue * r) * (1.0 + e);
            if (at_start(a)) interest = interest / (1.0 + r);
            return interest - e * a.pmt;
        });
    return either(first, fits);
}

// The first period needs no payment, and so cannot fail: interestPart.
template <typename N>
TruthOf<N> interest_part(AnnuityRecordOf<N>& a) {
    const auto first = as_number(a.per) == 1.0;
    if (all(first)) return interest_of_period(a);
    const auto paid = level_payment(a);
    const auto fits = interest_of_period(a);
    return either(first, both(paid, fits));
}

// Payment less interest: principalPart. The payment is formed in any case, and can fail in the first period too.
template <typename N>
TruthOf<N> principal_part(AnnuityRecordOf<N>& a) {
    const auto paid = level_payment(a);
    const auto fits = interest_of_period(a);
    a.principalPart = a.pmt - a.interestPart;
    return both(paid, fits);
}

// ---- Calculations

template <typename In, typename N>
bool read_rate_and_nper(In& in, AnnuityRecordOf<N>& a) {
    return in.positive(1, a.rate) && in.count(2, a.nper);
}

FINANCE_CALCULATION(FV) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!read_rate_and_nper(in, a)) return in.status();
    in.optional_number(3, a.pmt);
    if (in.refuses(4, in.both_missing(3, 4)) || !in.amount_and_timing(4, a.otherAmount, a.type)) return in.status();
    return in.answer_where(future_value(a), a.fvResult);
}

FINANCE_CALCULATION(PV) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!in.above(1, -1.0, a.rate) || !in.count(2, a.nper) || !in.number(3, a.pmt) ||
        !in.amount_and_timing(4, a.otherAmount, a.type)) {
        return in.status();
    }
    return in.answer_where(present_value(a), a.pvResult);
}

FINANCE_CALCULATION(PMT) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!read_rate_and_nper(in, a) || !in.number(3, a.presentValue) ||
        !in.amount_and_timing(4, a.otherAmount, a.type)) {
        return in.status();
    }
    return in.answer_where(level_payment(a), a.pmt);
}

// rate, per, nper, pv, fv, type
template <typename In, typename N>
bool read_payment_part(In& in, AnnuityRecordOf<N>& a) {
    return in.positive(1, a.rate) && in.count(2, a.per) && in.count(3, a.nper) && !in.refuses(2, a.nper < a.per) &&
           in.number(4, a.presentValue) && in.amount_and_timing(5, a.otherAmount, a.type);
}

FINANCE_CALCULATION(IPMT) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!read_payment_part(in, a)) return in.status();
    return in.answer_where(interest_part(a), a.interestPart);
}

FINANCE_CALCULATION(PPMT) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!read_payment_part(in, a)) return in.status();
    return in.answer_where(principal_part(a), a.principalPart);
}

// Interest in a period of a loan repaid by constant principal: -P r (n - k) / n for period k.
FINANCE_CALCULATION(ISPMT) {
    AnnuityRecordOf<typename In::Number> a{};
    if (!in.positive(1, a.rate) || !in.count(2, a.per) || !in.count(3, a.nper) || !in.number(4, a.presentValue)) {
        return in.status();
    }
    const auto n = as_number(a.nper);
    const auto k = as_number(a.per);
    return in.answer((0.0 - a.presentValue * a.rate) * (n - k) / n);
}

}  // namespace finance
