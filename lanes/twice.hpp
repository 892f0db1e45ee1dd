// Twice as many lanes as a set of instructions has: what waits for its own last step in one half goes on in the other.
#pragma once

#include <cstdint>

namespace finance {

template <typename Vector>
struct Halves {
    Vector low;
    Vector high;

    Halves() = default;
    Halves(Vector l, Vector h) : low{l}, high{h} {}
    template <typename Other>
    explicit Halves(const Halves<Other>& bits) : low(Vector(bits.low)), high(Vector(bits.high)) {}

    friend Halves operator+(Halves a, Halves b) { return {a.low + b.low, a.high + b.high}; }
    friend Halves operator-(Halves a, Halves b) { return {a.low - b.low, a.high - b.high}; }
    friend Halves operator*(Halves a, Halves b) { return {a.low * b.low, a.high * b.high}; }
    friend Halves operator/(Halves a, Halves b) { return {a.low / b.low, a.high / b.high}; }
    friend Halves operator&(Halves a, Halves b) { return {a.low & b.low, a.high & b.high}; }
    friend Halves operator|(Halves a, Halves b) { return {a.low | b.low, a.high | b.high}; }
    friend Halves operator^(Halves a, Halves b) { return {a.low ^ b.low, a.high ^ b.high}; }
    friend Halves operator~(Halves a) { return {~a.low, ~a.high}; }
    friend Halves operator+(Halves a, std::uint64_t b) { return {a.low + b, a.high + b}; }
    friend Halves operator-(Halves a, std::uint64_t b) { return {a.low - b, a.high - b}; }
    friend Halves operator&(Halves a, std::uint64_t b) { return {a.low & b, a.high & b}; }
    friend Halves operator<<(Halves a, int bits) { return {a.low << bits, a.high << bits}; }
    friend Halves operator>>(Halves a, int bits) { return {a.low >> bits, a.high >> bits}; }
    // Comparisons give the bits of each half.
    friend auto operator<(Halves a, Halves b) { return compared(a.low < b.low, a.high < b.high); }
    friend auto operator<=(Halves a, Halves b) { return compared(a.low <= b.low, a.high <= b.high); }
    friend auto operator>(Halves a, Halves b) { return compared(a.low > b.low, a.high > b.high); }
    friend auto operator>=(Halves a, Halves b) { return compared(a.low >= b.low, a.high >= b.high); }
    friend auto operator==(Halves a, Halves b) { return compared(a.low == b.low, a.high == b.high); }
    friend auto operator!=(Halves a, Halves b) { return compared(a.low != b.low, a.high != b.high); }

private:
    template <typename Truth>
    static Halves<Truth> compared(Truth low, Truth high) {
        return {low, high};
    }
};

template <typename Half>
struct Twice {
    static constexpr int width = 2 * Half::width;
    static constexpr unsigned all_lanes = Half::all_lanes << Half::width | Half::all_lanes;
    static constexpr bool has_fused = Half::has_fused;
    using Doubles = Halves<typename Half::Doubles>;
    using Words = Halves<typename Half::Words>;

    static Doubles broadcast(double x) { return {Half::broadcast(x), Half::broadcast(x)}; }
    static Doubles load(const double* from) { return {Half::load(from), Half::load(from + Half::width)}; }
    static void store(double* to, Doubles x) {
        Half::store(to, x.low);
        Half::store(to + Half::width, x.high);
    }
    static unsigned signs(Words bits) { return Half::signs(bits.low) | Half::signs(bits.high) << Half::width; }
    static Doubles select(Words truth, Doubles yes, Doubles no) {
        return {Half::select(truth.low, yes.low, no.low), Half::select(truth.high, yes.high, no.high)};
    }
    static Doubles square_root(Doubles x) { return {Half::square_root(x.low), Half::square_root(x.high)}; }
    static Doubles truncated(Doubles x) { return {Half::truncated(x.low), Half::truncated(x.high)}; }
    static Doubles fused(Doubles a, Doubles b, Doubles c) {
        return {Half::fused(a.low, b.low, c.low), Half::fused(a.high, b.high, c.high)};
    }
    static Words lane_bits(unsigned lanes) {
        return {Half::lane_bits(lanes & Half::all_lanes), Half::lane_bits(lanes >> Half::width)};
    }
    static double lane(Doubles x, int lane) {
        return lane < Half::width ? Half::lane(x.low, lane) : Half::lane(x.high, lane - Half::width);
    }
    template <typename Take>
    static void each_pair(Doubles a, Doubles b, Take take) {
        Half::each_pair(a.low, b.low, take);
        Half::each_pair(a.high, b.high, take);
    }
    template <typename Place>
    static Doubles gathered(Place place, Words i) {
        return {Half::gathered(place, i.low), Half::gathered(place, i.high)};
    }
    template <typename Place>
    static void gather_pairs(Place place, Words i, Doubles& first, Doubles& second) {
        Half::gather_pairs(place, i.low, first.low, second.low);
        Half::gather_pairs(place, i.high, first.high, second.high);
    }
};

}  // namespace finance
