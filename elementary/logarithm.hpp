// ln x: with x = 2^k z, z in the i-th of 128 parts, and c in the part's middle, k ln 2 + ln c + ln(1 + r), r = z/c - 1.
#pragma once

#include <cstdint>
#include <limits>

#include "elementary/logarithm_table.hpp"
#include "elementary/number.hpp"

namespace finance::elementary {

// x = 2^k z; the parts of z begin with the number of the bits `first`.
template <typename N>
struct Parted {
    N z;
    N k;
    typename N::Bits i;
};

inline constexpr std::uint64_t sign_and_exponent = std::uint64_t{0xFFF} << 52;

template <typename N>
[[gnu::always_inline]] inline Parted<N> parted(typename N::Bits bits, std::uint64_t first) {
    const typename N::Bits above = bits - first;
    return {N::of_bits(bits - (above & sign_and_exponent)), N::of_top_bits(above), above >> 45 & 127};
}

// The bits of a positive x below the normal ones, as if exponents went on
constexpr std::uint64_t bits_as_normal(double x) { return bits_of(x * 0x1p52) - (std::uint64_t{52} << 52); }

inline constexpr std::uint64_t first_part = bits_of(0.6875);
inline constexpr std::uint64_t near_1 = bits_of(1.0 - 0x1p-4);
inline constexpr std::uint64_t near_1_end = bits_of(1.0 + 0x1.09p-4);
inline constexpr double ln_2_high = 0x1.62e42fefa38p-1;
inline constexpr double ln_2_low = 0x1.ef35793c7673p-45;

// r = x - 1 in [-2^-4, 0x1.09p-4): r - r^2/2 with the square in two parts, and r^3 times a polynomial
template <typename N>
Long<N> log_near_1(N x) {
    const N b0{-0.5};
    const N b1{0x1.5555555555577p-2};
    const N b2{-0x1.ffffffffffdcbp-3};
    const N b3{0x1.999999995dd0cp-3};
    const N b4{-0x1.55555556745a7p-3};
    const N b5{0x1.24924a344de3p-3};
    const N b6{-0x1.fffffa4423d65p-4};
    const N b7{0x1.c7184282ad6cap-4};
    const N b8{-0x1.999eb43b068ffp-4};
    const N b9{0x1.78182f7afd085p-4};
    const N b10{-0x1.5521375d145cdp-4};
    const N r = x - N{1.0};
    const N r2 = r * r;
    const N r3 = r * r2;
    const N p3 = fused(r3, b10, fused(r2, b9, fused(r, b8, b7)));
    const N p2 = fused(r3, p3, fused(r2, b6, fused(r, b5, b4)));
    const N p1 = fused(r3, p2, fused(r2, b3, fused(r, b2, b1)));
    const N shift = r * N{0x1p27};
    const N r_high = r + shift - shift;  // 26 digits: its square is exact
    const N r_low = r - r_high;
    const N square = r_high * r_high * b0;
    const N high = r + square;
    const N low = fused(b0 * r_low, r_high + r, r - high + square);
    return {high, fused(r3, p1, low)};
}

template <typename N>
[[gnu::always_inline]] inline Long<N> log_of_parts(Parted<N> x) {
    const N a0{-0x1.0000000000001p-1};
    const N a1{0x1.555555551305bp-2};
    const N a2{-0x1.fffffffeb459p-3};
    const N a3{0x1.999b324f10111p-3};
    const N a4{-0x1.55575e506c89fp-3};
    const Two<N> part = N::entries(logarithm_parts.data(), &LogarithmPart::inverse, &LogarithmPart::logarithm, x.i);
    const N r = residue(x.z, part.first, N{-1.0});
    const N whole = fused(x.k, N{ln_2_high}, part.second);
    const N high = whole + r;
    const N low = fused(x.k, N{ln_2_low}, whole - high + r);
    const N r2 = r * r;
    const N p = fused(r2, fused(r, a4, a3), fused(r, a2, a1));
    return {high, fused(r * r2, p, fused(r2, a0, low))};
}

// Error  0.52 ulp
template <typename N>
double log(double x) {
    std::uint64_t bits = bits_of(x);
    if (bits - near_1 < near_1_end - near_1) return log_near_1(N{x}).sum().value;
    if (!is_normal_positive(bits)) [[unlikely]] {
        if (x == 0.0) return -infinity;
        if (!(x > 0.0)) return std::numeric_limits<double>::quiet_NaN();
        if (x == infinity) return x;
        bits = bits_as_normal(x);
    }
    return log_of_parts(parted<N>(bits, first_part)).sum().value;
}

}  // namespace finance::elementary
