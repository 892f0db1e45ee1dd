#include "command/tables/table_writer.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "command/files/descriptors.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

void forbid_input_as_output(int input, int output) {
    struct stat read {
    }, written{};
    if (fstat(input, &read) != 0 || fstat(output, &written) != 0 || !S_ISREG(written.st_mode)) return;
    if (!is_same_file(read, written)) return;
    throw UsageError{"the output is the table that is read; --output replaces it once all is written", "--output FILE"};
}

}  // namespace

// A file that is replaced may be the one that is read: it is there until all of it has been.
TableWriter::TableWriter(const std::string& path, int input, char delimiter) : file_{path}, delimiter_{delimiter} {
    if (!file_.replaces()) forbid_input_as_output(input, file_.descriptor());
}

void TableWriter::write(std::string_view records) {
    const std::size_t written = file_.write(records);
    if (written == records.size()) return;
    const int error = errno;
    if (!file_.replaces()) cut_back(records, written);
    file_.fail(error);
}

void TableWriter::cut_back(std::string_view records, std::size_t written) const {
    struct stat about {};
    if (fstat(file_.descriptor(), &about) != 0 || !S_ISREG(about.st_mode)) return;
    const std::size_t excess = written - whole_records(records.substr(0, written), delimiter_);
    const int descriptor = file_.descriptor();
    const off_t whole = lseek(descriptor, 0, SEEK_CUR) - static_cast<off_t>(excess);
    if (ftruncate(descriptor, whole) == 0) lseek(descriptor, whole, SEEK_SET);
}

}  // namespace finance::command
