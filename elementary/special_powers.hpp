// Powers of what is not a normal positive number, and by what is 0, tiny, huge or no number.
#pragma once

#include <cstdint>

#include "elementary/number.hpp"

namespace finance::elementary {

// From 2^-65 to below 2^63 in size: no other makes a power that is neither 1 nor beyond all doubles.
constexpr bool is_plain_power(double y) { return is_between(exponent_field(y), 0x1p-65, 0x1p63); }

struct SpecialPower {
    bool is_known;
    double power;        // where it is
    std::uint64_t bits;  // where it is not: of |x|, as long_log takes them,
    std::uint64_t sign;  // and 1 << 63 for a power below 0
};

SpecialPower special_power(double x, double y);

}  // namespace finance::elementary
