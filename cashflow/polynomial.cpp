#include <cmath>

#include "abi/conversions.hpp"
#include "abi/steps.hpp"
#include "cashflow/root_search.hpp"
#include "elementary/functions.hpp"

namespace finance {

namespace {

struct Values {
    double p;
    double p1;
    double p2;  // half of the second derivative
};

// Horner's rule over n coefficients c, stride apart, the one of the highest power first.
Values horner(const double* c, std::int64_t stride, std::int32_t n, double z) {
    Values v{c[0], 0.0, 0.0};
    count_steps(n);
    for (std::int32_t k = 1; k < n; ++k) {
        v.p2 = v.p2 * z + v.p1;
        v.p1 = v.p1 * z + v.p;
        v.p = v.p * z + c[k * stride];
    }
    return v;
}

// z^d as mantissa and exponent to the base e.
double scaled_power(double z, std::int32_t d, std::int32_t* exponent) {
    const double t = d * elementary::log(std::abs(z));
    *exponent = truncate_to_int32(t);
    const double mantissa = elementary::exp(t - *exponent);
    return z < 0.0 && d % 2 != 0 ? -mantissa : mantissa;
}

constexpr double underflow_limit = 2.2737367544323216e-13;  // 2^-42, which itself is below it

// With w = 1/z and q the reversed polynomial, p = z^d q(w):
//   p'  = z^d w (d q - w q')
//   p'' = z^d w^2 (d (d-1) q - 2 (d-1) w q' + w^2 q'')
void evaluate_reversed(double z, CashFlowPolynomial* polynomial) {
    const std::int32_t n = polynomial->degree;
    const double d = n;
    const double w = 1.0 / z;
    const Values q = horner(polynomial->c, 1, n + 1, w);
    const double scale = scaled_power(z, n, &polynomial->exponent);
    polynomial->p = scale * q.p;
    polynomial->p1 = scale * w * (d * q.p - w * q.p1);
    polynomial->p2 = scale * w * w * (d * (d - 1.0) * q.p - 2.0 * (d - 1.0) * w * q.p1 + w * w * 2.0 * q.p2);
    polynomial->underflow =
        elementary::pow(std::abs(w), d) * polynomial->leadingScale < polynomial->trailingScale * underflow_limit;
}

void evaluate(double z, CashFlowPolynomial* polynomial) {
    const std::int32_t n = polynomial->degree;
    const Values v = horner(polynomial->c + n, -1, n + 1, z);
    polynomial->p = v.p;
    polynomial->p1 = v.p1;
    polynomial->p2 = 2.0 * v.p2;
    polynomial->exponent = 0;
    polynomial->underflow = false;
}

}  // namespace

void EvalPol(double z, CashFlowPolynomial* polynomial) {
    if (std::abs(z) >= 1.0) {
        evaluate_reversed(z, polynomial);
    } else {
        evaluate(z, polynomial);
    }
}

}  // namespace finance
