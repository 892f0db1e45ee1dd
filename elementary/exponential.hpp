// e^x: with x = k ln 2 / 128 + r, 2^(k/128) from a table times a polynomial in r, |r| < 2^-8.
#pragma once

#include <cmath>
#include <cstdint>

#include "elementary/exponential_table.hpp"
#include "elementary/number.hpp"

namespace finance::elementary {

template <typename N>
struct Reduced {
    N r;
    typename N::Bits k;  // its low 32 bits, signed
};

template <typename N>
[[gnu::always_inline]] inline Reduced<N> reduced(N x) {
    const N parts{0x1.71547652b82fep+7};  // 128 / ln 2
    const N whole{0x1.8p+52};             // added, it leaves a whole number in the last digits
    const N part_high{-0x1.62e42fefap-8};
    const N part_low{-0x1.cf79abc9e3b3ap-47};
    const N shifted = fused(x, parts, whole);
    const N k = shifted - whole;
    return {fused(k, part_low, fused(k, part_high, x)), shifted.bits()};
}

// scale (1 + rest). The bits of the scale may have run over: then scaled_far answers.
template <typename N>
struct Exponential {
    N rest;
    typename N::Bits scale;
    typename N::Bits k;
};

// rest = t + r + r^2 (c2 + c3 r) + r^4 (c4 + c5 r), t being what rounding left of 2^(k/128)
// Error  0.511 ulp of e^x
template <typename N>
[[gnu::always_inline]] inline Exponential<N> exponential(Reduced<N> x) {
    const N c2{0x1.ffffffffffdbdp-2};
    const N c3{0x1.555555555543cp-3};
    const N c4{0x1.55555cf172b91p-5};
    const N c5{0x1.1111167a4d017p-7};
    const typename N::Bits j = x.k & 127;
    const N r = x.r;
    const N r2 = r * r;
    const Two<N> part = N::entries(exponential_parts.data(), &ExponentialPart::rest, &ExponentialPart::scale, j);
    const N low = fused(r2, fused(r, c3, c2), part.first + r);
    return {fused(r2 * r2, fused(r, c5, c4), low), part.second.bits() + (x.k << 45), x.k};
}

template <typename N>
[[gnu::always_inline]] inline N scaled(const Exponential<N>& e) {
    const N scale = N::of_bits(e.scale);
    return fused(scale, e.rest, scale);
}

// Where the scale is beyond the exponents of doubles, or the result may be below their normal ones.
template <typename N>
double scaled_far(const Exponential<N>& e) {
    constexpr std::uint64_t down = std::uint64_t{1009} << 52;
    constexpr std::uint64_t up = std::uint64_t{1022} << 52;
    const bool large = (e.k & 0x80000000) == 0;
    if (large) return 0x1p1009 * scaled(Exponential<N>{e.rest, e.scale - down, e.k}).value;
    const N scale = N::of_bits(e.scale + up);
    const N rest = scale * e.rest;
    const N y = scale + rest;
    if (std::abs(y.value) >= 1.0) return 0x1p-1022 * y.value;
    // Below the normal ones: rounded here, to the last digit that is kept, and exact from there.
    const N one{std::copysign(1.0, y.value)};
    const N sum = one + y;
    const N low = (one - sum + y) + (scale - y + rest);
    return 0x1p-1022 * std::copysign((sum + low - one).value, y.value);
}

// Of the size of x: from 2^-54 to below 512. What is smaller adds to 1 alone.
constexpr bool is_plain_exponent(std::uint64_t field) { return is_between(field, 0x1p-54, 512.0); }

template <typename N>
double exp(double x) {
    const std::uint64_t field = exponent_field(x);
    if (is_plain_exponent(field)) [[likely]]
        return scaled(exponential(reduced(N{x}))).value;
    if (field < exponent_field(0x1p-54)) return 1.0 + x;
    if (field < exponent_field(1024.0)) return scaled_far(exponential(reduced(N{x})));
    if (!(x < infinity)) return 1.0 + x;
    return x < 0.0 ? 0.0 : infinity;
}

// e^x - 1
// Error  2.44 ulp worst of 1e5 draws, |x| <= 1: the polynomial is the best for e^x
template <typename N>
double expm1(double x) {
    const std::uint64_t field = exponent_field(x);
    if (field < exponent_field(0x1p-54)) return x;
    if (!is_plain_exponent(field)) return exp<N>(x) - 1.0;
    const Exponential<N> e = exponential(reduced(N{x}));
    const N scale = N::of_bits(e.scale);
    return fused(scale, e.rest, scale - N{1.0}).value;
}

}  // namespace finance::elementary
