// Walks over the rows of a block.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "command/tables/table_reader.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

class RowCursor {
public:
    RowCursor(const Block& block, char delimiter, std::size_t columns)
        : cursor_{block.text(), delimiter}, next_line_{block.first_line}, single_column_{columns == 1} {}

    bool next(Record& record) {
        if (!cursor_.next(record)) return false;
        line_ = next_line_++;
        if (record.quoted) next_line_ += static_cast<std::uint64_t>(std::ranges::count(record.text, '\n'));
        empty_line_ = record.text.empty() && !single_column_;
        return true;
    }
    // Of the row that next gave: the number of the line that it begins on.
    [[nodiscard]] std::uint64_t line() const { return line_; }
    // An empty line is no row, unless the table has a single column.
    [[nodiscard]] bool empty_line() const { return empty_line_; }

private:
    RecordCursor cursor_;
    std::uint64_t next_line_;
    std::uint64_t line_ = 0;
    bool single_column_;
    bool empty_line_ = false;
};

}  // namespace finance::command
