// Help within the width of whoever reads it.
//
//  (1) Texts are written for 100 columns, more or less. On a narrower terminal a paragraph with a line that does not fit is
//      broken anew; where its first line has columns (two blanks and more), it goes on below the last of them.
//  (2) A line that calls the command is broken as a shell joins it, outside quotation marks.
//  (3) Not on a terminal nothing changes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "command/outcome.hpp"

namespace finance::command {

inline constexpr std::size_t usual_width = 100;

// Of the terminal that standard output is: COLUMNS, or as the terminal says; the usual one elsewhere. Not below 20.
std::size_t output_width();

// Each line of the text broken at blanks so that none, indented, exceeds the width.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t width = usual_width);

// A command after its two blanks of margin: a line that goes on ends in a backslash.
std::string wrapped_call(std::string_view call, std::size_t width = usual_width);

// A text whose lines are laid out already, for a narrower output.
std::string fitted(std::string_view text, std::size_t width);

// Help on a job, for the output; unchanged where that is no terminal.
Outcome shown_help(const std::string& text);

}  // namespace finance::command
