// Numeric kernels under the interest calculations. Pure functions; the module exports them under the same names.
#pragma once

#include <cstdint>

#include "abi/limits.hpp"
#include "elementary/functions.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// Beyond it e^x overflows.
inline constexpr double largest_exponent = 709.782712893384;

// e^x - 1
//   |x| > 0.01   exp(x) - 1
//   else         x + x^2/2 + x^3/6 + x^4/24 + x^5/120 + x^6/720, nested
// Why    for small x the difference loses the digits that the series keeps
// Error  2.3 ulp worst of 1e6 draws, |x| in [1e-300, 0.01]; exp(x) - 1 loses digits: 64 ulp from 0.01, 8 from 0.1
template <typename N>
inline N zexpm1(N x) {
    return choose(
        abs(x) > 0.01, [&] { return elementary::exp(x) - 1.0; },
        [&] {
            N t = 1.0 + x / 6.0;
            t = 1.0 + (x / 5.0) * t;
            t = 1.0 + (0.25 * x) * t;
            t = 1.0 + (x / 3.0) * t;
            t = 1.0 + (0.5 * x) * t;
            return x * t;
        });
}

// ln(1 + x)
//   |x| > 2^-5   log(1 + x)
//   else         2 atanh(s/2) with s = x / (1 + x/2), by a rational approximation in s^2
// Error  1.9 ulp worst of 1e6 draws, |x| in [1e-300, 2^-5]; log(1 + x) loses digits: 32 ulp from 2^-5, 2 from 0.5
template <typename N>
inline N zln1px(N x) {
    return choose(
        abs(x) > 0.03125, [&] { return elementary::log(x + 1.0); },
        [&] {
            const N s = x / (0.5 * x + 1.0);
            const N q = s * s;
            return s +
                   (q * s) * ((-0.0023812878804825234 * q + 0.08333333333333427) / (1.0 + (-0.178575454351365) * q));
        });
}

// ln(e^a + e^b), without forming either power: max + ln(1 + e^-(difference))
// Error  35 ulp of the larger of result and max, worst of 1e6 draws (difference just below 3.47); 5 ulp up to 2
inline double zlnSumOfExp(double a, double b) {
    constexpr double ln_2 = 0.6931471805599453;
    if (a > b) return a + zln1px(elementary::exp(0.0 - (a - b)));
    if (a == b) return a + ln_2;
    return b + zln1px(elementary::exp(a - b));
}

// Sum of absolute values, added in order; 0 for n <= 0.
double zvasum(const double* values, std::int64_t n);

// Largest absolute value; 0 for n < 1. A running value that is NaN gives way to the next element, and a NaN element
// takes the place of any.
double zvamx(const double* values, std::int64_t n);

enum PowerStatus : std::int32_t {
    POWER_VALID = 0,
    POWER_OVERFLOW = 1,
    POWER_NEGATIVE_BASE = 2,  // with an exponent that is not integral; 2^53 and above count as not integral
    POWER_ZERO_BASE = 3,      // with an exponent that is not positive, 0 included
};

// x^y, or MISSING_VALUE with the reason in status. Integral exponents are powered by squaring where the result stays
// below e^72.09 and above its inverse; others by e^(y ln x) (elementary/power.hpp). Underflow gives 0.
// Error  0.9 |y| ulp worst of 1e6 draws where squared, each step doubling the rounding before it; by pow 0.51 ulp
double zpower(std::int32_t* status, double x, double y);

}  // namespace finance
