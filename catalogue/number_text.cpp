// Numbers, and what is a number or a date, as people read them.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "catalogue/shortest_digits.hpp"
#include "catalogue/text.hpp"

namespace finance::catalogue {

namespace {

// The longest shortest text is -2.2250738585072014e-308, 24 characters; 2^63 in plain digits has 19.
static_assert(plain_room > 24);
using Buffer = std::array<char, plain_room>;

constexpr std::size_t most_digits = 17;  // of a shortest text

constexpr auto digit_pairs = [] {
    std::array<char, 200> made{};
    for (std::size_t i = 0; i < made.size(); ++i) {
        made[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
    }
    return made;
}();

void write_pair(char* to, std::uint32_t number) { std::memcpy(to, &digit_pairs[std::size_t{2} * number], 2); }

// Zeros before it included.
void write_eight_digits(char* to, std::uint32_t number) {
    const std::uint32_t high = number / 10'000;
    const std::uint32_t low = number % 10'000;
    write_pair(to, high / 100);
    write_pair(to + 2, high % 100);
    write_pair(to + 4, low / 100);
    write_pair(to + 6, low % 100);
}

// At most 17 digits, which end after so many characters; gives where the first one stands.
constexpr std::size_t digits_room = 24;
using Digits = std::array<char, digits_room + most_digits>;
const char* write_digits(Digits& to, std::uint64_t number) {
    constexpr std::uint64_t eight_digits = 100'000'000;
    const std::uint64_t high = number / eight_digits;
    write_eight_digits(to.data(), static_cast<std::uint32_t>(high / eight_digits));
    write_eight_digits(to.data() + 8, static_cast<std::uint32_t>(high % eight_digits));
    write_eight_digits(to.data() + 16, static_cast<std::uint32_t>(number % eight_digits));
    const char* first = to.data() + (high / eight_digits > 0 ? 7 : high > 0 ? 8 : 16);
    while (*first == '0') ++first;
    return first;
}

char* write_as_library(char* to, double value) { return std::to_chars(to, to + plain_room, value).ptr; }

// As many bytes whatever the number of digits: what is too much is written over, or lies in the room behind the text.
char* copy_digits(char* to, const char* from, std::size_t count) {
    std::memcpy(to, from, most_digits);
    return to + count;
}

// digits * 10^-places in plain digits: 0.00123, 1199.1010503055047.
char* write_fraction(char* to, const char* digits, std::size_t count, std::size_t places) {
    const std::size_t whole = count > places ? count - places : 0;
    if (whole == 0) *to++ = '0';
    to = copy_digits(to, digits, whole);
    *to++ = '.';
    for (std::size_t zeros = places - (count - whole); zeros > 0; --zeros) *to++ = '0';
    return copy_digits(to, digits + whole, count - whole);
}

// The shortest text of a number that is not whole. 1e-04 is shorter than 0.0001, and 1.2e-05 than 0.000012; among equally
// long ones plain digits go first.
char* write_not_whole(char* to, double value) {
    const auto [number, exponent] = shortest_digits(std::abs(value));
    Digits buffer{};
    const char* const first = write_digits(buffer, number);
    const auto count = static_cast<std::size_t>(buffer.data() + digits_room - first);
    const auto places = static_cast<std::size_t>(-exponent);
    if (places > count + (count == 1 ? 2 : 3)) return write_as_library(to, value);
    if (std::signbit(value)) *to++ = '-';
    return write_fraction(to, first, count, places);
}

char* write_whole(char* to, double value) {
    return std::to_chars(to, to + plain_room, static_cast<std::int64_t>(value)).ptr;
}

}  // namespace

char* write_plain(char* to, double value) {
    if (std::abs(value) < 0x1p63) return value == std::trunc(value) ? write_whole(to, value) : write_not_whole(to, value);
    if (!std::isnan(value)) return write_as_library(to, value);
    *to = '.';
    return to + 1;
}

std::string shortest_text(double value) {
    Buffer buffer;
    if (std::isnan(value)) return ".";
    return {buffer.data(), write_as_library(buffer.data(), value + 0.0)};  // -0 + 0 is 0
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
