// One evaluation: from the arguments of a call to what is printed.
#pragma once

#include <span>
#include <string_view>

#include "calls/answer.hpp"
#include "command/job.hpp"

namespace finance::command {

// By name, upper or lower case; UsageError with the closest name where there is none.
const catalogue::Calculation& calculation_named(std::string_view name);

// What an answer says: its value, also one that does not solve, and in sentences why it is none.
Outcome report(const calls::Answer& answer);

// UsageError, ModuleNotFound, host::LoadError.
Outcome evaluate(const catalogue::Calculation& calculation, std::span<const host::Argument> arguments,
                 const Settings& settings);

}  // namespace finance::command
