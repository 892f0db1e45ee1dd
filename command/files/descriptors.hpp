// Files by their descriptors: what an interruption, or a reader that is slow, does not end.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "command/interruption.hpp"

namespace finance::command {

inline constexpr std::string_view standard_stream = "-";  // how standard input or output is called in place of a file

// What the call answers once no signal cuts it short; Interrupted where one has been noted.
template <typename Call>
auto completed(Call call) {
    for (;;) {
        const auto answer = call();
        if (answer >= 0 || errno != EINTR) return answer;
        stop_if_interrupted();
    }
}

// Whether a regular file is there; what cannot be looked at is none.
bool is_file(const std::filesystem::path& path);

// Whether both are of one file, whatever its names.
bool is_same_file(const struct stat& a, const struct stat& b);

// Closed for programs that are started, and none of the standard streams, even where one of those was closed before:
// its number must not pass for the file. -1 and errno; Interrupted.
int open_descriptor(const std::string& path, int flags, mode_t mode = 0);

// Whether it could be closed: some file systems tell only then that there was no room.
bool close_descriptor(int descriptor);

// An open descriptor; -1: none.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_{number} {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : number_{std::exchange(other.number_, -1)} {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        reset(std::exchange(other.number_, -1));
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool open() const { return number_ >= 0; }
    // Whether the old one could be closed.
    bool reset(int number = -1) {
        const int old = std::exchange(number_, number);
        return old < 0 || close_descriptor(old);
    }

private:
    int number_;
};

// How many of the bytes could be written; where it is not all of them, errno says why. meanwhile: called where a signal
// has come or there was no room, may throw.
std::size_t write_bytes(int descriptor, std::string_view bytes, void (*meanwhile)() = nullptr);

}  // namespace finance::command
