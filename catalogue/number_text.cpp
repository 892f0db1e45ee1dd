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
std::string converted(double value, Format... format) {
    Buffer buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...).ptr;
    return {buffer.data(), end};
}

}  // namespace

std::string shortest_text(double value) {
    if (std::isnan(value)) return ".";
    return converted(value);
}

std::string plain_text(double value) {
    const bool plain = value == std::trunc(value) && std::abs(value) < 0x1p63;
    return plain ? converted(value, std::chars_format::fixed) : shortest_text(value);
}

std::string value_text(double value, bool dated) {
    if (dated) {
        if (const auto date = iso_date(value)) return *date;
    }
    return plain_text(value);
}

}  // namespace finance::catalogue
