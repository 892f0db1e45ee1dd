// A double in the formulas of exp, log and pow. What processors do differently stands in fused alone.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

namespace finance::elementary {

inline constexpr double infinity = std::numeric_limits<double>::infinity();

constexpr std::uint64_t bits_of(double x) { return std::bit_cast<std::uint64_t>(x); }

// Of the size alone
constexpr std::uint64_t exponent_field(double x) { return bits_of(x) >> 52 & 0x7FF; }

constexpr bool is_normal_positive(std::uint64_t bits) {
    return bits - bits_of(0x1p-1022) < bits_of(infinity) - bits_of(0x1p-1022);
}

template <typename Processor>
struct Number {
    double value;

    friend Number operator+(Number a, Number b) { return {a.value + b.value}; }
    friend Number operator-(Number a, Number b) { return {a.value - b.value}; }
    friend Number operator*(Number a, Number b) { return {a.value * b.value}; }
    friend Number operator/(Number a, Number b) { return {a.value / b.value}; }
    // a b + c, rounded once
    friend Number fused(Number a, Number b, Number c) { return {Processor::fused(a.value, b.value, c.value)}; }

    static Number of_bits(std::uint64_t bits) { return {std::bit_cast<double>(bits)}; }
};

}  // namespace finance::elementary
