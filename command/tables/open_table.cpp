#include "command/tables/open_table.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "catalogue/text.hpp"
#include "command/files/descriptors.hpp"

namespace finance::command {

namespace {

int opened(const std::string& path) {
    if (path == standard_stream) return STDIN_FILENO;
    const int descriptor = open_descriptor(path, O_RDONLY);
    if (descriptor < 0) throw TableError{catalogue::shown(path) + " cannot be opened: " + std::strerror(errno)};
    return descriptor;
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
    if (owned_) (void)close_descriptor(descriptor_);
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
