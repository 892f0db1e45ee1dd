// Ctrl-C while a job runs at the prompt.
//
//  (1) There an interrupt is noted, and what takes long asks for it between its rows, points or groups: the job ends with
//      Interrupted, the session goes on. Everywhere else an interrupt ends the program.
//  (2) Of one call there is no asking: the longest takes half a second.
#pragma once

#include <csignal>
#include <stdexcept>

namespace finance::command {

class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error{"stopped"} {}
};

// While it lives interrupts are noted, unless they were ignored before.
class InterruptsNoted {
public:
    InterruptsNoted();
    ~InterruptsNoted();
    InterruptsNoted(const InterruptsNoted&) = delete;
    InterruptsNoted& operator=(const InterruptsNoted&) = delete;

    // Those that came before a job are none of its business.
    static void forget();

private:
    struct sigaction before_ {};
};

// Whether one has been noted; any thread may ask.
bool interrupted();

// Interrupted where one has been noted.
void stop_if_interrupted();

}  // namespace finance::command
