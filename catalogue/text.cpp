#include "catalogue/text.hpp"

#include <array>
#include <charconv>
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

// Digits only, all of them; -1 otherwise.
int digits(std::string_view text) {
    int value = 0;
    for (const char c : text) {
        if (!is_digit(c)) return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

void append(std::string& text, unsigned value, std::size_t width) {
    const std::string plain = std::to_string(value);
    text.append(width - plain.size(), '0').append(plain);
}

}  // namespace

std::optional<double> host_date(std::string_view iso) {
    if (iso.size() != 10 || iso[4] != '-' || iso[7] != '-') return {};
    const int y = digits(iso.substr(0, 4));
    const int m = digits(iso.substr(5, 2));
    const int d = digits(iso.substr(8, 2));
    if (y < first_year || m < 1 || d < 1) return {};
    const year_month_day date{year{y}, month{static_cast<unsigned>(m)}, day{static_cast<unsigned>(d)}};
    if (!date.ok()) return {};
    return static_cast<double>((sys_days{date} - epoch).count());
}

std::optional<std::string> iso_date(double host_date) {
    if (!(host_date >= first_host_day && host_date <= last_host_day) || host_date != std::trunc(host_date)) return {};
    const year_month_day date{epoch + days{static_cast<int>(host_date)}};
    std::string text;
    append(text, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    append(text += '-', static_cast<unsigned>(date.month()), 2);
    append(text += '-', static_cast<unsigned>(date.day()), 2);
    return text;
}

// ---- Texts of others

std::string shortened(std::string_view text) {
    constexpr std::size_t most = 60;
    if (text.size() <= most) return std::string{text};
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    return std::string{text.substr(0, end)} + "...";
}

// ---- Numbers

namespace {

// Room for the longest shortest text (-2.2250738585072014e-308, 24 characters) and for 2^63 in plain digits.
using Buffer = std::array<char, 32>;

template <class... Format>
void append(std::string& text, double value, Format... format) {
    Buffer buffer;
    const double shown = value + 0.0;  // -0 + 0 is 0
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), shown, format...).ptr;
    text.append(buffer.data(), end);
}

void append_shortest(std::string& text, double value) {
    if (std::isnan(value)) {
        text += '.';
    } else {
        append(text, value);
    }
}

}  // namespace

std::string shortest_text(double value) {
    std::string text;
    append_shortest(text, value);
    return text;
}

void append_plain(std::string& text, double value) {
    const bool plain = value == std::trunc(value) && std::abs(value) < 0x1p63;
    plain ? append(text, value, std::chars_format::fixed) : append_shortest(text, value);
}

std::string plain_text(double value) {
    std::string text;
    append_plain(text, value);
    return text;
}

std::string value_text(double value, bool dated) {
    if (dated) {
        if (const auto date = iso_date(value)) return *date;
    }
    return plain_text(value);
}

}  // namespace finance::catalogue
