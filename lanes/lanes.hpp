// A formula for one number or for several side by side: kernels are written once, for N, which is double or Lanes<Set>.
//
//  (1) A lane has the bits that one call has: the same operations in the same order, each rounded as by itself.
//  (2) What is a branch for one number is a choice for several: both sides are formed where the lanes differ, and one side
//      alone where they agree. Formulas are total, so that the side not taken does no harm; flags of exceptions are put
//      back at the end of a column (module/columns.cpp).
//  (3) Fields that decide how rows are calculated, a basis or a frequency, are the same in all lanes (lanes/rows.hpp).
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "elementary/number.hpp"

namespace finance {

// ---- One number

using std::abs;
using std::sqrt;

constexpr bool any(bool truth) { return truth; }
constexpr bool all(bool truth) { return truth; }

template <typename Yes, typename No>
double choose(bool truth, Yes yes, No no) {
    return truth ? yes() : no();
}
constexpr double select(bool truth, double yes, double no) { return truth ? yes : no; }
constexpr std::int64_t select(bool truth, std::int64_t yes, std::int64_t no) { return truth ? yes : no; }

// What N's comparisons give, and what N's whole numbers are kept in.
template <typename N>
struct KindsOf {
    using Truth = typename N::Truth;
    using Whole = N;
    using LongWhole = N;
};
template <>
struct KindsOf<double> {
    using Truth = bool;
    using Whole = std::int32_t;
    using LongWhole = std::int64_t;
};
template <typename N>
using TruthOf = typename KindsOf<N>::Truth;
template <typename N>
using WholeOf = typename KindsOf<N>::Whole;
template <typename N>
using LongWholeOf = typename KindsOf<N>::LongWhole;

constexpr double as_number(std::int32_t whole) { return whole; }
constexpr double as_number(std::int64_t whole) { return static_cast<double>(whole); }

// Both, or one of the two, each formed already.
constexpr bool both(bool a, bool b) { return a && b; }
constexpr bool either(bool a, bool b) { return a || b; }

// ---- Several: what a set of instructions offers is in instruction_set.hpp.

template <typename Set>
struct LaneTruth {
    typename Set::Words bits;  // all ones or none in each lane

    friend LaneTruth operator&(LaneTruth a, LaneTruth b) { return {a.bits & b.bits}; }
    friend LaneTruth operator|(LaneTruth a, LaneTruth b) { return {a.bits | b.bits}; }
    friend LaneTruth operator!(LaneTruth a) { return {~a.bits}; }

    // Bit i is lane i's.
    [[nodiscard]] unsigned lanes() const { return Set::signs(bits); }
    static LaneTruth of_lanes(unsigned lanes) { return {Set::lane_bits(lanes)}; }

    friend LaneTruth both(LaneTruth a, LaneTruth b) { return a & b; }
    friend LaneTruth either(LaneTruth a, LaneTruth b) { return a | b; }
    friend bool any(LaneTruth truth) { return truth.lanes() != 0; }
    friend bool all(LaneTruth truth) { return truth.lanes() == Set::all_lanes; }
};

template <typename Set>
struct Lanes {
    using Truth = LaneTruth<Set>;
    using Bits = typename Set::Words;
    static constexpr int width = Set::width;

    typename Set::Doubles value;

    Lanes() = default;
    Lanes(double x) : value{Set::broadcast(x)} {}
    explicit Lanes(typename Set::Doubles lanes) : value{lanes} {}

    static Lanes load(const double* from) { return Lanes{Set::load(from)}; }
    void store(double* to) const { Set::store(to, value); }
    double operator[](int lane) const { return Set::lane(value, lane); }

    friend Lanes operator+(Lanes a, Lanes b) { return Lanes{a.value + b.value}; }
    friend Lanes operator-(Lanes a, Lanes b) { return Lanes{a.value - b.value}; }
    friend Lanes operator*(Lanes a, Lanes b) { return Lanes{a.value * b.value}; }
    friend Lanes operator/(Lanes a, Lanes b) { return Lanes{a.value / b.value}; }
    Lanes operator-() const { return of_bits(bits() ^ Bits(Lanes{-0.0}.bits())); }
    Lanes& operator+=(Lanes b) { return *this = *this + b; }
    Lanes& operator-=(Lanes b) { return *this = *this - b; }
    Lanes& operator*=(Lanes b) { return *this = *this * b; }

    friend Truth operator<(Lanes a, Lanes b) { return {Bits(a.value < b.value)}; }
    friend Truth operator<=(Lanes a, Lanes b) { return {Bits(a.value <= b.value)}; }
    friend Truth operator>(Lanes a, Lanes b) { return {Bits(a.value > b.value)}; }
    friend Truth operator>=(Lanes a, Lanes b) { return {Bits(a.value >= b.value)}; }
    friend Truth operator==(Lanes a, Lanes b) { return {Bits(a.value == b.value)}; }
    friend Truth operator!=(Lanes a, Lanes b) { return {Bits(a.value != b.value)}; }

    // Any NaN
    friend Truth is_missing(Lanes x) {
        const Lanes same = x;
        return x != same;
    }

    friend Lanes select(Truth truth, Lanes yes, Lanes no) {
        return Lanes{Set::select(truth.bits, yes.value, no.value)};
    }
    friend Lanes abs(Lanes x) { return of_bits(x.bits() & ~Bits(Lanes{-0.0}.bits())); }
    friend Lanes sqrt(Lanes x) { return Lanes{Set::square_root(x.value)}; }
    // Toward zero, of what is below 2^31 in size.
    friend Lanes truncated(Lanes x) { return Lanes{Set::truncated(x.value)}; }
    // Exactly whole, and below 2^31 in size
    friend Truth is_whole(Lanes x) {
        constexpr double beyond = 0x1p31;
        return (abs(x) < beyond) & (truncated(x) == x);
    }
    friend Lanes as_number(Lanes whole) { return whole; }

    // f of each lane by itself
    template <typename F>
    friend Lanes each(F f, Lanes x) {
        std::array<double, std::size_t{Set::width}> of_lanes;
        for (int lane = 0; lane < width; ++lane) of_lanes[static_cast<std::size_t>(lane)] = f(x[lane]);
        return load(of_lanes.data());
    }
    template <typename F>
    friend Lanes each(F f, Lanes x, Lanes y) {
        std::array<double, std::size_t{Set::width}> of_lanes;
        for (int lane = 0; lane < width; ++lane) of_lanes[static_cast<std::size_t>(lane)] = f(x[lane], y[lane]);
        return load(of_lanes.data());
    }

    // ---- As a number of the elementary functions (elementary/number.hpp)
    friend Lanes fused(Lanes a, Lanes b, Lanes c) { return Lanes{Set::fused(a.value, b.value, c.value)}; }
    friend Lanes residue(Lanes a, Lanes b, Lanes c) { return fused(a, b, c); }
    static Lanes of_bits(Bits bits) { return Lanes{typename Set::Doubles(bits)}; }
    [[nodiscard]] Bits bits() const { return Bits(value); }
    // Added to 2^52 a whole number stands in the last digits; the sign is kept out of it.
    static Lanes of_top_bits(Bits bits) {
        constexpr double whole = 0x1p52;
        constexpr double without_sign = 2048.0;
        const Bits top = (bits ^ Lanes{-0.0}.bits()) >> 52;
        return of_bits(top | Lanes{whole}.bits()) - Lanes{whole + without_sign};
    }
    template <typename Record>
    static Lanes entry(const Record* table, double Record::*figure, Bits i) {
        return Lanes{Set::gathered([=](std::uint64_t entry) { return &(table[entry].*figure); }, i)};
    }
    template <typename Record>
    static elementary::Two<Lanes> entries(const Record* table, double Record::*first, double Record::*, Bits i) {
        elementary::Two<Lanes> two;
        Set::gather_pairs([=](std::uint64_t entry) { return &(table[entry].*first); }, i, two.first.value,
                          two.second.value);
        return two;
    }
};

template <typename Set, typename Yes, typename No>
[[gnu::always_inline]] inline Lanes<Set> choose(LaneTruth<Set> truth, Yes yes, No no) {
    const unsigned lanes = truth.lanes();
    Lanes<Set> of_yes = 0.0;
    Lanes<Set> of_no = 0.0;
    if (lanes != 0) of_yes = yes();
    if (lanes != Set::all_lanes) of_no = no();
    return select(truth, of_yes, of_no);
}

// Defined in lanes/elementary.hpp, for the files that are compiled for a set of instructions.
namespace elementary {
template <typename Set>
Lanes<Set> exp(Lanes<Set> x);
template <typename Set>
Lanes<Set> log(Lanes<Set> x);
template <typename Set>
Lanes<Set> pow(Lanes<Set> x, Lanes<Set> y);
}  // namespace elementary

}  // namespace finance
