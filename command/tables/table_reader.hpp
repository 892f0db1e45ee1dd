// Reads a text table in blocks of whole records.
//
//  (1) A block is what is at hand, up to its size; it grows only for a record that does not fit.
//  (2) A record, its line end included, is at most record_limit bytes.
//  (3) A fault is thrown only after all records before it have been given: a file that ends within a quoted field, a
//      NUL byte, a record that is too long, an input that cannot be read on, or unpacked.
//  (4) A UTF-8 byte-order mark is taken off the front and remembered.
//  (5) Lines are counted from the front of the input, those passed over included.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "command/tables/input_bytes.hpp"
#include "command/tables/table_record.hpp"

namespace finance::command {

struct Block {
    std::string buffer{};
    std::size_t begin = 0;  // in the buffer
    std::size_t end = 0;
    std::uint64_t first_line = 1;
    [[nodiscard]] std::string_view text() const { return std::string_view{buffer}.substr(begin, end - begin); }
};

struct BlockSizes {
    std::size_t block = std::size_t{256} * 1024;
    std::size_t record_limit = std::size_t{16} * 1024 * 1024;
};

class TableReader {
public:
    // A descriptor that stays open as long as the reader; name: of the input, for sentences.
    TableReader(int descriptor, std::string name, BlockSizes sizes = {});

    // What the input begins with: its first line, where it is no longer than a block. TableError where it is no text.
    std::string_view peek();
    // Passes over lines, quotation marks or not; before the first record is asked for. TableError.
    void skip_lines(std::size_t lines);
    void set_delimiter(char delimiter) { delimiter_ = delimiter; }

    // Whole records into the block; false at the end of the input. TableError.
    bool next(Block& block);
    // Whether next will not have to wait for input.
    [[nodiscard]] bool ready() const;

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] bool has_byte_order_mark() const { return byte_order_mark_; }
    // The input's size where it is a file that is not packed.
    [[nodiscard]] std::optional<std::uint64_t> size() const;

private:
    void read_some(Block& block, std::size_t wanted);
    std::size_t fill(Block& block);
    [[nodiscard]] std::size_t first_size(std::string_view text) const;
    std::size_t before_first_nul(std::string_view text, std::size_t whole);
    std::size_t last_record(std::string_view text);
    [[nodiscard]] std::string at_line() const;
    [[noreturn]] void fail(const std::string& what) const;

    int descriptor_;
    std::string name_;
    InputBytes bytes_;
    BlockSizes sizes_;
    char delimiter_ = ',';
    Block ahead_;  // read, but not yet given
    std::uint64_t line_ = 1;
    bool ended_ = false;
    bool begun_ = false;
    bool byte_order_mark_ = false;
    std::string fault_;  // to be thrown once what stands before it has been given
};

// Walks over the rows of a block.
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
