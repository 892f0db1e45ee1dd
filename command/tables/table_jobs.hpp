// `finance map`: calls over the rows of a table, their results as further columns.
// `finance fold`: calls over lists whose values stand one below the other, one result a group of rows.
#pragma once

#include <string>

#include "command/jobs.hpp"

namespace finance::command {

Outcome map_table(Words words, const Settings& settings);
std::string map_help();

Outcome fold_table(Words words, const Settings& settings);
std::string fold_help();

}  // namespace finance::command
