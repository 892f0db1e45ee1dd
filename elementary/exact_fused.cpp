#include "elementary/exact_fused.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "elementary/error_free.hpp"
#include "elementary/number.hpp"

namespace finance::elementary {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr std::uint64_t one_above_fraction = std::uint64_t{1} << 52;
constexpr int least_exponent = -1074;  // of a double's last digit
constexpr int leading_digit = 125;     // of what is added: a sum has one more

// digits * 2^exponent, negative or not
struct Exact {
    Wide digits;
    int exponent;
    bool negative;
};

Exact exact(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    const auto biased = static_cast<int>(bits >> 52 & 0x7FF);
    const std::uint64_t fraction = bits & (one_above_fraction - 1);
    const std::uint64_t digits = biased == 0 ? fraction : fraction | one_above_fraction;
    return {digits, std::max(biased, 1) - 1 + least_exponent, std::signbit(x)};
}

int width(Wide digits) {
    const auto high = static_cast<std::uint64_t>(digits >> 64);
    return 128 - (high != 0 ? std::countl_zero(high) : 64 + std::countl_zero(static_cast<std::uint64_t>(digits)));
}

Exact with_leading_digit(Exact x) {
    const int up = leading_digit + 1 - width(x.digits);
    return {x.digits << up, x.exponent - up, x.negative};
}

// Digits that fall off leave a last digit of 1, which is all that rounding has to know.
Wide shifted_down(Wide digits, int by) {
    if (by >= 128) return 1;
    const Wide kept = digits >> by;
    return kept << by == digits ? kept : kept | 1;
}

// Both not 0. Where digits fall off, the sum keeps 120 and more.
Exact sum(Exact a, Exact b) {
    a = with_leading_digit(a);
    b = with_leading_digit(b);
    if (a.exponent < b.exponent || (a.exponent == b.exponent && a.digits < b.digits)) std::swap(a, b);
    const Wide smaller = shifted_down(b.digits, a.exponent - b.exponent);
    return {a.negative == b.negative ? a.digits + smaller : a.digits - smaller, a.exponent, a.negative};
}

// The nearest double, of two as near the even one.
double rounded(const Exact& x) {
    const int drop = std::max(width(x.digits) - 53, least_exponent - x.exponent);
    const int exponent = x.exponent + drop - least_exponent;
    std::uint64_t kept = 0;
    if (drop <= 0) {
        kept = static_cast<std::uint64_t>(x.digits << -drop);
    } else if (drop < 128) {
        kept = static_cast<std::uint64_t>(x.digits >> drop);
        const Wide rest = x.digits - (Wide{kept} << drop);
        const Wide half = Wide{1} << (drop - 1);
        if (rest > half || (rest == half && kept % 2 != 0)) ++kept;
    }
    // A digit above the fraction, or a carry, goes into the exponent.
    const double size = exponent < 2046 ? std::bit_cast<double>((static_cast<std::uint64_t>(exponent) << 52) + kept)
                                        : std::numeric_limits<double>::infinity();
    return x.negative ? -size : size;
}

[[gnu::noinline]] double fused_in_whole_numbers(double a, double b, double c) {
    if (!std::isfinite(a) || !std::isfinite(b) || a == 0.0 || b == 0.0) return a * b + c;
    if (!std::isfinite(c)) return c;
    const Exact x = exact(a);
    const Exact y = exact(b);
    const Exact product{x.digits * y.digits, x.exponent + y.exponent, x.negative != y.negative};
    if (c == 0.0) return rounded(product);
    const Exact whole = sum(product, exact(c));
    return whole.digits == 0 ? 0.0 : rounded(whole);
}

// ---- In doubles, where neither a product's error nor a sum leaves their range: a third of the time

// A sum that is not exact, with its last digit odd: of what it stands between, the one that no later rounding takes for a
// tie.
double odd_sum(double a, double b) {
    const Rounded sum = two_sum(a, b);
    const auto bits = std::bit_cast<std::uint64_t>(sum.value);
    if (sum.error == 0.0 || bits % 2 != 0) return sum.value;
    return std::bit_cast<double>((sum.error > 0.0) == (sum.value > 0.0) ? bits + 1 : bits - 1);
}

// Boldo and Melquiond, Emulation of FMA and correctly rounded sums: proved algorithms using rounding to odd (2008).
double fused_in_doubles(double a, double b, double c) {
    const Rounded product = two_product(a, b);
    const Rounded low = two_sum(c, product.error);
    const Rounded high = two_sum(product.value, low.value);
    return high.value + odd_sum(low.error, high.error);
}

}  // namespace

// In those ranges a product's last digit is above 2^-907, and everything below 2^901.
double exact_fused(double a, double b, double c) {
    const auto is_factor = [](double x) { return is_between(exponent_field(x), 0x1p-400, 0x1p400); };
    const bool in_range =
        is_factor(a) && is_factor(b) && (c == 0.0 || is_between(exponent_field(c), 0x1p-900, 0x1p900));
    return in_range ? fused_in_doubles(a, b, c) : fused_in_whole_numbers(a, b, c);
}

}  // namespace finance::elementary
