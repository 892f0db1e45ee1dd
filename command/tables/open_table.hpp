// A table that has been opened: its header is read, its rows are to come.
#pragma once

#include <optional>
#include <string>

#include "command/tables/table_format.hpp"
#include "command/tables/table_options.hpp"
#include "command/tables/table_reader.hpp"

namespace finance::command {

class InputFile {
public:
    // "-": standard input. TableError.
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    [[nodiscard]] int descriptor() const { return descriptor_; }

private:
    int descriptor_;
    bool owned_;
};

class OpenTable {
public:
    // TableError, UsageError.
    explicit OpenTable(const TableOptions& options, BlockSizes sizes = {});

    // Whole rows into the block; false at the end. TableError.
    bool next(Block& block);
    [[nodiscard]] bool ready() const { return first_.begin != first_.end || reader_.ready(); }

    [[nodiscard]] const Header& header() const { return header_; }
    // The header line as it stands, without its line end; empty where there is none.
    [[nodiscard]] const std::string& header_line() const { return header_line_; }
    [[nodiscard]] char delimiter() const { return delimiter_; }
    [[nodiscard]] bool has_byte_order_mark() const { return reader_.has_byte_order_mark(); }
    [[nodiscard]] int descriptor() const { return file_.descriptor(); }
    [[nodiscard]] std::optional<std::uint64_t> size() const { return reader_.size(); }

private:
    InputFile file_;
    TableReader reader_;
    char delimiter_;
    Header header_{};
    std::string header_line_{};
    Block first_{};  // the rows that were read with the header
};

}  // namespace finance::command
