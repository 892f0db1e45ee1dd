// Texts that people write and read: names, numbers, dates.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace finance::catalogue {

// ---- Names without regard to case: ASCII, whatever the locale

constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

inline std::string lower_case(std::string_view text) {
    std::string result{text};
    std::ranges::transform(text, result.begin(), lower);
    return result;
}

constexpr bool same_name(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// ---- Texts of others: cells, names of files, words of a command line, what other programs say

inline constexpr std::size_t most_shown = 80;   // characters: a file's name, or a column's
inline constexpr std::size_t most_quoted = 60;  // what stands where a value should: its beginning is enough

// The length of the UTF-8 character at the front of a text that is not empty; 0 where none is well formed.
std::size_t character_length(std::string_view text);

// Whether a terminal may take it for an order: a control character, U+0000 to U+001F and U+007F to U+009F.
bool is_control(std::string_view character);

// The text in a sentence for people, of a terminal's characters and on one line.
//  (1) Controls are \n, \r, \t, \x1B; above ASCII, with what parts lines and what turns the direction of writing,
//      \u0085, \u2028, \u202E. A byte that is no UTF-8 is \xE9.
//  (2) It has `most` characters at most, the last three being ... where the text goes on; escapes stay whole.
//  (3) What has been shown shows as it is.
std::string shown(std::string_view text, std::size_t most = most_shown);

// The same between quotation marks, most_quoted at most: 'rate'.
std::string in_quotes(std::string_view text);

// ---- Numbers as people read them

// The shortest text that reads back to the same double, but 0 for -0; a NaN, whichever, is the missing value and written
// ".".
std::string shortest_text(double value);

// The same, but whole numbers below 2^63 in plain digits: 200000, not 2e+05.
std::string plain_text(double value);

// Appends plain_text.
void append_plain(std::string& text, double value);

// Writes plain_text, or value_text; gives where it ends. Bytes behind it, within the room, may change too.
inline constexpr std::size_t plain_room = 40;
char* write_plain(char* to, double value);
char* write_value(char* to, double value, bool dated);

// A date as year-month-day where its year has four digits, else as plain_text.
std::string value_text(double value, bool dated);

// ---- Host dates: whole days, day 0 being 1960-01-01; written year-month-day, years 0001 to 9999

inline constexpr double first_host_day = -715509;  // 0001-01-01
inline constexpr double last_host_day = 2936549;   // 9999-12-31

// Exactly dddd-dd-dd and a day that exists.
std::optional<double> host_date(std::string_view iso);

// Nothing where the value is no whole day or its year is outside 0001 to 9999.
std::optional<std::string> iso_date(double host_date);

// Writes it and gives where it ends; null where it is none.
inline constexpr std::size_t date_room = 10;
char* write_date(char* to, double host_date);

}  // namespace finance::catalogue
