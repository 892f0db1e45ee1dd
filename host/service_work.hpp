// The work behind the host's services for dates and texts.
#pragma once

#include <cstdint>

namespace finance::host {

// ---- Host date values: days since 1 January 1960, which is day 0

// The host date value of a calendar date in the Gregorian calendar, extended to years before it. Years are historical:
// the year before 1 is -1 (a year 0 is taken as the one before 1, too). Before 1 March of -4801 the day formula's
// truncating divisions part from the calendar, by no more than two days; modules split and count dates by the same
// formula, so that a date comes back as the day that it was. Days and months outside their range carry on arithmetically
// as far as the formula does. Defined for every argument.
[[nodiscard]] std::int64_t days_since_1960(std::int32_t month, std::int32_t day, std::int32_t year) noexcept;

// The same as modules ask for it. Fractions are dropped; the missing value where a part is NaN or does not fit 32 bits.
[[nodiscard]] double date_value(double month, double day, double year) noexcept;

// ---- Case and comparison of blank-padded texts. Lengths are in bytes; a negative length counts as 0

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
