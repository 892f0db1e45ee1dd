// Limits that several calculations know: where numbers end, and how long a loop may be.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "abi/steps.hpp"

namespace finance {

inline constexpr double largest_double = std::numeric_limits<double>::max();

// 2^53: up to it all whole numbers are doubles, and their sums and differences exact.
inline constexpr std::int64_t largest_whole_number = std::int64_t{1} << 53;

// 2^-26.5: below it a growth factor, a rate or an amount counts as nothing.
inline constexpr double smallest_that_counts = 1.053671212772351e-8;

// Steps of a loop that are made one by one, as long as a step may be a slow one: a call then ends within a second. Loops
// of cheap steps are given more, unless their amounts come near the denormal numbers, which take some processors a
// hundred times as long.
inline constexpr std::int64_t longest_literal_loop = 10'000'000 / walks_shortened;
inline constexpr double near_denormals = 0x1p-960;

// `usual` steps; `amount` is the smallest of what they multiply and add up, to within a factor of 2^60.
inline std::int64_t longest_literal_walk(std::int64_t usual, double amount) {
    return std::abs(amount) < near_denormals ? std::min(usual, longest_literal_loop) : usual;
}

}  // namespace finance
