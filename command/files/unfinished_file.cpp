#include "command/files/unfinished_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <string>

#include "command/files/descriptors.hpp"

namespace finance::command {

namespace {

// What a signal's handler removes. The text is there before the mark is set.
std::array<char, PATH_MAX> doomed{};
std::atomic<bool> is_doomed{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal's handler reads it");

void doom(const std::string& path) {
    doomed[path.copy(doomed.data(), doomed.size() - 1)] = '\0';
    is_doomed = true;
}

// Entered once: the action is the default again, and comes as soon as the handler has ended.
void remove_and_end(int signal) {
    if (is_doomed) unlink(doomed.data());
    std::raise(signal);
}

bool is_default(const struct sigaction& action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_DFL;
}

// No signal comes between the making of a file and its being doomed.
class SignalsHeld {
public:
    SignalsHeld() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before_);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;

private:
    sigset_t before_{};
};

// What has no such call, on some file systems, is no fault of the file's.
bool synced(int descriptor) {
    if (completed([&] { return fsync(descriptor); }) == 0) return true;
    return errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

// So that a power cut does not bring the old name back; a folder that may not be read is left to the system.
void sync_folder(const std::filesystem::path& folder) {
    const Descriptor descriptor{open_descriptor(folder, O_RDONLY | O_DIRECTORY)};
    if (descriptor.open()) (void)synced(descriptor.number());
}

std::filesystem::path folder_of(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

}  // namespace

EndingSignals::EndingSignals() {
    struct sigaction action {};
    action.sa_handler = remove_and_end;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        sigaction(numbers[i], nullptr, &before_[i]);
        if (is_default(before_[i])) sigaction(numbers[i], &action, nullptr);
    }
}

EndingSignals::~EndingSignals() {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (is_default(before_[i])) sigaction(numbers[i], &before_[i], nullptr);
    }
}

// A name that is taken is that of a process that was killed: the next one is tried.
UnfinishedFile::UnfinishedFile(const std::filesystem::path& folder, mode_t mode) {
    constexpr int most_names = 100;
    const SignalsHeld held;
    errno = EEXIST;
    for (int i = 0; i < most_names && !file_.open() && errno == EEXIST; ++i) {
        path_ = folder / (".finance." + std::to_string(getpid()) + '.' + std::to_string(i));
        file_.reset(open_descriptor(path_, O_WRONLY | O_CREAT | O_EXCL, mode));
    }
    if (file_.open()) doom(path_);
}

UnfinishedFile::~UnfinishedFile() {
    if (is_doomed) unlink(path_.c_str());
    is_doomed = false;
}

bool UnfinishedFile::finish(const std::filesystem::path& name) {
    if (!synced(file_.number()) || !file_.reset()) return false;
    if (completed([&] { return std::rename(path_.c_str(), name.c_str()); }) != 0) return false;
    is_doomed = false;
    sync_folder(folder_of(name));
    return true;
}

}  // namespace finance::command
