// What the host's collating table says of letters, sixteen at a time. (Texts are compared in abi/text.hpp.)
#pragma once

#include <emmintrin.h>

#include "abi/text.hpp"

namespace finance {

inline __m128i sixteen_from(const unsigned char* mapped, char letter) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(mapped + static_cast<unsigned char>(letter)));
}

// Each letter from A to Z comes before the next one, and after what pads a shorter text.
inline bool letters_ascend(const unsigned char* mapped) {
    // What a byte exceeds another by, 0 where it does not: A to P and B to Q, J to Y and K to Z.
    const __m128i to_Q = _mm_subs_epu8(sixteen_from(mapped, 'B'), sixteen_from(mapped, 'A'));
    const __m128i to_Z = _mm_subs_epu8(sixteen_from(mapped, 'K'), sixteen_from(mapped, 'J'));
    const __m128i from_blank = _mm_subs_epu8(sixteen_from(mapped, 'A'), _mm_set1_epi8(blank));
    const __m128i least = _mm_min_epu8(_mm_min_epu8(to_Q, to_Z), from_blank);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(least, _mm_setzero_si128())) == 0;
}

// Each letter from a to z is its upper-case one.
inline bool case_is_folded(const unsigned char* mapped) {
    constexpr int all_bytes = 0xFFFF;
    const __m128i to_p = _mm_cmpeq_epi8(sixteen_from(mapped, 'a'), sixteen_from(mapped, 'A'));
    const __m128i to_z = _mm_cmpeq_epi8(sixteen_from(mapped, 'k'), sixteen_from(mapped, 'K'));
    return _mm_movemask_epi8(_mm_and_si128(to_p, to_z)) == all_bytes;
}

}  // namespace finance
