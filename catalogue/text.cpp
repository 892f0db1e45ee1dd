#include "catalogue/text.hpp"

#include <array>
#include <chrono>
#include <cmath>

namespace finance::catalogue {

// ---- Dates

namespace {

using namespace std::chrono;

constexpr sys_days epoch{year{1960} / January / 1};
constexpr int first_year = 1;
constexpr int last_year = 9999;
static_assert((sys_days{year{first_year} / January / 1} - epoch).count() == first_host_day);
static_assert((sys_days{year{last_year} / December / 31} - epoch).count() == last_host_day);

// Reads numbers of two digits, and remembers whether anything was none.
class DigitPairs {
public:
    explicit DigitPairs(std::string_view text) : text_{text} {}

    unsigned at(std::size_t place) {
        const unsigned tens = digit(text_[place]);
        const unsigned ones = digit(text_[place + 1]);
        all_digits_ = all_digits_ && tens < 10 && ones < 10;
        return tens * 10 + ones;
    }
    [[nodiscard]] bool all_digits() const { return all_digits_; }

private:
    static unsigned digit(char c) { return static_cast<unsigned char>(c) - unsigned{'0'}; }

    std::string_view text_;
    bool all_digits_ = true;
};

char* write_digits(char* to, unsigned value, std::size_t width) {
    for (std::size_t i = width; i-- > 0; value /= 10) to[i] = static_cast<char>('0' + value % 10);
    return to + width;
}

}  // namespace

char* write_date(char* to, double host_date) {
    if (!(host_date >= first_host_day && host_date <= last_host_day) || host_date != std::trunc(host_date))
        return nullptr;
    const year_month_day date{epoch + days{static_cast<int>(host_date)}};
    to = write_digits(to, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    *to++ = '-';
    to = write_digits(to, static_cast<unsigned>(date.month()), 2);
    *to++ = '-';
    return write_digits(to, static_cast<unsigned>(date.day()), 2);
}

std::optional<double> host_date(std::string_view iso) {
    if (iso.size() != 10 || iso[4] != '-' || iso[7] != '-') return {};
    DigitPairs pairs{iso};
    const unsigned y = pairs.at(0) * 100 + pairs.at(2);
    const unsigned m = pairs.at(5);
    const unsigned d = pairs.at(8);
    if (!pairs.all_digits() || y < first_year) return {};
    const year_month_day date{year{static_cast<int>(y)}, month{m}, day{d}};
    if (!date.ok()) return {};
    return static_cast<double>((sys_days{date} - epoch).count());
}

std::optional<std::string> iso_date(double host_date) {
    std::array<char, date_room> buffer;
    const char* const end = write_date(buffer.data(), host_date);
    if (end == nullptr) return {};
    return std::string{buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

// ---- Texts of others

namespace {

using Byte = unsigned char;

// How the bytes of a character go on after its first one: how many, and the range of the second, which keeps out
// overlong forms, surrogates and what is above U+10FFFF.
struct Sequence {
    std::size_t length = 0;  // 0: no character begins so
    Byte low = 0x80;
    Byte high = 0xBF;
};

constexpr Sequence sequence_of(Byte first) {
    if (first < 0x80) return {1};
    if (first >= 0xC2 && first <= 0xDF) return {2};
    if (first == 0xE0) return {3, 0xA0, 0xBF};
    if (first == 0xED) return {3, 0x80, 0x9F};
    if (first >= 0xE1 && first <= 0xEF) return {3};
    if (first == 0xF0) return {4, 0x90, 0xBF};
    if (first >= 0xF1 && first <= 0xF3) return {4};
    if (first == 0xF4) return {4, 0x80, 0x8F};
    return {};
}

void append_hexadecimal(std::string& text, unsigned code, unsigned digits) {
    for (unsigned place = digits; place-- > 0;) text += "0123456789ABCDEF"[code >> (4 * place) & 0xFU];
}

void append_byte(std::string& text, char byte) {
    constexpr std::string_view named = "\n\r\t";
    const std::size_t name = named.find(byte);
    if (name != std::string_view::npos) {
        (text += '\\') += "nrt"[name];
        return;
    }
    append_hexadecimal(text += "\\x", static_cast<Byte>(byte), 2);
}

// Of a character of two or three bytes.
unsigned code_of(std::string_view character) {
    unsigned code = static_cast<Byte>(character[0]) & (character.size() == 2 ? 0x1FU : 0x0FU);
    for (const char c : character.substr(1)) code = code << 6U | (static_cast<Byte>(c) & 0x3FU);
    return code;
}

// The separators of lines and paragraphs, and what turns the direction of writing.
bool parts_or_turns(unsigned code) { return (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069); }

bool is_plain(std::string_view character) {
    if (is_control(character)) return false;
    return character.size() != 3 || !parts_or_turns(code_of(character));
}

std::string shown_character(std::string_view character, bool well_formed) {
    if (well_formed && is_plain(character)) return std::string{character};
    std::string text;
    if (character.size() == 1) {
        append_byte(text, character.front());
    } else {
        append_hexadecimal(text += "\\u", code_of(character), 4);
    }
    return text;
}

}  // namespace

std::size_t character_length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<Byte>(text[i]); };
    const Sequence sequence = sequence_of(byte(0));
    if (sequence.length > text.size()) return 0;
    if (sequence.length > 1 && (byte(1) < sequence.low || byte(1) > sequence.high)) return 0;
    for (std::size_t i = 2; i < sequence.length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return sequence.length;
}

bool is_control(std::string_view character) {
    const auto first = static_cast<Byte>(character.front());
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<Byte>(character[1]) < 0xA0;
}

std::string shown(std::string_view text, std::size_t most) {
    constexpr std::string_view goes_on = "...";
    std::string result;
    std::size_t count = 0;
    std::size_t cut = 0;  // where there is still room for the dots
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        const std::string one = shown_character(character, length > 0);
        count += one.front() == '\\' ? one.size() : 1;
        if (count > most) return result.substr(0, cut).append(goes_on);
        result += one;
        if (count + goes_on.size() <= most) cut = result.size();
        text.remove_prefix(character.size());
    }
    return result;
}

std::string in_quotes(std::string_view text) {
    std::string result = "'";
    return result.append(shown(text, most_quoted)).append("'");
}

}  // namespace finance::catalogue
