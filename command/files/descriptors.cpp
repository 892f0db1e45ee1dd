#include "command/files/descriptors.hpp"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <system_error>

namespace finance::command {

bool is_file(const std::filesystem::path& path) {
    std::error_code unreadable;
    return std::filesystem::is_regular_file(path, unreadable);
}

bool is_same_file(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

int open_descriptor(const std::string& path, int flags, mode_t mode) {
    const int descriptor = completed([&] { return open(path.c_str(), flags | O_CLOEXEC, mode); });
    if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(descriptor);
    return moved;
}

// An interrupted close has closed.
bool close_descriptor(int descriptor) { return close(descriptor) == 0 || errno == EINTR; }

std::size_t write_bytes(int descriptor, std::string_view bytes, void (*meanwhile)()) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = write(descriptor, bytes.data() + written, bytes.size() - written);
        if (n >= 0) {
            written += static_cast<std::size_t>(n);
            continue;
        }
        if (errno != EINTR && errno != EAGAIN) break;
        pollfd room{.fd = descriptor, .events = POLLOUT, .revents = 0};
        if (errno == EAGAIN) poll(&room, 1, -1);
        if (meanwhile != nullptr) meanwhile();
    }
    return written;
}

}  // namespace finance::command
