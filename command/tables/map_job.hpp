// `finance map`: calls over the rows of a table, their results as further columns.
#pragma once

#include <string>

#include "command/jobs.hpp"

namespace finance::command {

Outcome map_table(Words words, const Settings& settings);
std::string map_help();

}  // namespace finance::command
