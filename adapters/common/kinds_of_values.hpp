// Whether any of many values is a NaN, or not finite: asked of their bits without a branch, so that compilers take several
// at once.
//
//  (1) Without its sign a double's pattern is the larger the larger the number; infinity's is followed by those of NaNs.
//  (2) What exceeds a limit leaves the top bit set when it is taken from it; nothing else does.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <span>

namespace finance::adapters {

inline bool any_size_above(std::span<const double> values, double limit) {
    constexpr std::uint64_t without_sign = ~std::uint64_t{0} >> 1U;
    const auto most = std::bit_cast<std::uint64_t>(limit);
    std::uint64_t differences = 0;
    for (const double value : values) differences |= most - (std::bit_cast<std::uint64_t>(value) & without_sign);
    return differences > without_sign;
}

inline bool any_nan(std::span<const double> values) {
    return any_size_above(values, std::numeric_limits<double>::infinity());
}
inline bool all_finite(std::span<const double> values) {
    return !any_size_above(values, std::numeric_limits<double>::max());
}

}  // namespace finance::adapters
