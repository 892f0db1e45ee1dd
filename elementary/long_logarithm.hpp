// ln x in two doubles, 68 digits of it, from a table with what rounding left of ln c.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "elementary/logarithm.hpp"
#include "elementary/long_logarithm_table.hpp"
#include "elementary/number.hpp"

namespace finance::elementary {

// Of a positive x: its bits, those below the normal ones as bits_as_normal gives them
// Error  2^-68
template <typename N>
[[gnu::always_inline]] inline Long<N> long_log(typename N::Bits bits) {
    constexpr std::uint64_t first = 0x3fe6955500000000;  // 0.7057
    const N a0{-0.5};
    const N a1{-0x1.555555555556p-1};
    const N a2{0x1.0000000000006p-1};
    const N a3{0x1.999999959554ep-1};
    const N a4{-0x1.555555529a47ap-1};
    const N a5{-0x1.2495b9b4845e9p+0};
    const N a6{0x1.0002b8b263fc3p+0};
    const Parted<N> x = parted<N>(bits, first);
    using Part = LongLogarithmPart;
    const Two<N> part = N::entries(long_logarithm_parts.data(), &Part::inverse, &Part::logarithm, x.i);
    const N rest = N::entry(long_logarithm_parts.data(), &Part::rest, x.i);
    const N r = residue(x.z, part.first, N{-1.0});
    const N whole = fused(x.k, N{ln_2_high}, part.second);
    const N sum = whole + r;
    const N half = a0 * r;
    const N square = r * half;
    const N cube = r * square;
    const N high = sum + square;
    const N p = fused(square, fused(square, fused(r, a6, a5), fused(r, a4, a3)), fused(r, a2, a1));
    const N low1 = fused(x.k, N{ln_2_low}, rest) + (whole - sum + r);
    const N low2 = low1 + residue(half, r, N{0.0} - square) + (sum - high + square);
    const N low = fused(cube, p, low2);
    const N result = high + low;
    return {result, high - result + low};
}

// ln(1 + x)
// Error  0.66 ulp worst of 1e5 draws
template <typename N>
double log1p(double x) {
    if (!(x > -1.0)) return x == -1.0 ? -infinity : std::numeric_limits<double>::quiet_NaN();
    if (!(x < infinity) || exponent_field(x) < exponent_field(0x1p-54)) return x;
    const N sum = N{1.0} + N{x};
    const N left = std::abs(x) < 1.0 ? N{x} - (sum - N{1.0}) : N{1.0} - (sum - N{x});
    const Long<N> l = long_log<N>(bits_of(sum.value));
    return (l.high + (l.low + left / sum)).value;
}

}  // namespace finance::elementary
