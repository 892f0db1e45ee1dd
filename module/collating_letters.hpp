// What the host's collating table says of letters. (Texts are compared in abi/text.hpp.)
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstdint>

#include "abi/steps.hpp"
#include "abi/text.hpp"

namespace finance {

inline constexpr unsigned char case_bit = 0x20;  // set in lower-case letters

// letters_ascend: each letter from A to Z comes before the next one, and after what pads a shorter text.

// Without a branch: to compare all takes less time than to see after each that none was wrong so far.
inline bool letters_ascend_one_by_one(const unsigned char* mapped) {
    bool ascend = mapped[static_cast<unsigned char>('A')] > blank;
    for (unsigned char letter = 'A'; letter < 'Z'; ++letter) ascend &= mapped[letter] < mapped[letter + 1];
    return ascend;
}

#ifdef __SSE2__
inline __m128i sixteen_from(const unsigned char* mapped, char letter) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(mapped + static_cast<unsigned char>(letter)));
}

inline bool letters_ascend(const unsigned char* mapped) {
    // What a byte exceeds another by, 0 where it does not: A to P and B to Q, J to Y and K to Z.
    const __m128i to_Q = _mm_subs_epu8(sixteen_from(mapped, 'B'), sixteen_from(mapped, 'A'));
    const __m128i to_Z = _mm_subs_epu8(sixteen_from(mapped, 'K'), sixteen_from(mapped, 'J'));
    const __m128i from_blank = _mm_subs_epu8(sixteen_from(mapped, 'A'), _mm_set1_epi8(blank));
    const __m128i least = _mm_min_epu8(_mm_min_epu8(to_Q, to_Z), from_blank);
    return _mm_movemask_epi8(_mm_cmpeq_epi8(least, _mm_setzero_si128())) == 0;
}
#else
inline bool letters_ascend(const unsigned char* mapped) { return letters_ascend_one_by_one(mapped); }
#endif

// Each letter of a text is mapped as the upper-case one is.
inline bool case_is_folded(const unsigned char* mapped, const char* text, std::int64_t length) {
    for (std::int64_t i = 0; i < length; ++i) {
        count_step();
        const auto letter = static_cast<unsigned char>(text[i]);
        if (mapped[letter] != mapped[letter & ~case_bit]) return false;
    }
    return true;
}

}  // namespace finance
