// A table of numbers as people read it, and as CSV.
//
//  (1) A NaN is an empty cell.
//  (2) As text, columns are aligned to the right below their headings, columns of one group below the group's name, and
//      a line of totals follows. Amounts have two decimals, more where the largest is below 1, so that it shows three
//      digits.
//      That many decimals are told otherwise goes for CSV, too.
//  (3) As CSV and as JSON objects, one a line, every number is the shortest text that reads back to the same double.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

struct Column {
    std::string_view name;     // in CSV and JSON
    std::string_view heading;  // in text
    std::string_view group{};  // in text; empty: none
    bool amount = true;        // false: a whole number
    bool summed = false;
    bool date = false;  // days since 1960-01-01, written as dates
};

using Row = std::vector<double>;  // one number a column

std::string aligned_text(std::span<const Column> columns, std::span<const Row> rows,
                         const std::optional<int>& told = {});

std::string csv_header(std::span<const Column> columns);
void append_csv(std::string& text, std::span<const Column> columns, const Row& row,
                const std::optional<int>& decimals = {});
void append_json(std::string& text, std::span<const Column> columns, const Row& row);

}  // namespace finance::command
