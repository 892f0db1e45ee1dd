// How many steps are walked one by one before a closed form takes over.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace finance {

// Denormal numbers take some processors a hundred times as long. A walk whose amounts come near them is given fewer
// steps: so many that even there a call ends within a second.
inline constexpr std::int64_t longest_denormal_walk = 10'000'000;

// `usual` steps; `amount` is the smallest of what they multiply and add up, to within a factor of 2^60.
inline std::int64_t longest_literal_walk(std::int64_t usual, double amount) {
    constexpr double near_denormals = 0x1p-960;
    return std::abs(amount) < near_denormals ? std::min(usual, longest_denormal_walk) : usual;
}

}  // namespace finance
