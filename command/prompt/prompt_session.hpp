// Lines of a prompt or a script, one after the other.
//
//  (1) A line is what would follow `finance` on the command line; see command/words.hpp for how it is split.
//  (2) ?NAME is help NAME; ? alone tells what can be typed; quit or exit ends the session.
//  (3) As the value of an argument (_, name=_, or one of several separated by commas) _ is the last value that a
//      calculation answered, to the last digit; a date is its number of days. Alone on a line it prints that answer.
//  (4) NAME = VALUE makes a variable of a value, a formula or a calculation's answer; `variables` lists them. They are
//      known by name in arguments, formulas and tables, the last answer as _ too.
//  (5) PMT(6%/12, 360, 200000) is a call as well. A pasted "finance " or "$ finance " before a line is dropped.
//  (6) Errors are one line each. No line ends the session but quit and exit.
//  (7) In a script standard input holds the script itself: map and fold take their table from a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/formulas/variables.hpp"
#include "command/job.hpp"

namespace finance::command {

// The lines of a text, each with one label in place of the other.
std::string relabelled(std::string_view lines, std::string_view label, std::string_view other);

enum class LinesFrom { terminal, script };

class PromptSession {
public:
    PromptSession(const Settings& settings, LinesFrom from) : settings_{settings}, from_{from} {}

    // What the line says; the error's lines have no "finance: " before them. number: of a script's line, told by each
    // object; 0 where there is none.
    Outcome run(std::string_view line, std::uint64_t number = 0);
    [[nodiscard]] bool ended() const { return ended_; }

    // NAME = TEXT, in a line.
    struct Assignment {
        std::string_view name;
        std::string_view text;
    };

private:
    struct Answer {
        std::string value;   // reads back to the same double
        std::string output;  // as it was printed
    };
    Outcome run_line(std::string_view line, Settings& settings);  // which gets what the line says of them
    Outcome run_text(std::string_view line, Settings& settings);  // UsageError
    Outcome run_words(std::vector<std::string> words, const Settings& settings);
    Outcome finished(Outcome outcome);
    Outcome assign(const Assignment& assignment, const Settings& settings);
    Outcome value_of(std::string_view text, const Settings& settings);
    [[nodiscard]] std::string variable_lines() const;
    [[nodiscard]] const Answer& last_answer() const;
    void put_last_answer(std::string& word) const;

    const Settings& settings_;
    LinesFrom from_;
    std::optional<Answer> answer_{};
    Variables variables_{};
    bool ended_ = false;
};

}  // namespace finance::command
