#include "command/tables/table_writer.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "command/interruption.hpp"
#include "command/outcome.hpp"
#include "command/tables/table_options.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

bool is_same_file(int a, const struct stat& b) {
    struct stat about {};
    return fstat(a, &about) == 0 && S_ISREG(about.st_mode) && about.st_dev == b.st_dev && about.st_ino == b.st_ino;
}

void forbid_input_as_output(int input, const struct stat& output, const std::string& name) {
    if (is_same_file(input, output)) {
        throw UsageError{name + " is the table that is read; write to another file, then rename it", "--output FILE"};
    }
}

}  // namespace

TableWriter::TableWriter(const std::string& path, int input, char delimiter)
    : owned_{path != standard_stream}, name_{owned_ ? catalogue::shown(path) : "the output"}, delimiter_{delimiter} {
    struct stat about {};
    const bool exists = owned_ ? stat(path.c_str(), &about) == 0 : fstat(descriptor_, &about) == 0;
    if (exists) forbid_input_as_output(input, about, name_);
    if (!owned_) return;
    descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor_ < 0) fail(errno);
}

TableWriter::~TableWriter() {
    if (owned_ && descriptor_ >= 0) ::close(descriptor_);
}

void TableWriter::fail(int error) const {
    if (error == EPIPE) throw ClosedPipe{};
    throw TableError{name_ + " cannot be written: " + std::strerror(error)};
}

void TableWriter::write(std::string_view records) {
    for (std::size_t written = 0; written < records.size();) {
        const ssize_t n = ::write(descriptor_, records.data() + written, records.size() - written);
        if (n >= 0) {
            written += static_cast<std::size_t>(n);
        } else if (errno == EINTR) {
            stop_if_interrupted();
        } else if (errno == EAGAIN) {
            pollfd room{.fd = descriptor_, .events = POLLOUT, .revents = 0};
            poll(&room, 1, -1);
        } else {
            const int error = errno;
            cut_back(records, written);
            fail(error);
        }
    }
}

void TableWriter::cut_back(std::string_view records, std::size_t written) const {
    struct stat about {};
    if (fstat(descriptor_, &about) != 0 || !S_ISREG(about.st_mode)) return;
    const std::size_t excess = written - whole_records(records.substr(0, written), delimiter_);
    const off_t whole = lseek(descriptor_, 0, SEEK_CUR) - static_cast<off_t>(excess);
    if (ftruncate(descriptor_, whole) == 0) lseek(descriptor_, whole, SEEK_SET);
}

void TableWriter::close() {
    if (!owned_) return;
    owned_ = false;
    if (::close(descriptor_) != 0) fail(errno);
}

}  // namespace finance::command
