// Writes a table's records. Where a file takes only a part of what it is given (a full disk), it is cut back to its
// last whole record.
#pragma once

#include <unistd.h>

#include <string>
#include <string_view>

namespace finance::command {

class TableWriter {
public:
    // "-": standard output. A file is made, or emptied; not where it is the one that input reads from. TableError.
    TableWriter(const std::string& path, int input, char delimiter);
    ~TableWriter();
    TableWriter(const TableWriter&) = delete;
    TableWriter& operator=(const TableWriter&) = delete;

    // Whole records. TableError.
    void write(std::string_view records);
    // TableError where the system only now says that something could not be written.
    void close();

private:
    void cut_back(std::string_view records, std::size_t written) const;
    [[noreturn]] void fail(int error) const;

    int descriptor_ = STDOUT_FILENO;
    bool owned_;
    std::string name_;
    char delimiter_;
};

}  // namespace finance::command
