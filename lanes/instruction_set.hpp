// What Lanes ask of the processor. A file that includes this is compiled once for each set of instructions, and keeps to
// itself what it makes of it: a function that the linker may share would run on processors that lack them.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace finance {

namespace {

#ifdef __AVX__

struct InstructionSet {
    static constexpr int width = 4;
    static constexpr unsigned all_lanes = 15;
    static constexpr bool has_fused = true;
    using Doubles = double __attribute__((vector_size(32)));
    using Words = std::uint64_t __attribute__((vector_size(32)));

    static Doubles broadcast(double x) { return Doubles(_mm256_set1_pd(x)); }
    static Words broadcast(std::uint64_t x) { return Words{} + x; }
    static Doubles load(const double* from) { return Doubles(_mm256_loadu_pd(from)); }
    static void store(double* to, Doubles x) { _mm256_storeu_pd(to, __m256d(x)); }
    static unsigned signs(Words bits) { return static_cast<unsigned>(_mm256_movemask_pd(__m256d(bits))); }
    static Doubles select(Words truth, Doubles yes, Doubles no) {
        return Doubles(_mm256_blendv_pd(__m256d(no), __m256d(yes), __m256d(truth)));
    }
    static Doubles square_root(Doubles x) { return Doubles(_mm256_sqrt_pd(__m256d(x))); }
    static Doubles truncated(Doubles x) {
        return Doubles(_mm256_round_pd(__m256d(x), _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC));
    }
    static Doubles fused(Doubles a, Doubles b, Doubles c) {
        return Doubles(_mm256_fmadd_pd(__m256d(a), __m256d(b), __m256d(c)));
    }
    static Words lane_bits(unsigned lanes) {
        const Words each{1, 2, 4, 8};
        return Words((broadcast(std::uint64_t{lanes}) & each) == each);
    }
    template <typename F>
    static Doubles gathered(F f) {
        return Doubles{f(0), f(1), f(2), f(3)};
    }
    // The two doubles that stand at place(lane).
    template <typename Place>
    static void gather_pairs(Place place, Doubles& first, Doubles& second) {
        const __m256d even = _mm256_set_m128d(_mm_loadu_pd(place(2)), _mm_loadu_pd(place(0)));
        const __m256d odd = _mm256_set_m128d(_mm_loadu_pd(place(3)), _mm_loadu_pd(place(1)));
        first = Doubles(_mm256_unpacklo_pd(even, odd));
        second = Doubles(_mm256_unpackhi_pd(even, odd));
    }
};

#else

// Four lanes as two vectors of two: the steps of four rows overlap.
template <typename Vector>
struct Halves {
    Vector low;
    Vector high;

    Halves() : low{}, high{} {}
    Halves(Vector l, Vector h) : low{l}, high{h} {}
    template <typename Other>
    explicit Halves(const Halves<Other>& bits) : low(Vector(bits.low)), high(Vector(bits.high)) {}

    auto operator[](int lane) const { return lane < 2 ? low[lane] : high[lane - 2]; }

    friend Halves operator+(Halves a, Halves b) { return {a.low + b.low, a.high + b.high}; }
    friend Halves operator-(Halves a, Halves b) { return {a.low - b.low, a.high - b.high}; }
    friend Halves operator*(Halves a, Halves b) { return {a.low * b.low, a.high * b.high}; }
    friend Halves operator/(Halves a, Halves b) { return {a.low / b.low, a.high / b.high}; }
    friend Halves operator&(Halves a, Halves b) { return {a.low & b.low, a.high & b.high}; }
    friend Halves operator|(Halves a, Halves b) { return {a.low | b.low, a.high | b.high}; }
    friend Halves operator^(Halves a, Halves b) { return {a.low ^ b.low, a.high ^ b.high}; }
    friend Halves operator~(Halves a) { return {~a.low, ~a.high}; }
    friend auto operator<(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low < b.low, a.high < b.high};
    }
    friend auto operator<=(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low <= b.low, a.high <= b.high};
    }
    friend auto operator>(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low > b.low, a.high > b.high};
    }
    friend auto operator>=(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low >= b.low, a.high >= b.high};
    }
    friend auto operator==(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low == b.low, a.high == b.high};
    }
    friend auto operator!=(Halves a, Halves b) {
        return Halves<decltype(a.low < b.low)>{a.low != b.low, a.high != b.high};
    }
};

struct InstructionSet {
    static constexpr int width = 4;
    static constexpr unsigned all_lanes = 15;
    static constexpr bool has_fused = false;
    using Doubles = Halves<double __attribute__((vector_size(16)))>;
    using Words = Halves<std::uint64_t __attribute__((vector_size(16)))>;

    static Doubles broadcast(double x) { return {_mm_set1_pd(x), _mm_set1_pd(x)}; }
    static Doubles load(const double* from) { return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2)}; }
    static void store(double* to, Doubles x) {
        _mm_storeu_pd(to, x.low);
        _mm_storeu_pd(to + 2, x.high);
    }
    static unsigned signs(Words bits) {
        return static_cast<unsigned>(_mm_movemask_pd(__m128d(bits.low)) | _mm_movemask_pd(__m128d(bits.high)) << 2);
    }
    static Doubles select(Words truth, Doubles yes, Doubles no) {
        return Doubles((truth & Words(yes)) | (~truth & Words(no)));
    }
    static Doubles square_root(Doubles x) { return {_mm_sqrt_pd(x.low), _mm_sqrt_pd(x.high)}; }
    static Doubles truncated(Doubles x) {
        return {_mm_cvtepi32_pd(_mm_cvttpd_epi32(x.low)), _mm_cvtepi32_pd(_mm_cvttpd_epi32(x.high))};
    }
    static Words lane_bits(unsigned lanes) {
        const auto all = [lanes](int lane) { return std::uint64_t{0} - (lanes >> lane & 1); };
        using Vector = decltype(Words::low);
        return {Vector{all(0), all(1)}, Vector{all(2), all(3)}};
    }
};

#endif

}  // namespace

}  // namespace finance
