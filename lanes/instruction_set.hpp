// What Lanes ask of the processor. A file that includes this is compiled once for each set of instructions, and keeps to
// itself what it makes of it: a function that the linker may share would run on processors that lack them. Which one it is
// for says ZELKOVAN_WIDE_LANES, not the compiler, whom a builder may have told of a newer processor.
#pragma once

#ifdef __x86_64__
#include <immintrin.h>
#endif

#include <cmath>
#include <cstdint>
#include <cstring>

#include "lanes/twice.hpp"

namespace finance {

namespace {

using Pair = double __attribute__((vector_size(16)));

#ifdef ZELKOVAN_WIDE_LANES

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
    static double lane(Doubles x, int lane) { return x[lane]; }
    // What stands at place(i) of each lane's i; or the two doubles that stand there.
    template <typename Place>
    static Doubles gathered(Place place, Words i) {
        return Doubles{*place(i[0]), *place(i[1]), *place(i[2]), *place(i[3])};
    }
    template <typename Place>
    static void gather_pairs(Place place, Words i, Doubles& first, Doubles& second) {
        const __m256d even = _mm256_set_m128d(_mm_loadu_pd(place(i[2])), _mm_loadu_pd(place(i[0])));
        const __m256d odd = _mm256_set_m128d(_mm_loadu_pd(place(i[3])), _mm_loadu_pd(place(i[1])));
        first = Doubles(_mm256_unpacklo_pd(even, odd));
        second = Doubles(_mm256_unpackhi_pd(even, odd));
    }
    // take(a's, b's) of each lane, in order.
    template <typename Take>
    static void each_pair(Doubles a, Doubles b, Take take) {
        const __m256d even = _mm256_unpacklo_pd(__m256d(a), __m256d(b));
        const __m256d odd = _mm256_unpackhi_pd(__m256d(a), __m256d(b));
        take(Pair(_mm256_castpd256_pd128(even)));
        take(Pair(_mm256_castpd256_pd128(odd)));
        take(Pair(_mm256_extractf128_pd(even, 1)));
        take(Pair(_mm256_extractf128_pd(odd, 1)));
    }
};
using OneVector = InstructionSet;
using TwoVectors = Twice<InstructionSet>;

#else

// Two lanes in the compiler's own words. Four of them are two of these (twice.hpp), so that the steps of four rows overlap.
struct TwoLanes {
    static constexpr int width = 2;
    static constexpr unsigned all_lanes = 3;
    static constexpr bool has_fused = false;
    using Doubles = double __attribute__((vector_size(16)));
    using Words = std::uint64_t __attribute__((vector_size(16)));

    static Doubles broadcast(double x) { return Doubles{x, x}; }
    static Doubles load(const double* from) { return Doubles{from[0], from[1]}; }
    static void store(double* to, Doubles x) { std::memcpy(to, &x, sizeof x); }
    static unsigned signs(Words bits) { return static_cast<unsigned>(bits[0] >> 63 | bits[1] >> 63 << 1); }
    static Doubles select(Words truth, Doubles yes, Doubles no) {
        return Doubles((truth & Words(yes)) | (~truth & Words(no)));
    }
    static Doubles square_root(Doubles x) { return Doubles{std::sqrt(x[0]), std::sqrt(x[1])}; }
    static Doubles truncated(Doubles x) { return Doubles{std::trunc(x[0]), std::trunc(x[1])}; }
    static Words lane_bits(unsigned lanes) {
        return Words{std::uint64_t{0} - (lanes & 1), std::uint64_t{0} - (lanes >> 1 & 1)};
    }
    static double lane(Doubles x, int lane) { return x[lane]; }
    template <typename Take>
    static void each_pair(Doubles a, Doubles b, Take take) {
        take(Pair{a[0], b[0]});
        take(Pair{a[1], b[1]});
    }
};

#ifdef __x86_64__

// With the instructions that it does not find by itself.
struct Sse2 : TwoLanes {
    static Doubles broadcast(double x) { return Doubles(_mm_set1_pd(x)); }
    static Doubles load(const double* from) { return Doubles(_mm_loadu_pd(from)); }
    static void store(double* to, Doubles x) { _mm_storeu_pd(to, __m128d(x)); }
    static unsigned signs(Words bits) { return static_cast<unsigned>(_mm_movemask_pd(__m128d(bits))); }
    static Doubles square_root(Doubles x) { return Doubles(_mm_sqrt_pd(__m128d(x))); }
    static Doubles truncated(Doubles x) { return Doubles(_mm_cvtepi32_pd(_mm_cvttpd_epi32(__m128d(x)))); }
    template <typename Take>
    static void each_pair(Doubles a, Doubles b, Take take) {
        take(Pair(_mm_unpacklo_pd(__m128d(a), __m128d(b))));
        take(Pair(_mm_unpackhi_pd(__m128d(a), __m128d(b))));
    }
};
using OneVector = Sse2;

#else

using OneVector = TwoLanes;

#endif

using InstructionSet = Twice<OneVector>;
using TwoVectors = InstructionSet;

#endif

}  // namespace

}  // namespace finance
