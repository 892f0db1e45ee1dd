// `finance` without words: a prompt on a terminal, else the lines of standard input.
#pragma once

#include <string_view>

#include "command/job.hpp"

namespace finance::command {

// ---- Words that mean something here only

inline constexpr std::string_view help_mark = "?";         // before a name, or a word of its own
inline constexpr std::string_view last_answer_word = "_";  // stands for the last answer
inline constexpr std::string_view variables_word = "variables";
inline constexpr std::string_view quit_word = "quit";
inline constexpr std::string_view exit_word = "exit";  // the same, for those who are used to it

// Whether somebody sits in front of it: input and one of the outputs are a terminal.
bool wants_prompt();

// Until quit, Ctrl-D, or an output that is gone.
Outcome run_prompt(const Settings& settings);

// Answers on standard output, line by line; errors on standard error, each with the number of its line. Exit status 0;
// 1 where a line was refused; 2 where one was wrong usage.
Outcome run_script(const Settings& settings);

}  // namespace finance::command
