#include "reading/double_from.hpp"

#if !defined(__wasm__)

#include <charconv>

namespace finance::reading {

ReadDouble double_from(std::string_view text) {
    const char* end = text.data() + text.size();
    ReadDouble read;
    const auto [stop, fault] = std::from_chars(text.data(), end, read.value);
    read.fault = fault == std::errc{} && stop != end ? std::errc::invalid_argument : fault;
    return read;
}

}  // namespace finance::reading

#else  // The C++ library there reads no doubles; the C library's strtod does, and rounds as it should.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>

#include "catalogue/text.hpp"

namespace finance::reading {

namespace {

using catalogue::is_digit;
using catalogue::same_name;

constexpr ReadDouble invalid{.fault = std::errc::invalid_argument};

std::size_t digits_at(std::string_view text, std::size_t place) {
    std::size_t end = place;
    while (end < text.size() && is_digit(text[end])) ++end;
    return end - place;
}

// How much of the text is a number in digits; 0: nothing.
std::size_t decimal_length(std::string_view text) {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const std::size_t whole = digits_at(text, at);
    at += whole;
    std::size_t places = 0;
    if (at < text.size() && text[at] == '.') {
        places = digits_at(text, at + 1);
        at += 1 + places;
    }
    if (whole + places == 0) return 0;
    if (at == text.size() || (text[at] != 'e' && text[at] != 'E')) return at;
    std::size_t exponent = at + 1;
    if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+')) ++exponent;
    const std::size_t digits = digits_at(text, exponent);
    return digits == 0 ? at : exponent + digits;
}

// Whether it is nan(...).
bool is_nan_with_payload(std::string_view text) {
    if (text.size() < 5 || !same_name(text.substr(0, 4), "nan(") || !text.ends_with(')')) return false;
    return std::ranges::all_of(text.substr(4, text.size() - 5), [](char c) {
        const char letter = catalogue::upper(c);
        return is_digit(c) || (letter >= 'A' && letter <= 'Z') || c == '_';
    });
}

ReadDouble word_from(std::string_view text) {
    const bool minus = text.starts_with('-');
    const std::string_view word = text.substr(minus ? 1 : 0);
    double value = 0.0;
    if (same_name(word, "inf") || same_name(word, "infinity")) {
        value = std::numeric_limits<double>::infinity();
    } else if (same_name(word, "nan") || is_nan_with_payload(word)) {
        value = std::numeric_limits<double>::quiet_NaN();
    } else {
        return invalid;
    }
    return {.value = minus ? -value : value};
}

bool has_digit_above_0(std::string_view decimal) {
    return decimal.substr(0, decimal.find_first_of("eE")).find_first_of("123456789") != std::string_view::npos;
}

}  // namespace

ReadDouble double_from(std::string_view text) {
    const std::size_t length = decimal_length(text);
    if (length == 0) return word_from(text);
    const std::string decimal{text.substr(0, length)};
    const double value = std::strtod(decimal.c_str(), nullptr);
    const bool lost = value == 0.0 && has_digit_above_0(decimal);
    if (lost || std::isinf(value)) return {.fault = std::errc::result_out_of_range};
    return length == text.size() ? ReadDouble{.value = value} : invalid;
}

}  // namespace finance::reading

#endif
