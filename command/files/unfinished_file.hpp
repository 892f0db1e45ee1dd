// A file that is there for the time that it is written, and goes with the run whatever ends it.
//
//  (1) It has a name of its own, ".finance." and two numbers, in the folder that it is made in.
//  (2) Signals that end the program remove it first; then they end it, as they would have, so that its status tells
//      them. Those that are ignored or handled otherwise are left alone. SIGKILL and a power cut leave the file.
#pragma once

#include <sys/types.h>

#include <array>
#include <csignal>
#include <filesystem>

#include "command/files/descriptors.hpp"

namespace finance::command {

// While it lives, signals that would end the program remove the file first.
class EndingSignals {
public:
    EndingSignals();
    ~EndingSignals();
    EndingSignals(const EndingSignals&) = delete;
    EndingSignals& operator=(const EndingSignals&) = delete;

private:
    static constexpr std::array numbers{SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGALRM, SIGVTALRM, SIGPROF,
                                        SIGXCPU, SIGUSR1, SIGUSR2, SIGPOLL, SIGPWR,  SIGSTKFLT, SIGABRT,
                                        SIGSEGV, SIGBUS,  SIGILL,  SIGFPE,  SIGTRAP, SIGSYS};

    std::array<struct sigaction, numbers.size()> before_{};
};

// One at a time.
class UnfinishedFile {
public:
    // Made with that mode, less the umask. Where it cannot be, descriptor() is -1 and errno says why.
    UnfinishedFile(const std::filesystem::path& folder, mode_t mode);
    // Removed, unless it was finished.
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    [[nodiscard]] int descriptor() const { return file_.number(); }
    // Brings it to the disk and gives it that name, which another file may have had. Where it cannot be, errno says why.
    bool finish(const std::filesystem::path& name);

private:
    EndingSignals signals_{};
    std::filesystem::path path_{};
    Descriptor file_{};
};

}  // namespace finance::command
