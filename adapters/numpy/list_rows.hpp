// Calculations of lists over many rows. A row's list is a stretch of one long array, so that tables, ragged lists and
// groups are called alike. Knows nothing of Python, and runs without its lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// One given parameter over all rows.
struct RowValues {
    std::span<const double> values{};         // one a row, or what the lists' stretches are of
    std::span<const std::int64_t> starts{};   // of a list: each row's first value
    std::span<const std::int64_t> lengths{};  // of a list: how many they are
};

// Whether spans have an entry a row, and every stretch lies in its values.
bool fits(const catalogue::Calculation& calculation, std::span<const RowValues> parameters, std::size_t rows);

// A place in results for each row: answer, missing or refused as in row_loop.hpp. Gives how many were refused. A row with
// a NaN in it is missing without a call; one whose two lists are not equally long is refused without one.
std::size_t call_lists(const catalogue::Calculation& calculation, std::span<const RowValues> parameters,
                       std::span<double> results);

}  // namespace finance::adapters::numpy
