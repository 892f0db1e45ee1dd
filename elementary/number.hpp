// A double in the formulas of exp, log and pow, which lanes of doubles go through as well (lanes/lanes.hpp). What processors
// do differently stands in fused alone.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

namespace finance::elementary {

inline constexpr double infinity = std::numeric_limits<double>::infinity();

constexpr std::uint64_t bits_of(double x) { return std::bit_cast<std::uint64_t>(x); }

// Of the size alone
constexpr std::uint64_t exponent_field(double x) { return bits_of(x) >> 52 & 0x7FF; }

// Of the exponent's field of a number: low <= |x| < high, both powers of two.
constexpr bool is_between(std::uint64_t field, double low, double high) {
    return field - exponent_field(low) < exponent_field(high) - exponent_field(low);
}

constexpr bool is_normal_positive(std::uint64_t bits) {
    return bits - bits_of(0x1p-1022) < bits_of(infinity) - bits_of(0x1p-1022);
}

template <typename N>
struct Two {
    N first;
    N second;
};

// high + low, low the smaller
template <typename N>
struct Long {
    N high;
    N low;
    [[nodiscard]] N sum() const { return low + high; }
};

template <typename Processor>
struct Number {
    using Bits = std::uint64_t;

    double value;

    friend Number operator+(Number a, Number b) { return {a.value + b.value}; }
    friend Number operator-(Number a, Number b) { return {a.value - b.value}; }
    friend Number operator*(Number a, Number b) { return {a.value * b.value}; }
    friend Number operator/(Number a, Number b) { return {a.value / b.value}; }
    // a b + c, rounded once
    friend Number fused(Number a, Number b, Number c) { return {Processor::fused(a.value, b.value, c.value)}; }
    // The same where c takes all that is above the product's error
    friend Number residue(Number a, Number b, Number c) { return {Processor::residue(a.value, b.value, c.value)}; }

    static Number of_bits(Bits bits) { return {std::bit_cast<double>(bits)}; }
    [[nodiscard]] Bits bits() const { return bits_of(value); }

    // The twelve bits on top as a whole number with a sign.
    static Number of_top_bits(Bits bits) {
        return {static_cast<double>(static_cast<std::int32_t>(static_cast<std::int64_t>(bits) >> 52))};
    }
    // A figure of the i-th record of a table; or two, of which the second stands right behind the first.
    template <typename Record>
    static Number entry(const Record* table, double Record::*figure, Bits i) {
        return {table[i].*figure};
    }
    template <typename Record>
    static Two<Number> entries(const Record* table, double Record::*first, double Record::*second, Bits i) {
        return {{table[i].*first}, {table[i].*second}};
    }
};

}  // namespace finance::elementary
