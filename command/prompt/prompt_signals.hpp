// Signals as something to wait for beside a terminal's input, instead of interruptions.
#pragma once

#include <csignal>

namespace finance::command {

// While it lives, interrupts, stops, changes of the window's size and requests to terminate are held back from the
// process, and next() hands them out.
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    // Waits until that file can be read from or a signal has come: the signal, or 0 where there is something to read.
    int next(int file);
    // The signal does to the process what it would have done; so do those that have come meanwhile.
    void let_through(int signal);

private:
    sigset_t held_{};
    sigset_t before_{};
    int queue_ = -1;
};

}  // namespace finance::command
