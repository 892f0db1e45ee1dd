// What is said of a call with too few arguments or too many, before anybody makes it.
#pragma once

#include <string>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::calls {

// "too few arguments: no nper, pv"; "too many arguments, from '7' on"; "values and dates do not pair up"; "" where there are
// as many as there may be. What stands in its place counts, whether there is a value or not.
std::string count_fault(const catalogue::Calculation& calculation, Arguments arguments);

// The position of the first text where none may stand; 0: there is none. Only a basis is given in letters.
int misplaced_text(const catalogue::Calculation& calculation, Arguments arguments);

}  // namespace finance::calls
