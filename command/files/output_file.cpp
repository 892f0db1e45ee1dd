#include "command/files/output_file.hpp"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "catalogue/text.hpp"
#include "command/files/descriptors.hpp"
#include "command/interruption.hpp"
#include "command/outcome.hpp"

namespace finance::command {

namespace {

bool names(const std::filesystem::path& path, const struct stat& file) {
    struct stat about {};
    return stat(path.c_str(), &about) == 0 && is_same_file(about, file);
}

bool is_standard_output(const std::string& path) {
    struct stat about {};
    return fstat(STDOUT_FILENO, &about) == 0 && names(path, about);
}

// Links may lead to what is not there yet; those that go round in circles are not asked for.
std::filesystem::path behind_links(std::filesystem::path path) {
    constexpr int most_links = 40;
    std::error_code none;
    for (int i = 0; i < most_links; ++i) {
        const std::filesystem::path next = std::filesystem::read_symlink(path, none);
        if (none) break;
        path = path.parent_path() / next;
    }
    return path;
}

// Where the group cannot be kept its rights are nobody's.
bool take_over(int descriptor, const struct stat& old) {
    constexpr mode_t rights = S_IRWXU | S_IRWXG | S_IRWXO;
    struct stat about {};
    if (fstat(descriptor, &about) != 0) return false;
    mode_t mode = old.st_mode & rights;
    if (about.st_uid != old.st_uid || about.st_gid != old.st_gid) {
        const bool grouped = fchown(descriptor, old.st_uid, old.st_gid) == 0 ||
                             fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) == 0;
        if (!grouped) mode &= ~mode_t{S_IRWXG};
    }
    return (about.st_mode & rights) == mode || completed([&] { return fchmod(descriptor, mode); }) == 0;
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : name_{path == standard_stream ? "the output" : catalogue::shown(path)} {
    if (path == standard_stream || is_standard_output(path)) return;
    direct_.reset(open_descriptor(path, O_WRONLY | O_NOCTTY));
    existed_ = direct_.open();
    if (!existed_ && errno != ENOENT) fail(errno);
    target_ = behind_links(path);
    struct stat old {};
    if (existed_ && fstat(direct_.number(), &old) != 0) fail(errno);
    if (existed_ && !S_ISREG(old.st_mode)) return;
    if (!existed_ || names(target_, old)) {
        begin(existed_ ? &old : nullptr);
    } else if (completed([&] { return ftruncate(direct_.number(), 0); }) != 0) {
        fail(errno);
    }
}

void OutputFile::begin(const struct stat* old) {
    constexpr mode_t usual_mode = 0666;
    direct_.reset();
    if (!target_.has_filename()) fail(ENOENT);
    new_.emplace(target_.parent_path(), old != nullptr ? old->st_mode & usual_mode : usual_mode);
    const int error = errno;
    if (new_->descriptor() < 0 && old == nullptr) fail(error);
    if (new_->descriptor() < 0) {
        throw OutputError{name_ + " cannot be replaced, its folder takes no new file: " + std::strerror(error) +
                          " (with > it is written into as it stands)"};
    }
    if (old != nullptr && !take_over(new_->descriptor(), *old)) fail(errno);
}

int OutputFile::descriptor() const {
    if (new_) return new_->descriptor();
    return direct_.open() ? direct_.number() : STDOUT_FILENO;
}

std::string OutputFile::unchanged() const { return name_ + (existed_ ? " is left as it was" : " is not made"); }

std::size_t OutputFile::write(std::string_view bytes) const {
    return write_bytes(descriptor(), bytes, stop_if_interrupted);
}

void OutputFile::keep() {
    const bool kept = new_ ? new_->finish(target_) : direct_.reset();
    if (!kept) fail(errno);
}

void OutputFile::fail(int error) const {
    if (error == EPIPE) throw ClosedPipe{};
    throw OutputError{name_ + " cannot be written: " + std::strerror(error)};
}

}  // namespace finance::command
