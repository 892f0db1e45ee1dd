#include "command/tables/open_table.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "catalogue/text.hpp"
#include "command/interruption.hpp"

namespace finance::command {

namespace {

// A standard stream that was closed leaves its number to the next file, which must not pass for it.
int beyond_standard_streams(int descriptor) {
    if (descriptor > STDERR_FILENO) return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(descriptor);
    return moved;
}

int opened(const std::string& path) {
    if (path == standard_stream) return STDIN_FILENO;
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) stop_if_interrupted();  // nobody wrote to a named pipe
    if (descriptor < 0) throw TableError{catalogue::shown(path) + " cannot be opened: " + std::strerror(errno)};
    return beyond_standard_streams(descriptor);
}

std::string spoken(const std::string& path) { return path == standard_stream ? "the input" : catalogue::shown(path); }

char delimiter_of(const TableOptions& options, TableReader& reader) {
    reader.skip_lines(options.skip);
    const std::string_view start = reader.peek();
    const char delimiter = options.delimiter ? *options.delimiter : guessed_delimiter(options.input, start);
    reader.set_delimiter(delimiter);
    return delimiter;
}

}  // namespace

InputFile::InputFile(const std::string& path) : descriptor_{opened(path)}, owned_{path != standard_stream} {}

InputFile::~InputFile() {
    if (owned_) close(descriptor_);
}

OpenTable::OpenTable(const TableOptions& options, BlockSizes sizes)
    : file_{options.input},
      reader_{file_.descriptor(), spoken(options.input), sizes},
      delimiter_{delimiter_of(options, reader_)} {
    Record first;
    if (!reader_.next(first_)) {
        throw TableError{reader_.name() + (options.skip > 0 ? " has no line after those skipped" : " is empty")};
    }
    RecordCursor{first_.text(), delimiter_}.next(first);
    header_ = read_header(first, delimiter_, options.header, reader_.name());
    if (!options.header) return;
    header_line_ = first.text;
    first_.begin += first.text.size() + first.line_end.size();
    first_.first_line += 1 + static_cast<std::uint64_t>(std::ranges::count(header_line_, '\n'));
}

bool OpenTable::next(Block& block) {
    if (first_.begin == first_.end) return reader_.next(block);
    block = std::exchange(first_, Block{});
    return true;
}

}  // namespace finance::command
