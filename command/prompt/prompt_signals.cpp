#include "command/prompt/prompt_signals.hpp"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace finance::command {

HeldSignals::HeldSignals() {
    sigemptyset(&held_);
    for (const int signal : {SIGINT, SIGTSTP, SIGWINCH, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&held_, signal);
    sigprocmask(SIG_BLOCK, &held_, &before_);
    queue_ = signalfd(-1, &held_, SFD_CLOEXEC | SFD_NONBLOCK);
}

HeldSignals::~HeldSignals() {
    if (queue_ >= 0) ::close(queue_);
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

int HeldSignals::next(int file) {
    std::array<pollfd, 2> waiting{{{queue_, POLLIN, 0}, {file, POLLIN, 0}}};
    while (::poll(waiting.data(), waiting.size(), -1) < 0 && errno == EINTR) continue;
    signalfd_siginfo signal{};
    const bool came = ::read(queue_, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal);
    return came ? static_cast<int>(signal.ssi_signo) : 0;
}

void HeldSignals::let_through(int signal) {
    ::kill(::getpid(), signal);
    sigprocmask(SIG_SETMASK, &before_, nullptr);
    sigprocmask(SIG_BLOCK, &held_, nullptr);
}

}  // namespace finance::command
