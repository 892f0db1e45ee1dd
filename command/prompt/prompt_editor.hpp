// One line typed at a terminal: edited, completed with Tab, earlier ones brought back with the arrows.
//
//  (1) Ctrl-C abandons the line; Ctrl-D on an empty line, or a terminal that is gone, ends the input.
//  (2) Ctrl-Z, a new size of the window, and requests to terminate are acted upon while a line is being typed, the
//      terminal being put in order first. At any other time signals do what they always do; but see
//      command/interruption.hpp.
//  (3) The terminal is as it was found whenever no line is being typed (command/prompt/terminal_modes.hpp).
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace finance::command {

// There is one terminal and so one editor: of this class one object may live at a time.
class PromptEditor {
public:
    explicit PromptEditor(const std::vector<std::string>& earlier_lines);

    struct Line {
        bool abandoned = false;
        std::string text{};
    };
    // Nothing where the input has ended.
    std::optional<Line> read(const char* prompt);
    // Whether it was remembered: neither an empty line is nor one equal to the last.
    bool remember(const std::string& line);

private:
    std::string last_{};
};

}  // namespace finance::command
