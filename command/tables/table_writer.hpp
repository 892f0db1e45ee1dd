// Writes a table's records. Where a file that is written to as it stands (standard output) takes only a part of what
// it is given (a full disk), it is cut back to its last whole record.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "command/files/output_file.hpp"

namespace finance::command {

class TableWriter {
public:
    // "-": standard output, which must not be the table that input reads. UsageError, OutputError.
    TableWriter(const std::string& path, int input, char delimiter);

    // Whole records. OutputError.
    void write(std::string_view records);
    // The table is whole. OutputError.
    void keep() { file_.keep(); }

    [[nodiscard]] const OutputFile& file() const { return file_; }

private:
    void cut_back(std::string_view records, std::size_t written) const;

    OutputFile file_;
    char delimiter_;
};

}  // namespace finance::command
