// What the rows of the table are made of: arguments by their kind, and texts of sentences that have a name.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

constexpr Parameter number(std::string_view name, std::string_view unit, std::string_view meaning) {
    return {.name = name, .kind = Kind::number, .unit = unit, .meaning = meaning};
}

constexpr Parameter money(std::string_view name, std::string_view meaning) { return number(name, "money", meaning); }

constexpr Parameter whole(std::string_view name, std::string_view unit, std::string_view meaning) {
    return {.name = name, .kind = Kind::whole, .unit = unit, .meaning = meaning};
}

constexpr Parameter flag(std::string_view name, std::string_view meaning) {
    return {.name = name, .kind = Kind::flag, .unit = "0 or 1", .meaning = meaning};
}

constexpr Parameter date(std::string_view name, std::string_view meaning, Kind kind = Kind::date) {
    return {.name = name, .kind = kind, .meaning = meaning};
}

constexpr Parameter numbers(std::string_view name, std::string_view unit, std::string_view meaning) {
    return {.name = name, .kind = Kind::numbers, .unit = unit, .meaning = meaning};
}

// A sentence, or a part of one, that stands in more than one row.
template <std::size_t size>
struct Sentence {
    std::array<char, size> text{};  // a zero at its end
    consteval Sentence(const char (&literal)[size]) { std::ranges::copy(literal, text.begin()); }
    constexpr operator std::string_view() const { return {text.data(), size - 1}; }
};

template <Sentence... parts>
inline constexpr auto joined_text = [] {
    std::array<char, (std::string_view{parts}.size() + ...)> text{};
    char* end = text.data();
    ((end = std::ranges::copy(std::string_view{parts}, end).out), ...);
    return text;
}();

// One after the other, with nothing between them.
template <Sentence... parts>
inline constexpr std::string_view joined{joined_text<parts...>.data(), joined_text<parts...>.size()};

}  // namespace finance::catalogue
