// Where a job writes to: standard output, or a file that has its name once it is whole.
//
//  (1) A file is written beside the one that is named, and takes its place in the end (command/files/unfinished_file.hpp).
//      Until then the old one is there as it was; a run that does not come to its end leaves it so.
//  (2) The new file has the old one's mode, and its owner and group where that may be; what the user may not write to
//      is not replaced. A symbolic link stays, and what it leads to is replaced; a further name of the old file (a hard
//      link) keeps the old contents.
//  (3) What is no regular file (a pipe, a device), or has no name to be replaced, is written to directly. What is
//      standard output already, /dev/stdout say, is that.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "command/files/descriptors.hpp"
#include "command/files/unfinished_file.hpp"

namespace finance::command {

// Exit status 1.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What is not kept is as if it had never been.
class OutputFile {
public:
    // "-": standard output. OutputError, Interrupted.
    explicit OutputFile(const std::string& path);

    // Whether nothing of it is there before keep().
    [[nodiscard]] bool replaces() const { return new_.has_value(); }
    // What is true of the file where it is not kept: "FILE is left as it was".
    [[nodiscard]] std::string unchanged() const;
    [[nodiscard]] int descriptor() const;

    // How many of the bytes could be written; where it is not all of them, errno says why. Interrupted.
    [[nodiscard]] std::size_t write(std::string_view bytes) const;
    // All has been written. OutputError where the system only now says that something could not be.
    void keep();
    // ClosedPipe, or OutputError with the file's name.
    [[noreturn]] void fail(int error) const;

private:
    void begin(const struct stat* old);

    std::string name_;
    bool existed_ = false;
    Descriptor direct_{};  // neither this nor a new one: standard output
    std::filesystem::path target_{};
    std::optional<UnfinishedFile> new_{};
};

}  // namespace finance::command
