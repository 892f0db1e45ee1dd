// Values that the module takes and nobody can mean: calls that hold one are refused before they are made.
//
//  (1) A day outside the years 1 to 9999: mostly a date written as one number, or days counted in other units.
//  (2) A code of a day-count basis that is not whole: the module drops its fraction.
//  (3) A missing value is no such value.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <string>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "host/column.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

inline bool is_meant(catalogue::Kind kind, double x) {
    if (is_dated(kind)) return !(x < catalogue::first_host_day || x >= catalogue::last_host_day + 1.0);
    return kind != catalogue::Kind::basis || std::isnan(x) || x == std::trunc(x);
}

inline bool is_meant(catalogue::Kind kind, const host::Argument& argument) {
    return argument.kind() != host::Argument::Kind::number || is_meant(kind, argument.number());
}

inline bool all_meant(catalogue::Kind kind, std::span<const double> values) {
    return std::ranges::all_of(values, [kind](double x) { return is_meant(kind, x); });
}

// "20240115 is no day of the years 1 to 9999: 2024-01-15 looks like it", of a value that is not meant.
std::string unmeant_words(catalogue::Kind kind, double x);

// The position of the first value that is not meant; 0: all are.
int unmeant_argument(const catalogue::Calculation& calculation, Arguments arguments);

// Of a calculation without lists: whether all rows are without such values.
bool all_meant(const catalogue::Calculation& calculation, std::span<const host::Column> columns, std::size_t rows);

// What is said of a call that is not made for such a value.
inline host::Evaluation refused_at(int position) {
    return {
        .status = ZELKOVAN_STATUS_INVALID_ARGUMENT, .value = std::nan(""), .flagged = position, .log = {}, .notes = {}};
}

// The call, or what is said where it is not made.
host::Evaluation evaluate(const host::Evaluator& host, const catalogue::Calculation& calculation, Arguments arguments);

}  // namespace finance::calls
