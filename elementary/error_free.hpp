// Sums and products of doubles with what rounding left of them, itself a double: exact where neither leaves the range.
#pragma once

namespace finance::elementary {

// Exactly value + error, value being the nearest double.
struct Rounded {
    double value;
    double error;
};

inline Rounded two_sum(double a, double b) {
    const double s = a + b;
    const double of_b = s - a;
    return {s, (a - (s - of_b)) + (b - of_b)};
}

// The upper half of a double's digits; the lower half is what is left.
inline double upper_half(double x) {
    constexpr double splitter = 0x1p27 + 1.0;
    const double product = splitter * x;
    return product - (product - x);
}

inline Rounded two_product(double a, double b) {
    const double p = a * b;
    const double a_upper = upper_half(a);
    const double a_lower = a - a_upper;
    const double b_upper = upper_half(b);
    const double b_lower = b - b_upper;
    return {p, a_lower * b_lower - (((p - a_upper * b_upper) - a_lower * b_upper) - a_upper * b_lower)};
}

}  // namespace finance::elementary
