// What separates a table's fields, and its header.
//
//  (1) The delimiter is the one that was told; else a tab in files called .tsv or .tab, a comma in files called .csv,
//      unless the header has no comma but semicolons, as where the comma is the decimal sign.
//  (2) Else it is the only one of comma, tab and semicolon in the first line, outside quotation marks; a comma where
//      there is none. Several need to be told apart.
//  (3) A column is found by its name as it stands, then by its name whatever the case, where that is one column only;
//      $1 is the first column.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "command/indexed_names.hpp"
#include "command/tables/call_expression.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

// UsageError where the text is no character that can separate fields.
char read_delimiter(std::string_view text);

char guessed_delimiter(std::string_view file_name, std::string_view first_line);

struct Header {
    std::string source{};  // what the table is called in sentences
    IndexedNames names{};  // without a header line: $1, $2, ...
    bool named = true;
    std::string_view line_end = "\n";

    // UsageError with the closest name where there is none.
    [[nodiscard]] std::size_t column(const Operand& operand) const;
    // Nothing where there is none, but a place that the table does not have is a UsageError.
    [[nodiscard]] std::optional<std::size_t> find(const Operand& operand) const;
    // As it stands only; nothing where there is none.
    [[nodiscard]] std::optional<std::size_t> exact(std::string_view name) const;
};

Header read_header(const Record& first, char delimiter, bool named, const std::string& source);

}  // namespace finance::command
