// Comparing names without regard to case. ASCII, whatever the locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace finance::catalogue {

constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

constexpr bool same_name(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

}  // namespace finance::catalogue
