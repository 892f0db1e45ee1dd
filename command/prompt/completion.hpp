// What a line at the prompt may go on with.
//
//  (1) Where a line begins: calculations, jobs, and what the prompt itself knows. After ? or help: calculations.
//  (2) After a calculation: the arguments that have no value yet, as name=, in the order of a call; after basis= the
//      keywords.
//  (3) Case is of no matter for what is typed; what is offered is written as the catalogue writes it.
//  (4) After a job: its options once a - is typed; the columns of the table that the line names, after --by; loan and
//      depreciation with their arguments; elsewhere, after --output and --plot above all, file names, which are not known
//      here.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace finance::command {

// What the word before the cursor may become, in the order in which they are to be read; nothing where a
// file may be named. line: up to the cursor.
std::optional<std::vector<std::string>> completions(std::string_view line);

// The letters with which all of them begin. At least one.
std::string common_beginning(const std::vector<std::string>& texts);

}  // namespace finance::command
