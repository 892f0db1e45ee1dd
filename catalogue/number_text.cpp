#include "catalogue/number_text.hpp"

#include <array>
#include <charconv>
#include <cmath>

#include "catalogue/host_date.hpp"

namespace finance::catalogue {

namespace {

// Room for the longest shortest text (-2.2250738585072014e-308, 24 characters) and for 2^63 in plain digits.
using Buffer = std::array<char, 32>;

template <class... Format>
void append(std::string& text, double value, Format... format) {
    Buffer buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...).ptr;
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
