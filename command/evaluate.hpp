// One evaluation: from the words after the program's name to what is printed.
#pragma once

#include <span>
#include <string_view>

#include "calls/answer.hpp"
#include "command/host_on_demand.hpp"
#include "command/outcome.hpp"

namespace finance::command {

// By name, upper or lower case; UsageError with the closest name where there is none.
const catalogue::Calculation& calculation_named(std::string_view name);

// What an answer says: its value, also one that does not solve, and in sentences why it is none.
Outcome report(const calls::Answer& answer);

using Report = decltype(report);

// tokens: what follows the name. UsageError, ModuleNotFound, host::LoadError.
Outcome evaluate(const catalogue::Calculation& calculation, std::span<const std::string_view> tokens,
                 HostOnDemand& host, Report* tell);

}  // namespace finance::command
