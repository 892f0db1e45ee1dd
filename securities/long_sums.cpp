#include "securities/long_sums.hpp"

#include <cmath>

namespace finance {

namespace {

// v^n - 1, from v - 1, which is exact for v between 1/2 and 2
double growth(double v, double n) { return std::expm1(n * std::log1p(v - 1.0)); }

// Sum of j v^j by powers of h = v - 1, for |n h| < 1: the coefficient of h^i is (i+1) C(n, i+2) + i C(n, i+1).
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

double sum_of_powers(double v, double n) {
    if (v == 1.0) return n;
    return growth(v, n) / (v - 1.0);
}

double sum_of_weighted_powers(double v, double n) {
    const double h = v - 1.0;
    if (std::abs(n * h) < 1.0) return weighted_by_series(h, n);
    return (n * std::pow(v, n) - v * sum_of_powers(v, n)) / h;
}

}  // namespace finance
