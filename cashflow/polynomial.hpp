// The present value of periodic flows as a polynomial in the discount factor z.
#pragma once

#include <cstdint>

namespace finance {

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

}  // namespace finance
