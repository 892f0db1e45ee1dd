// One evaluation: from the words after the program's name to what is printed.
#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "catalogue/diagnosis.hpp"
#include "command/outcome.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

// By name, upper or lower case; UsageError with the closest name where there is none.
const catalogue::Calculation& calculation_named(std::string_view name);

// tokens: what follows the name. UsageError, ModuleNotFound, host::LoadError.
Outcome evaluate(const catalogue::Calculation& calculation, std::span<const std::string_view> tokens,
                 const std::filesystem::path& told_module);

// What an evaluation of these arguments says.
Outcome report(const catalogue::Calculation& calculation, std::span<const catalogue::Given> arguments,
               const host::Evaluation& evaluation);

}  // namespace finance::command
