// Words that mean something at the prompt and in scripts only.
#pragma once

#include <string_view>

namespace finance::command {

inline constexpr std::string_view help_mark = "?";         // before a name, or a word of its own
inline constexpr std::string_view last_answer_word = "_";  // stands for the last answer
inline constexpr std::string_view quit_word = "quit";
inline constexpr std::string_view exit_word = "exit";  // the same, for those who are used to it

}  // namespace finance::command
