// `finance fold`: calls over lists whose values stand one below the other, one result a group of rows.
#pragma once

#include <string>

#include "command/jobs.hpp"

namespace finance::command {

Outcome fold_table(Words words, const Settings& settings);
std::string fold_help();

}  // namespace finance::command
