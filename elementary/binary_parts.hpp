// A double taken apart and put together again, for products that would overflow on the way.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "elementary/number.hpp"

namespace finance::elementary {

struct BinaryParts {
    double mantissa;  // of a size in [1, 2); 0, infinite or NaN as it was
    int exponent;
};

inline BinaryParts binary_parts(double x) {
    if (x == 0.0 || !std::isfinite(x)) return {x, 0};
    if (std::abs(x) < 0x1p-1022) {
        const BinaryParts larger = binary_parts(x * 0x1p52);
        return {larger.mantissa, larger.exponent - 52};
    }
    constexpr std::uint64_t field = std::uint64_t{0x7FF} << 52;
    const auto exponent = static_cast<int>(exponent_field(x)) - 1023;
    return {std::bit_cast<double>((bits_of(x) & ~field) | bits_of(1.0)), exponent};
}

// mantissa * 2^exponent, rounded once; |mantissa| in [2^-53, 2)
inline double joined(double mantissa, int exponent) {
    exponent = std::clamp(exponent, -3000, 3000);
    for (; exponent > 1023; exponent -= 1023) mantissa *= 0x1p1023;
    // Before the last factor nothing is below the normal numbers but what ends as 0.
    for (; exponent < -969; exponent += 969) mantissa *= 0x1p-969;
    return mantissa * std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52);
}

}  // namespace finance::elementary
