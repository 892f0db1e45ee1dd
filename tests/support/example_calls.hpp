// Calls that make sense, of every calculation: made from the catalogue's examples.
#pragma once

#include <vector>

#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::test {

// The example's arguments in order, lists value by value. std::logic_error where they are not the first parameters.
// Texts are the catalogue's own.
[[nodiscard]] std::vector<host::Argument> usual_call(const catalogue::Calculation& calculation);

// And those that the example leaves out, each at what it then stands for: as many arguments as a calculation
// without lists takes.
[[nodiscard]] std::vector<host::Argument> full_call(const catalogue::Calculation& calculation);

// The example's result, a date as its day.
[[nodiscard]] double usual_answer(const catalogue::Calculation& calculation);

}  // namespace finance::test
