// One value of an argument, read from its text.
//
//  (1) Nothing is an absent value, a single dot a missing one.
//  (2) A number is written as in C++ source, with an exponent where wanted: 5, -100, +2.5, 1e-3, inf, nan. Digits are
//      not grouped.
//  (3) A number may end in %: 5.75% is the double nearest to 0.0575.
//  (4) A date is year-month-day, or the number of days since 1960-01-01.
//  (5) A basis is a number or else a keyword, taken as it stands.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::reading {

// Nothing where the text is not a value of that kind. Of a list's kind: one value of the list. Texts are not copied.
std::optional<host::Argument> read_value(catalogue::Kind kind, std::string_view text);

// Why read_value gave nothing.
std::string unreadable(catalogue::Kind kind, std::string_view text);

}  // namespace finance::reading
