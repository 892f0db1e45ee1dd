// Blank-padded texts: byte arrays with an explicit length, padded with 0x20, not NUL-terminated unless a rule says so.
// Lengths are signed; where no rule gives a negative length a meaning it counts as 0. None of these allocates.
#pragma once

#include <cstdint>

#include "abi/conversions.hpp"
#include "abi/steps.hpp"

namespace finance {

inline constexpr char blank = 0x20;

// Length of a NUL-terminated text; 0 for a null pointer.
std::int64_t wzstlen(const char* text);

// Length without trailing blanks. A length <= 0 comes back unchanged; leading blanks count.
inline std::int64_t wzstrip(const char* text, std::int64_t length) {
    while (length > 0 && text[length - 1] == blank) {
        count_step();
        --length;
    }
    return length;
}

// Copies what fits and fills the rest of the destination with blanks. The ranges may overlap.
void vzmp(const char* source, std::int64_t source_length, char* destination, std::int64_t destination_length);

// 1 when each of the length bytes equals character, and when there are none; else 0.
std::int32_t vzatl(char character, const char* text, std::int64_t length);

// Removes in place every byte of text that occurs in set, keeping the order of the others; returns the new length.
// length < 0: text is NUL-terminated, before and after; otherwise blanks fill the freed tail.
// set_length < 0: set is NUL-terminated. An empty set removes nothing.
std::int64_t wzstdel(char* text, std::int64_t length, const char* set, std::int64_t set_length);

// Order under the host's collating table: 0 equal, else minus or plus the 1-based position of the first difference,
// minus when a comes first. The shorter text counts as padded with blanks, so trailing blanks never tell two texts
// apart. In multibyte mode the host compares (options is for it).
std::int32_t wzstcmn(const char* a, std::int64_t a_length, const char* b, std::int64_t b_length, std::int64_t options);

// wzstcmn in single-byte mode, for a caller that keeps the table through many comparisons.
inline std::int32_t order_by_table(const unsigned char* mapped, const char* a, std::int64_t a_length, const char* b,
                                   std::int64_t b_length) {
    const auto from = [mapped](const char* text, std::int64_t i) {
        return mapped[static_cast<unsigned char>(text[i])];
    };
    const auto decided = [](std::int64_t i, bool a_first) {
        return a_first ? -low_32_bits(i + 1) : low_32_bits(i + 1);
    };
    std::int64_t i = 0;
    for (; i < a_length && i < b_length; ++i) {
        count_step();
        if (from(a, i) != from(b, i)) return decided(i, from(a, i) < from(b, i));
    }
    for (; i < a_length; ++i) {
        count_step();
        if (from(a, i) != blank) return decided(i, from(a, i) < blank);
    }
    for (; i < b_length; ++i) {
        count_step();
        if (from(b, i) != blank) return decided(i, from(b, i) > blank);
    }
    return 0;
}

// Translates length bytes, in place too. Modes: 0 and 1 the host's own, 2 upper case, 3 lower case, 4 the host's.
// Returns 0, or translation_mode_unknown for a mode above 4 (then nothing is touched).
std::uint32_t wztxxlt(std::uint32_t mode, const char* source, char* destination, std::int64_t length);

inline constexpr std::uint32_t translation_to_upper = 2;
inline constexpr std::uint32_t translation_mode_unknown = 0x8000200A;

}  // namespace finance
