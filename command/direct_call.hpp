// What is typed in one piece, outside tables: PMT(6%/12, 360, 200000), or arithmetic alone.
//
//  (1) A call is written as map takes it; its arguments are values, variables and arithmetic. Between marks of either
//      kind stands a value: 'act/360', "2024-01-31".
//  (2) Where a session has variables, they are known by name.
#pragma once

#include <string_view>

#include "command/job.hpp"

namespace finance::command {

// A name and, next to it, a bracket; no function's name.
bool looks_like_call(std::string_view text);

// UsageError, ModuleNotFound, host::LoadError.
Outcome evaluate_call(std::string_view text, const Settings& settings);

// UsageError.
Outcome evaluate_formula(std::string_view text, const Settings& settings);

}  // namespace finance::command
