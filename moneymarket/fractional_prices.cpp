// DOLLARDE and DOLLARFR: prices written as whole units and a fraction of f parts, 1.02 being 1 and 2/16 for f = 16.
//
//  (1) The fraction takes as many decimals as f has digits, a power of ten one less.
//  (2) Whole units are kept in 32 bits; beyond them a price means nothing.
//  (3) DOLLARDE gives a whole price back as it is. The test compares with the whole part itself, so that it never holds
//      for a negative one; DOLLARFR has none.
#include <algorithm>
#include <array>
#include <cmath>

#include "abi/arguments.hpp"

namespace finance {

namespace {

constexpr std::array powTen{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};

struct FractionalPrice {
    double i;  // whole units
    double w;  // the rest
    double f;  // parts of a unit
    double P;  // 10 to the number of decimals
};

// price x, denominator f
bool read_price(Arguments& in, FractionalPrice& price) {
    double x;
    std::int32_t f;
    if (!in.number(1, x) || !in.count(2, f)) return false;
    price.i = truncate_to_int32(x);
    price.w = x - price.i;
    price.f = f;
    price.P = *std::ranges::lower_bound(powTen, price.f);
    return true;
}

}  // namespace

FINANCE_HANDLER(DOLLARDE) {
    Arguments in{context, result, count};
    FractionalPrice x{};
    if (!read_price(in, x)) return in.status();
    const bool is_whole = std::abs(x.w) <= x.i * 5.0 * 1.110223024625157e-16;
    return in.answer(is_whole ? x.i : x.i + x.P * x.w / x.f);
}

FINANCE_HANDLER(DOLLARFR) {
    Arguments in{context, result, count};
    FractionalPrice x{};
    if (!read_price(in, x)) return in.status();
    return in.answer(x.i + x.w * x.f / x.P);
}

}  // namespace finance
