#include "securities/long_sums.hpp"

#include <cmath>

#include "elementary/functions.hpp"

namespace finance {

namespace {

// Sum of j u^j by powers of h = u - 1, for |n h| < 1: the coefficient of h^i is (i+1) C(n, i+2) + i C(n, i+1).
double weighted_by_series(double h, double n) {
    double binomial = n;  // C(n, i+1)
    double power = 1.0;   // h^i
    double sum = 0.0;
    for (double i = 0.0; i < 30.0; i += 1.0) {
        const double next = binomial * (n - i - 1.0) / (i + 2.0);
        sum += power * ((i + 1.0) * next + i * binomial);
        binomial = next;
        power *= h;
    }
    return sum;
}

}  // namespace

// (1 - u^n) / (1 - u)   and   (u (1 - u^n) / (1 - u) - n u^n) / (1 - u)
// Why    u^n is v^n or v^-n: 1 / v is rounded, and n times as far off in its n-th power
PowerSums sums_from_largest(double v, double n) {
    if (v == 1.0) return {n, n * (n - 1.0) / 2.0};
    const double h = v - 1.0;
    const double d = v < 1.0 ? -h : h / v;  // 1 - u
    const double exponent = v < 1.0 ? n : -n;
    const double x = exponent * elementary::log1p(h);
    const double plain = (x > -1.0 ? -elementary::expm1(x) : 1.0 - elementary::pow(v, exponent)) / d;
    if (n * d < 1.0) return {plain, weighted_by_series(-d, n)};
    const double u = v < 1.0 ? v : 1.0 / v;
    return {plain, (u * plain - n * elementary::pow(v, exponent)) / d};
}

double sum_of_powers(double v, double n) {
    const double sum = sums_from_largest(v, n).plain;
    return v > 1.0 ? sum * elementary::pow(v, n - 1.0) : sum;
}

DiscountSums closed_discount_sums(double v, double f, double e, double n) {
    const PowerSums sums = sums_from_largest(v, n);
    const double last_e = e + (n - 1.0);
    const double first = elementary::pow(v, e);
    const double last = elementary::pow(v, last_e);
    const double largest = v > 1.0 ? last : first;
    const double periods = v > 1.0 ? last_e * sums.plain - sums.weighted : e * sums.plain + sums.weighted;
    return {largest * sums.plain, last, -(largest * (v / f)) * periods, -(last * (v / f)) * last_e};
}

}  // namespace finance
