// A declining balance after any number of periods.
#pragma once

#include <cmath>
#include <cstdint>

namespace finance {

// Periods that a depreciation is walked one by one; longer ones have closed forms.
inline constexpr std::int32_t longest_literal_walk = 10'000'000;

// What i periods leave of 1: (1 - q)^i, q = factor / life. Above q = 1 a period takes more than there is, and the sign
// of what is left alternates.
class Decline {
public:
    Decline(double factor, double life) : alternates_{factor > life}, growth_{growth(factor, life)} {}

    [[nodiscard]] double left(std::int64_t i) const {
        if (i == 0) return 1.0;
        const double size = std::exp(static_cast<double>(i) * growth_);
        return negative(i) ? -size : size;
    }
    // 1 - left(i)
    [[nodiscard]] double taken(std::int64_t i) const {
        if (i == 0) return 0.0;
        const double exponent = static_cast<double>(i) * growth_;
        return negative(i) ? 1.0 + std::exp(exponent) : 0.0 - std::expm1(exponent);
    }

private:
    // ln|1 - q|; the distance of q from 2 keeps its digits.
    [[nodiscard]] double growth(double factor, double life) const {
        return std::log1p(alternates_ ? std::fma(-2.0, life, factor) / life : -(factor / life));
    }
    [[nodiscard]] bool negative(std::int64_t i) const { return alternates_ && i % 2 != 0; }

    bool alternates_;
    double growth_;
};

}  // namespace finance
