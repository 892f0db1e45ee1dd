// DOLLARDE and DOLLARFR: prices written as whole units and a fraction of f parts, 1.02 being 1 and 2/16 for f = 16.
//
//  (1) The fraction takes as many decimals as f has digits, a power of ten one less.
//  (2) Whole units are kept in 32 bits; beyond them a price means nothing.
//  (3) DOLLARDE gives a whole price back as it is. The test compares with the whole part itself, so that it never holds
//      for a negative one; DOLLARFR has none.
#pragma once

#include <algorithm>
#include <array>

#include "abi/arguments.hpp"
#include "lanes/lanes.hpp"

namespace finance {

inline constexpr std::array powTen{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};

template <typename N>
struct FractionalPriceOf {
    N i;  // whole units
    N w;  // the rest
    N f;  // parts of a unit
    N P;  // 10 to the number of decimals
};

// The whole units of a price; in lanes of one below 2^31 in size, and 0 without a sign.
inline double whole_units(double x) { return truncate_to_int32(x); }
template <typename Set>
Lanes<Set> whole_units(Lanes<Set> x) {
    return truncated(x) + 0.0;
}

// The smallest power of ten that is no less than f: looked up, or chosen.
inline double decimals_of(double f) { return *std::ranges::lower_bound(powTen, f); }
template <typename Set>
[[gnu::noinline]] Lanes<Set> decimals_of(Lanes<Set> f) {
    Lanes<Set> P{powTen[0]};
    for (std::size_t i = 0; powTen[i] < 0x1p31; ++i) P = select(f > powTen[i], Lanes<Set>{powTen[i + 1]}, P);
    return P;
}

// price x, denominator f
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_price(In& in, FractionalPriceOf<N>& price) {
    constexpr double beyond = 0x1p31;
    N x;
    WholeOf<N> f;
    if (!in.number(1, x) || !in.count(2, f) || in.leaves(abs(x) >= beyond)) return false;
    price.i = whole_units(x);
    price.w = x - price.i;
    price.f = as_number(f);
    price.P = decimals_of(price.f);
    return true;
}

FINANCE_CALCULATION(DOLLARDE) {
    FractionalPriceOf<typename In::Number> x{};
    if (!read_price(in, x)) return in.status();
    const auto is_whole = abs(x.w) <= x.i * 5.0 * 1.110223024625157e-16;
    return in.answer(choose(
        is_whole, [&] { return x.i; }, [&] { return x.i + x.P * x.w / x.f; }));
}

FINANCE_CALCULATION(DOLLARFR) {
    FractionalPriceOf<typename In::Number> x{};
    if (!read_price(in, x)) return in.status();
    return in.answer(x.i + x.w * x.f / x.P);
}

}  // namespace finance
