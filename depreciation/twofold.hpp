// Numbers of twice the precision: the sum of two doubles of which the second is at most half a unit of the first.
// Error  of each operation 2^-102 or less, relative, as long as none of the doubles is denormal. Infinities behave as those
//        of doubles
#pragma once

#include <cmath>

#include "elementary/functions.hpp"

namespace finance {

struct Twofold {
    double high = 0.0;
    double low = 0.0;

    [[nodiscard]] double rounded() const { return high + low; }
    [[nodiscard]] bool negative() const { return high < 0.0; }
};

// a + b for |a| >= |b|, and for any
inline Twofold ordered_sum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

inline Twofold exact_sum(double a, double b) {
    const double sum = a + b;
    const double from_b = sum - a;
    return {sum, (a - (sum - from_b)) + (b - from_b)};
}

inline Twofold operator+(Twofold a, Twofold b) {
    const Twofold high = exact_sum(a.high, b.high);
    if (!std::isfinite(high.high)) return {high.high, 0.0};
    const Twofold low = exact_sum(a.low, b.low);
    const Twofold sum = ordered_sum(high.high, high.low + low.high);
    return ordered_sum(sum.high, sum.low + low.low);
}

inline Twofold operator-(Twofold a, Twofold b) { return a + Twofold{-b.high, -b.low}; }

inline Twofold operator*(Twofold a, Twofold b) {
    const double product = a.high * b.high;
    if (!std::isfinite(product)) return {product, 0.0};
    return ordered_sum(product, elementary::fused(a.high, b.high, -product) + (a.high * b.low + a.low * b.high));
}

inline Twofold operator/(Twofold a, Twofold b) {
    const double first = a.high / b.high;
    if (!std::isfinite(first) || !std::isfinite(b.high)) return {first, 0.0};
    const Twofold rest = a - b * Twofold{first, 0.0};
    const double second = rest.high / b.high;
    const double third = (rest - b * Twofold{second, 0.0}).high / b.high;
    return ordered_sum(first, second) + Twofold{third, 0.0};
}

}  // namespace finance
