#include "elementary/special_powers.hpp"

#include <cmath>

#include "abi/conversions.hpp"
#include "elementary/logarithm.hpp"

namespace finance::elementary {

namespace {

constexpr std::uint64_t sign_bit = std::uint64_t{1} << 63;
constexpr std::uint64_t quiet_bit = std::uint64_t{1} << 51;

SpecialPower known(double power) { return {.is_known = true, .power = power, .bits = 0, .sign = 0}; }

bool is_signalling(double x) { return std::isnan(x) && (bits_of(x) & quiet_bit) == 0; }

// From 2^53 on all doubles are even.
bool is_whole(double y) { return std::abs(y) >= 0x1p53 || static_cast<double>(truncate_to_int64(y)) == y; }
bool is_odd(double y) { return std::abs(y) < 0x1p53 && is_whole(y) && (truncate_to_int64(y) & 1) != 0; }

// x is 0 or infinite, or y is infinite.
double limit(double x, double y) {
    if (std::isinf(y)) {
        if (std::abs(x) == 1.0) return 1.0;
        return (std::abs(x) < 1.0) == (y < 0.0) ? infinity : 0.0;
    }
    const double size = (x == 0.0) == (y < 0.0) ? infinity : 0.0;
    return std::signbit(x) && is_odd(y) ? -size : size;
}

// x is positive and not 1.
double power_by_extreme(double x, double y) {
    if (std::abs(y) < 1.0) return x > 1.0 ? 1.0 + y : 1.0 - y;
    return (x > 1.0) == (y > 0.0) ? infinity : 0.0;
}

}  // namespace

SpecialPower special_power(double x, double y) {
    if (is_signalling(x) || is_signalling(y)) return known(x + y);
    if (y == 0.0 || x == 1.0) return known(1.0);
    if (std::isnan(x) || std::isnan(y)) return known(x + y);
    if (x == 0.0 || std::isinf(x) || std::isinf(y)) return known(limit(x, y));
    if (x < 0.0 && !is_whole(y)) return known(std::numeric_limits<double>::quiet_NaN());
    const std::uint64_t sign = x < 0.0 && is_odd(y) ? sign_bit : 0;
    const double size = std::abs(x);
    if (size == 1.0) return known(sign != 0 ? -1.0 : 1.0);
    if (!is_plain_power(y)) return known(power_by_extreme(size, y));
    const std::uint64_t bits = size < 0x1p-1022 ? bits_as_normal(size) : bits_of(size);
    return {.is_known = false, .power = 0.0, .bits = bits, .sign = sign};
}

}  // namespace finance::elementary
