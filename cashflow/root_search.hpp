// Roots of the present value of periodic flows, by the number of times that the flows change sign.
#pragma once

#include <cstdint>

#include "cashflow/irr.hpp"

namespace finance {

// The present value as a polynomial in the discount factor z.
//
// p(z) = c_0 + c_1 z + .. + c_d z^d, c_k the flow of period k. Values are stored scaled: the true ones are theirs times
// e^exponent.
struct CashFlowPolynomial {
    std::int32_t degree;    // d >= 0
    const double* c;        // d + 1 coefficients, the first and the last not 0
    double p;               // p(z)
    double p1;              // p'(z)
    double p2;              // p''(z)
    std::int32_t exponent;  // 0 for |z| < 1
    bool underflow;         // the flows at the beginning no longer count beside those at the end
    double leadingScale;    // largest absolute coefficient of the first run of one sign
    double trailingScale;   // and of the last
};

// p(z), both derivatives and the underflow flag.
//   |z| < 1   Horner's rule
//   |z| >= 1  Horner's rule on the reversed polynomial in 1/z, then z^d as a mantissa and the exponent trunc(d ln|z|)
void EvalPol(double z, CashFlowPolynomial* polynomial);

// The flows of periods 0 .. n - 1, the first and the last not 0.
struct Flows {
    const double* c;
    std::int32_t n;
};

// Both leave the discount factor in *z, or return why there is none. All values of the polynomial are the stored ones of
// EvalPol, without their exponent.

// Exactly one change of sign: with B(z) the flows before it and z^s A(z) those from it on, Newton's method on
//   g(t) = ln|B(e^t)| - ln|A(e^t)| - s t        t = ln z
// from t = 0. g falls strictly, by at least 1 for each 1 of t: there is one root.
IrrStatus root_of_one_change(const Flows& flows, double* z);

// Two changes or more: Newton's method on p from just below 1, kept within (0, 1]; from just above 1, kept above;
// then Laguerre's method from 0.99 and four fixed places. Each stops by its own rules, at a root or elsewhere: beside the
// largest flow the value may be small where it is large beside the discounted ones.
IrrStatus root_of_several_changes(const Flows& flows, double* z);

}  // namespace finance
