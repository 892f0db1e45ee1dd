// One value of an argument, as it is written outside tables.
//
//  (1) What is a value as it stands (reading/argument_text.hpp) is that value: a date, a number, a basis.
//  (2) Else it is the variable of that name; else arithmetic, of values and variables.
//  (3) A basis is never arithmetic: 30/360 is no division.
//  (4) Arithmetic of dates is a date where dates are wanted, and refused elsewhere.
#pragma once

#include <string_view>

#include "command/formulas/variables.hpp"
#include "reading/argument_text.hpp"

namespace finance::command {

// A basis is a view of the text. variables: may be null. FormulaError says why it is no value.
host::Argument read_written(catalogue::Kind kind, std::string_view text, const Variables* variables);

}  // namespace finance::command
