// The system fails on request: a library to be loaded before the C library (LD_PRELOAD) into the command.
//
//     IO_FAULTS=CALL:N:FAULT:TRACE
//
//  (1) The N-th CALL of the program's own fails with errno FAULT, a number. N 0: every other one, beginning with the first.
//  (2) FAULT -1: a write takes half of the bytes, a read gives one.
//  (3) The file TRACE is made once a call has failed.
//  (4) What goes to standard error is left alone: where a sentence cannot be told, none can be asked for.
//  (5) Programs that the command starts do not have it.
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

struct Request {
    std::string call, trace;
    long number = 0;
    int fault = 0;
};

Request read_request() {
    Request request;
    const char* text = std::getenv("IO_FAULTS");
    if (text == nullptr) return request;
    std::string rest{text};
    const auto next = [&] {
        const std::string part = rest.substr(0, rest.find(':'));
        rest.erase(0, part.size() + 1);
        return part;
    };
    request.call = next();
    request.number = std::stol(next());
    request.fault = std::stoi(next());
    request.trace = next();
    unsetenv("IO_FAULTS");
    unsetenv("LD_PRELOAD");
    return request;
}

const Request& request() {
    static const Request read = read_request();
    return read;
}

// Before main, so that nothing that the command starts finds it.
const bool asked = !request().call.empty();

bool fails(std::string_view call) {
    static std::atomic<long> count{0};
    if (!asked || request().call != call) return false;
    const long n = ++count;
    if (request().number != 0 ? n != request().number : n % 2 == 0) return false;
    const long trace = syscall(SYS_openat, AT_FDCWD, request().trace.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    syscall(SYS_close, trace);
    errno = request().fault;
    return true;
}

bool partly() { return request().fault == -1; }

template <typename Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) ssize_t write(int file, const void* bytes, size_t count) {
    static const auto real_write = real<ssize_t (*)(int, const void*, size_t)>("write");
    if (file == STDERR_FILENO || count == 0 || !fails("write")) return real_write(file, bytes, count);
    return partly() ? real_write(file, bytes, (count + 1) / 2) : -1;
}

__attribute__((visibility("default"))) ssize_t read(int file, void* bytes, size_t count) {
    static const auto real_read = real<ssize_t (*)(int, void*, size_t)>("read");
    if (!fails("read")) return real_read(file, bytes, count);
    return partly() ? real_read(file, bytes, std::min(count, size_t{1})) : -1;
}

__attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
    static const auto real_open = real<int (*)(const char*, int, ...)>("open");
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails("open") ? -1 : real_open(path, flags, mode);
}

// It has closed all the same.
__attribute__((visibility("default"))) int close(int file) {
    static const auto real_close = real<int (*)(int)>("close");
    const int closed = real_close(file);
    return fails("close") ? -1 : closed;
}

__attribute__((visibility("default"))) int fsync(int file) {
    static const auto real_fsync = real<int (*)(int)>("fsync");
    return fails("fsync") ? -1 : real_fsync(file);
}

__attribute__((visibility("default"))) int fchmod(int file, mode_t mode) {
    static const auto real_fchmod = real<int (*)(int, mode_t)>("fchmod");
    return fails("fchmod") ? -1 : real_fchmod(file, mode);
}

__attribute__((visibility("default"))) int rename(const char* from, const char* to) {
    static const auto real_rename = real<int (*)(const char*, const char*)>("rename");
    return fails("rename") ? -1 : real_rename(from, to);
}

__attribute__((visibility("default"))) int pipe2(int* ends, int flags) {
    static const auto real_pipe2 = real<int (*)(int*, int)>("pipe2");
    return fails("pipe2") ? -1 : real_pipe2(ends, flags);
}

__attribute__((visibility("default"))) int memfd_create(const char* name, unsigned flags) {
    static const auto real_create = real<int (*)(const char*, unsigned)>("memfd_create");
    return fails("memfd_create") ? -1 : real_create(name, flags);
}

__attribute__((visibility("default"))) int posix_spawnp(pid_t* process, const char* file,
                                                        const posix_spawn_file_actions_t* files,
                                                        const posix_spawnattr_t* attributes, char* const* arguments,
                                                        char* const* environment) {
    static const auto real_spawn = real<decltype(&posix_spawnp)>("posix_spawnp");
    return fails("posix_spawnp") ? errno : real_spawn(process, file, files, attributes, arguments, environment);
}

__attribute__((visibility("default"))) int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                                          void* (*work)(void*), void* argument) {
    static const auto real_create = real<decltype(&pthread_create)>("pthread_create");
    return fails("pthread_create") ? errno : real_create(thread, attributes, work, argument);
}

}  // extern "C"
