#include "command/interruption.hpp"

#include <atomic>

namespace finance::command {

namespace {

std::atomic<bool> noted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal's handler sets it");

void note(int /*signal*/) { noted = true; }

}  // namespace

// Without SA_RESTART: what waits for input wakes up.
InterruptsNoted::InterruptsNoted() {
    sigaction(SIGINT, nullptr, &before_);
    if (before_.sa_handler == SIG_IGN) return;
    struct sigaction action {};
    action.sa_handler = note;
    sigaction(SIGINT, &action, nullptr);
}

InterruptsNoted::~InterruptsNoted() { sigaction(SIGINT, &before_, nullptr); }

void InterruptsNoted::forget() { noted = false; }

bool interrupted() { return noted; }

void stop_if_interrupted() {
    if (interrupted()) throw Interrupted{};
}

}  // namespace finance::command
