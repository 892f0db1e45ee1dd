// Rounding to whole units, half away from zero, through a 32-bit integer.
#pragma once

#include "abi/conversions.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// What a truncation to 32 bits leaves of an amount that they cannot hold.
inline constexpr double out_of_range = -2147483648.0;

inline double round_half_away(double x) {
    const double half = x > 0.0 ? 0.5 : -0.5;
    return static_cast<double>(truncate_to_int32(x + half));
}
template <typename N>
N round_half_away(N x) {
    const N moved = x + select(x > 0.0, N{0.5}, N{-0.5});
    return select(abs(moved) < 0.0 - out_of_range, truncated(moved) + 0.0, N{out_of_range});  // of -0.5 it is 0, not -0
}

}  // namespace finance
