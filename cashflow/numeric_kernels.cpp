#include "cashflow/numeric_kernels.hpp"

#include "abi/conversions.hpp"
#include "abi/floating_point_mode.hpp"
#include "abi/status.hpp"
#include "abi/steps.hpp"
#include "abi/zelkovan.h"
#include "elementary/functions.hpp"

namespace finance {

double zvasum(const double* values, std::int64_t n) {
    double sum = 0.0;
    if (n > 0) count_steps(n);
    for (std::int64_t i = 0; i < n; ++i) sum += std::abs(values[i]);
    return sum;
}

double zvamx(const double* values, std::int64_t n) {
    if (n < 1) return 0.0;
    double largest = std::abs(values[0]);
    count_steps(n);
    for (std::int64_t i = 1; i < n; ++i) {
        const double candidate = std::abs(values[i]);
        if (!(largest > candidate)) largest = candidate;
    }
    return largest;
}

namespace {

double power_failure(std::int32_t* status, PowerStatus reason) {
    *status = reason;
    return MISSING_VALUE;
}

// base^k by squaring; k >= 0.
double integral_power(double base, std::int64_t k) {
    double power = 1.0;
    while (true) {
        count_step();
        if ((k & 1) != 0) power *= base;
        k >>= 1;
        if (k == 0) return power;
        base *= base;
    }
}

// An exponent's size, and what it is as a whole number.
struct Exponent {
    bool positive;
    double size;
    bool integral;
    std::int64_t whole;  // the size, when integral
    [[nodiscard]] bool odd() const { return integral && whole % 2 != 0; }
};

Exponent exponent_of(double y) {
    Exponent e{};
    e.positive = y > 0.0;
    e.size = e.positive ? y : 0.0 - y;
    if (!(e.size >= largest_whole_number)) {
        e.whole = truncate_to_int64(e.size);
        e.integral = static_cast<double>(e.whole) == e.size;
    }
    return e;
}

// ax^y for ax > 0 and not 1, by the size of its logarithm.
double power_of_positive(std::int32_t* status, double ax, double y, const Exponent& e) {
    constexpr double largest_size = 1.3407807929943e154;  // sqrt of the largest double
    constexpr double smallest_logarithm = -708.3964185;   // of a normal result
    constexpr double squaring_limit = 72.0873067782343;   // ln 2^104
    if (e.size >= largest_size) {
        return (ax > 1.0) == e.positive ? power_failure(status, POWER_OVERFLOW) : 0.0;
    }
    const double t = 1.0000000000000007 * y * elementary::log(ax);
    if (t >= largest_exponent) return power_failure(status, POWER_OVERFLOW);
    if (smallest_logarithm >= t) return 0.0;
    if (!e.integral || !(std::abs(t) < squaring_limit)) return elementary::pow(ax, y);
    const double power = integral_power(ax, e.whole);
    return e.positive ? power : 1.0 / power;
}

}  // namespace

double zpower(std::int32_t* status, double x, double y) {
    *status = POWER_VALID;
    const Exponent e = exponent_of(y);
    if (x == 0.0) return e.positive ? 0.0 : power_failure(status, POWER_ZERO_BASE);
    if (e.positive && y == 1.0) return x;
    if (!e.positive && y == 0.0) return 1.0;
    const bool negative = x < 0.0;
    const double ax = std::abs(x);
    if (negative && !e.integral) return power_failure(status, POWER_NEGATIVE_BASE);
    const double power = ax == 1.0 ? 1.0 : power_of_positive(status, ax, y, e);
    return negative && e.odd() && *status == POWER_VALID && power != 0.0 ? -power : power;
}

}  // namespace finance

double zexpm1(double x) { return finance::in_usual_mode(finance::zexpm1<double>, x); }
double zln1px(double x) { return finance::in_usual_mode(finance::zln1px<double>, x); }
double zlnSumOfExp(double a, double b) { return finance::in_usual_mode(finance::zlnSumOfExp, a, b); }
double zvasum(const double* values, std::int64_t n) { return finance::in_usual_mode(finance::zvasum, values, n); }
double zvamx(const double* values, std::int64_t n) { return finance::in_usual_mode(finance::zvamx, values, n); }
double zpower(std::int32_t* status, double x, double y) {
    return finance::in_usual_mode(finance::zpower, status, x, y);
}
