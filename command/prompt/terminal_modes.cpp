#include "command/prompt/terminal_modes.hpp"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>

namespace finance::command {

namespace {

// What a faulty program still does: put back the modes. A handler may call tcsetattr and raise.
constexpr std::array<int, 5> faults{SIGABRT, SIGSEGV, SIGBUS, SIGILL, SIGFPE};
std::array<struct sigaction, faults.size()> usual_actions{};
int faulty_terminal = -1;
termios before_fault{};

void let_faults_pass() {
    for (std::size_t i = 0; i < faults.size(); ++i) sigaction(faults[i], &usual_actions[i], nullptr);
}

void restore_and_fail(int signal) {
    tcsetattr(faulty_terminal, TCSANOW, &before_fault);
    let_faults_pass();
    std::raise(signal);
}

void catch_faults() {
    struct sigaction action {};
    action.sa_handler = restore_and_fail;
    for (std::size_t i = 0; i < faults.size(); ++i) sigaction(faults[i], &action, &usual_actions[i]);
}

}  // namespace

TerminalModes::TerminalModes(int terminal) : terminal_{terminal} {
    find();
    catches_faults_ = known_;
    if (catches_faults_) catch_faults();
}

TerminalModes::~TerminalModes() {
    if (known_) restore();
    if (catches_faults_) let_faults_pass();
}

void TerminalModes::find() {
    known_ = owns_terminal() && tcgetattr(terminal_, &found_) == 0;
    if (!known_) return;
    faulty_terminal = terminal_;
    before_fault = found_;
    if ((found_.c_lflag & static_cast<tcflag_t>(ECHO)) == 0) return;
    termios quiet = found_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ICANON);
    tcsetattr(terminal_, TCSADRAIN, &quiet);
}

bool TerminalModes::owns_terminal() const { return tcgetpgrp(terminal_) == getpgrp(); }

void TerminalModes::restore() const {
    if (owns_terminal()) tcsetattr(terminal_, TCSADRAIN, &found_);
}

void TerminalModes::leave() {
    if (!known_) return;
    tcgetattr(terminal_, &editing_);
    restore();
}

void TerminalModes::enter() {
    if (!known_) return;
    find();
    if (known_) tcsetattr(terminal_, TCSADRAIN, &editing_);
}

}  // namespace finance::command
