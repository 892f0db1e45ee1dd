// RATE and NPER: rate and number of periods of an annuity.
//
//  (1) A rate solves P + a A(r) (1 + r)^t + F (1 + r)^-n = 0, with a the payment, t 1 for payments at the start, and
//      A(r) = (1 - (1 + r)^-n) / r the worth of n payments of 1.
//  (2) Without payments it solves P (1 + r)^n = F: both amounts of one sign, unlike (1).
//  (3) NPER is a closed form and need not be whole. Its payment timing has no upper bound; only 1 has an effect.
#pragma once

#include "abi/arguments.hpp"
#include "cashflow/kernels.hpp"
#include "cashflow/newton_search.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// ---- Kernels

template <typename N>
struct AnnuityFactor {
    N A;           // (1 - (1 + x)^-n) / x
    N derivative;  // by x
};

// For |x n| < 0.0001, where the quotient loses its digits: sum of (-1)^k n (n+1) .. (n+k) / (k+1)! x^k, k = 0..5
template <typename N>
AnnuityFactor<N> factor_by_series(N x, N n) {
    const N n2 = n * (n + 1.0);
    const N n3 = n2 * (n + 2.0);
    const N n4 = n3 * (n + 3.0);
    const N n5 = n4 * (n + 4.0);
    const N n6 = n5 * (n + 5.0);
    const N x2 = x * x;
    const N x3 = x2 * x;
    const N x4 = x3 * x;
    const N x5 = x4 * x;
    return {n - n2 / 2.0 * x + n3 / 6.0 * x2 - n4 / 24.0 * x3 + n5 / 120.0 * x4 - n6 / 720.0 * x5,
            0.0 - n2 / 2.0 + n3 / 3.0 * x - n4 / 8.0 * x2 + n5 / 30.0 * x3 - n6 / 144.0 * x4};
}

template <typename N>
AnnuityFactor<N> factor_by_quotient(N x, N n) {
    const N w = zexpm1((0.0 - zln1px(x)) * n);
    const N A = (0.0 - w) / x;
    return {A, (n / (x + 1.0)) * (1.0 / x - A) - A / x};
}

template <typename N>
AnnuityFactor<N> annuity_factor(N x, N n) {
    const auto near = abs(x * n) < 0.0001;
    if (all(near)) return factor_by_series(x, n);
    const AnnuityFactor<N> quotient = factor_by_quotient(x, n);
    if (!any(near)) return quotient;
    const AnnuityFactor<N> series = factor_by_series(x, n);
    return {select(near, series.A, quotient.A), select(near, series.derivative, quotient.derivative)};
}

// f = ln D - ln A - t ln(1 + x) with D = d - c (1 + x)^-n, and its derivative; where there are such
// Why    as a difference of logarithms f is nearly linear in ln(1 + x)
// Guard  D above the smallest normal number: without it there is no logarithm
// Error  22 ulp of 1 + |ln D| + |ln A|, the slope 4.4e-12 (n + 1): worst of 1e4 draws, n in [1, 600], against 200 bits
template <typename N, typename Problem>
TruthOf<N> rate_sides(const RateRecordOf<N>& a, Problem& problem) {
    constexpr double smallest_normal = 2.225073858507202e-308;
    const N x = problem.x;
    auto there = !(x <= -1.0);
    if (!any(there)) return there;
    const AnnuityFactor<N> factor = annuity_factor(x, N(as_number(a.nper)));
    const N formed = (x * factor.A - 1.0) * a.c + a.d;
    there = both(there, !(formed <= smallest_normal));
    if (!any(there)) return there;
    const N D = select(there, formed, N{1.0});
    problem.derivative = a.c * (x * factor.derivative + factor.A) / D - factor.derivative / factor.A;
    problem.value = elementary::log(D) - elementary::log(factor.A);
    if (a.type == 1) {
        problem.derivative = problem.derivative - 1.0 / (x + 1.0);
        problem.value = problem.value - zln1px(x);
    }
    return there;
}

// (2), where there is such a rate
template <typename N>
TruthOf<N> rate_without_payments(const RateRecordOf<N>& a, N& rate) {
    const auto ends = a.futureValue != 0.0;
    if (!any(ends)) return ends;
    const N q = a.presentValue / a.futureValue;
    const auto good = both(ends, !(q <= 0.0));
    if (!any(good)) return good;
    rate = zexpm1((0.0 - elementary::log(select(good, q, N{1.0}))) / as_number(a.nper));
    return good;
}

// (1), of the `wanted`
// Error  at the rate found, (1) is off by 8.2e-15 P, worst of 1e4 draws, n in [1, 600], against 200 bits
template <typename N>
TruthOf<N> rate_with_payments(RateRecordOf<N>& a, TruthOf<N> wanted, N& rate) {
    a.c = a.futureValue / a.pmt;
    a.d = (0.0 - a.presentValue) / a.pmt;
    NewtonProblemOf<N> problem{};
    problem.start = (0.0 - a.pmt) / a.presentValue;
    const N payment = abs(a.pmt);
    const N principal = abs(a.presentValue);
    problem.residualScale = select(payment < principal, principal, payment);
    const auto found = newton_search<N>(problem, wanted, [&a](auto& at, auto) { return rate_sides(a, at); });
    rate = problem.x;
    return found;
}

// rate from the other fields, where there is one and it is found
template <typename N>
TruthOf<N> annuity_rate(RateRecordOf<N>& a) {
    const auto unpaid = abs(a.pmt) <= 0.0;
    N without = a.rate;
    N with = a.rate;
    auto found = unpaid;
    if (any(unpaid)) found = both(unpaid, rate_without_payments(a, without));
    if (!all(unpaid)) found = either(found, rate_with_payments(a, !unpaid, with));
    a.rate = select(found, select(unpaid, without, with), a.rate);
    return found;
}

// ---- Calculations

// nper, pmt, pv, fv, type
FINANCE_CALCULATION(RATE) {
    RateRecordOf<typename In::Number> a{};
    if (!in.count(1, a.nper) || !in.number(2, a.pmt) || !in.number(3, a.presentValue) ||
        !in.amount_and_timing(4, a.futureValue, a.type)) {
        return in.status();
    }
    return in.answer_where(annuity_rate(a), a.rate);
}

// rate, pmt, pv, fv, type: the final amount is required where the call has it.
// Error  4.7 ulp, of the answer and what cancels in q, worst of 1e4 draws, rate in [1e-9, 1], against 200 bits
FINANCE_CALCULATION(NPER) {
    using N = typename In::Number;
    N r{};
    N a{};
    N P{};
    N F{};
    std::int32_t type = 0;
    if (!in.positive(1, r) || !in.number(2, a) || !in.number(3, P) || (in.given(4) && !in.number(4, F)) ||
        !in.optional_exact(5, type)) {
        return in.status();
    }
    if (type == 1) a = a * (1.0 + r);
    const N den = a - F * r;
    const auto divides = den != 0.0;
    if (!any(divides)) return in.answer_where(divides, den);
    const N q = (P * r + a) / den;
    const auto good = both(divides, q > 0.0);
    if (!any(good)) return in.answer_where(good, q);
    return in.answer_where(good, (0.0 - elementary::log(select(good, q, N{1.0}))) / zln1px(r));
}

}  // namespace finance
