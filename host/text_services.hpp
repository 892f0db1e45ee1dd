// The work behind the host's text services: case and comparison of blank-padded texts. Lengths are in bytes; a negative
// length counts as 0.
#pragma once

#include <cstdint>

namespace finance::host {

enum class Case : std::uint8_t { lower, upper };

// Converts ASCII letters in place. Of double-byte texts, a byte of 0x80 or above leads a character of two bytes: both
// are left alone.
void convert_case(char* text, std::int64_t length, Case to, bool double_byte) noexcept;

// Copies as many bytes as fit; source and destination may overlap.
void copy_text(const char* source, std::int64_t length, char* destination, std::int64_t destination_length) noexcept;

// 0 where the texts are equal, else the 1-based position of the first difference, negative where a sorts before b.
// Bytes are mapped through the collating table (256 bytes); the shorter text is taken as padded with blanks, which are
// not mapped.
[[nodiscard]] std::int32_t compare_texts(const unsigned char* collating_table, const char* a, std::int64_t a_length,
                                         const char* b, std::int64_t b_length) noexcept;

}  // namespace finance::host
