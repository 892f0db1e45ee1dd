// x^y = e^(y ln x), with ln x in two doubles: 68 digits of it make a power of 53.
#pragma once

#include <cmath>
#include <cstdint>

#include "elementary/exponential.hpp"
#include "elementary/long_logarithm.hpp"
#include "elementary/number.hpp"
#include "elementary/special_powers.hpp"

namespace finance::elementary {

// Of x.high + x.low
template <typename N>
[[gnu::always_inline]] inline Exponential<N> exponential_of_long(Long<N> x) {
    Reduced<N> to = reduced(x.high);
    to.r = to.r + x.low;
    return exponential(to);
}

// e^(x.high + x.low) with the sign, a bit of its own
template <typename N>
double exp_of_long(Long<N> x, std::uint64_t sign) {
    const std::uint64_t field = exponent_field(x.high.value);
    if (field < exponent_field(0x1p-54)) return 1.0 + x.high.value;  // of no whole power but of 1: there is no sign
    if (field >= exponent_field(1024.0))
        return std::copysign(x.high.value < 0.0 ? 0.0 : infinity, sign != 0 ? -1.0 : 1.0);
    Exponential<N> e = exponential_of_long(x);
    e.scale += sign;
    return is_plain_exponent(field) ? scaled(e).value : scaled_far(e);
}

// The same where x.high is below 512 in size, and there is no sign
template <typename N>
[[gnu::always_inline]] inline N exp_of_plain_long(Long<N> x) {
    return scaled(exponential_of_long(x));
}

// y (l.high + l.low)
template <typename N>
[[gnu::always_inline]] inline Long<N> multiplied(N y, Long<N> l) {
    const N high = y * l.high;
    return {high, fused(y, l.low, residue(y, l.high, N{0.0} - high))};
}

// x^y from ln x, for x a normal positive number and y a plain power
template <typename N>
double pow_of_log(Long<N> l, double y) {
    return exp_of_long(multiplied(N{y}, l), 0);
}

// Error  0.52 ulp
template <typename N>
double pow(double x, double y) {
    std::uint64_t bits = bits_of(x);
    std::uint64_t sign = 0;
    if (!is_normal_positive(bits) || !is_plain_power(y)) [[unlikely]] {
        const SpecialPower special = special_power(x, y);
        if (special.is_known) return special.power;
        bits = special.bits;
        sign = special.sign;
    }
    return exp_of_long(multiplied(N{y}, long_log<N>(bits)), sign);
}

}  // namespace finance::elementary
