// The modes of the terminal that lines are typed at: as they were found, and as the editing library wants them.
//
//  (1) The editing library takes whatever it finds when a line begins for what is to be restored, and gives back what it
//      thinks is a usual terminal. Here the modes are kept as they were found, and put back after each line.
//  (2) Put back, too, by a signal that ends the program while a line is being typed, and by an abort.
//  (3) Nothing is changed from the background: the terminal is another's then.
#pragma once

#include <termios.h>

namespace finance::command {

// Of one terminal at a time.
class TerminalModes {
public:
    // While it lives a line is typed: nothing is echoed and letters come one by one, so that the editing library finds
    // the terminal so. A terminal without echo is left as it is; its driver is the editor then.
    explicit TerminalModes(int terminal);
    ~TerminalModes();
    TerminalModes(const TerminalModes&) = delete;
    TerminalModes& operator=(const TerminalModes&) = delete;

    // As they were found, for a while: another program may have the terminal now.
    void leave();
    // Back from there: what is found now is what will be restored.
    void enter();

private:
    void restore() const;
    [[nodiscard]] bool owns_terminal() const;
    void find();

    int terminal_;
    bool known_ = false;
    bool catches_faults_ = false;
    termios found_{};
    termios editing_{};
};

}  // namespace finance::command
