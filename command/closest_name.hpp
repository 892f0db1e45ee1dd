// Help for mistyped names.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace finance::command {

// The fewest insertions, deletions, replacements and swaps of neighbours that make one of the other, case aside.
std::size_t edit_distance(std::string_view a, std::string_view b);

// " (did you mean PMT?)" where one of the names is near, the nearest, the first among equals; else empty.
std::string suggestion(std::string_view mistyped, std::span<const std::string_view> names);

}  // namespace finance::command
