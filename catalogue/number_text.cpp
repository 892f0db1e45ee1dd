// Numbers, and what is a number or a date, as people read them.
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "catalogue/shortest_digits.hpp"
#include "catalogue/text.hpp"

namespace finance::catalogue {

namespace {

// The longest shortest text is -2.2250738585072014e-308, 24 characters; 2^63 in plain digits has 19.
static_assert(plain_room > 24);
using Buffer = std::array<char, plain_room>;

__extension__ using Sixteen = unsigned __int128;  // characters, the first one lowest
constexpr std::uint64_t zeros = 0x3030303030303030;
constexpr unsigned bits = 8;  // of a character

// The eight digits of a number, the first one lowest, each in a byte: two numbers of four, four of two, eight of one. A
// product and a shift divide: by 100 what is below 10,000, by 10 what is below 100.
constexpr std::uint64_t eight_digits(std::uint64_t number) {
    const std::uint64_t fours = number / 10'000 | number % 10'000 << 32U;
    const std::uint64_t hundreds = (fours * 10'486 >> 20U) & 0x7F'0000'007F;
    const std::uint64_t twos = hundreds | (fours - 100 * hundreds) << 16U;
    const std::uint64_t tens = (twos * 103 >> 10U) & 0xF'000F'000F'000F;
    return tens | (twos - 10 * tens) << bits;
}

constexpr std::uint64_t eight_zeros = 100'000'000;

constexpr unsigned zeros_in_front(Sixteen digits) {
    const auto first = static_cast<std::uint64_t>(digits);
    const auto second = static_cast<std::uint64_t>(digits >> 64U);
    const int places = first != 0 ? std::countr_zero(first) : 64 + std::countr_zero(second);
    return static_cast<unsigned>(places) / bits;
}

void write_sixteen(char* to, Sixteen characters) { std::memcpy(to, &characters, sizeof characters); }

// ---- Any number: the shorter one of two forms, plain digits where they are equally long. Library routines do the same, but
// not all of them, and with tables of their own.

char* write_text(char* to, std::string_view text) { return to + text.copy(to, text.size()); }

char* write_number(char* to, std::uint64_t number) { return std::to_chars(to, to + plain_room, number).ptr; }

// Below 10^22, beyond which an exponent is shorter. Of 2^66 all digits, not zeros for those that its name can do without.
char* write_large_whole(char* to, double value) {
    constexpr std::uint64_t half = 100'000'000'000;
    constexpr std::size_t half_digits = 11;
    const auto whole = static_cast<Sixteen>(value);
    if (whole < half) return write_number(to, static_cast<std::uint64_t>(whole));
    to = write_number(to, static_cast<std::uint64_t>(whole / half));
    auto rest = static_cast<std::uint64_t>(whole % half);
    for (std::size_t i = half_digits; i-- > 0; rest /= 10) to[i] = static_cast<char>('0' + rest % 10);
    return to + half_digits;
}

// digits: of a number d.ddd 10^order that is not whole.
char* write_with_point(char* to, std::string_view digits, int order) {
    constexpr std::string_view nought = "0.000000";  // for more of them an exponent is shorter
    if (order < 0) return write_text(write_text(to, nought.substr(0, static_cast<std::size_t>(1 - order))), digits);
    const auto whole = static_cast<std::size_t>(order) + 1;
    to = write_text(write_text(to, digits.substr(0, whole)), ".");
    return write_text(to, digits.substr(whole));
}

char* write_with_exponent(char* to, std::string_view digits, int order) {
    to = write_text(to, digits.substr(0, 1));
    if (digits.size() > 1) to = write_text(write_text(to, "."), digits.substr(1));
    to = write_text(to, order < 0 ? "e-" : "e+");
    const auto size = static_cast<unsigned>(std::abs(order));
    return write_number(size < 10 ? write_text(to, "0") : to, size);
}

// Of any double but a NaN.
char* write_any(char* to, double value) {
    if (std::signbit(value)) to = write_text(to, "-");
    const double size = std::abs(value);
    if (std::isinf(size)) return write_text(to, "inf");
    if (size == 0.0) return write_text(to, "0");
    const auto [number, exponent] = shortest_digits(size);
    Buffer buffer;
    const std::string_view digits{buffer.data(), write_number(buffer.data(), number)};
    const auto count = static_cast<int>(digits.size());
    const int order = exponent + count - 1;
    const int with_exponent = count + (count > 1 ? 1 : 0) + (std::abs(order) < 100 ? 4 : 5);
    if (exponent >= 0) {
        return order + 1 <= with_exponent ? write_large_whole(to, size) : write_with_exponent(to, digits, order);
    }
    const int with_point = count + 1 + (order < 0 ? -order : 0);
    return with_point <= with_exponent ? write_with_point(to, digits, order) : write_with_exponent(to, digits, order);
}

// ---- Most numbers, faster

// The shortest text of a number that is not whole. 1e-04 is shorter than 0.0001, and 1.2e-05 than 0.000012; among equally
// long ones plain digits go first. Sixteen characters are written where fewer are wanted: others go over the rest.
char* write_not_whole(char* to, double value) {
    const auto [number, exponent] = shortest_digits(std::abs(value));
    const std::uint64_t front = number / eight_zeros;
    const std::uint64_t top = front / eight_zeros;
    const Sixteen found = eight_digits(front % eight_zeros) | Sixteen{eight_digits(number % eight_zeros)} << 64U;
    const unsigned skipped = top != 0 ? 0 : zeros_in_front(found);
    const Sixteen digits = (Sixteen{zeros} << 64U | zeros) + (found >> (bits * skipped));
    const unsigned others = 16 - skipped;
    const unsigned count = others + (top != 0 ? 1 : 0);
    const auto places = static_cast<unsigned>(-exponent);
    if (places > count + (count == 1 ? 2 : 3)) return write_any(to, value);
    *to = '-';
    to += std::signbit(value) ? 1 : 0;
    if (count <= places) {
        constexpr std::string_view nought = "0.000";
        nought.copy(to, nought.size());
        to += 2 + (places - count);
    }
    *to = static_cast<char>('0' + top);
    to += top != 0 ? 1 : 0;
    write_sixteen(to, digits);
    if (count <= places) return to + others;
    const unsigned whole = others - places;
    to[whole] = '.';
    write_sixteen(to + whole + 1, digits >> (bits * whole));
    return to + others + 1;
}

char* write_whole(char* to, double value) {
    return std::to_chars(to, to + plain_room, static_cast<std::int64_t>(value)).ptr;
}

}  // namespace

char* write_plain(char* to, double value) {
    if (std::abs(value) < 0x1p63)
        return value == std::trunc(value) ? write_whole(to, value) : write_not_whole(to, value);
    if (!std::isnan(value)) return write_any(to, value);
    *to = '.';
    return to + 1;
}

std::string shortest_text(double value) {
    Buffer buffer;
    if (std::isnan(value)) return ".";
    return {buffer.data(), write_any(buffer.data(), value + 0.0)};  // -0 + 0 is 0
}

void append_plain(std::string& text, double value) {
    Buffer buffer;
    text.append(buffer.data(), write_plain(buffer.data(), value));
}

std::string plain_text(double value) {
    std::string text;
    append_plain(text, value);
    return text;
}

char* write_value(char* to, double value, bool dated) {
    char* const end = dated ? write_date(to, value) : nullptr;
    return end != nullptr ? end : write_plain(to, value);
}

std::string value_text(double value, bool dated) {
    Buffer buffer;
    return {buffer.data(), write_value(buffer.data(), value, dated)};
}

}  // namespace finance::catalogue
