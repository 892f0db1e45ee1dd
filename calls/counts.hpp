// What is said of a call with too few arguments or too many, before anybody makes it.
#pragma once

#include <string>
#include <string_view>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"

namespace finance::calls {

// The words, of whoever finds it: the names of the parameters that are lacking; the first argument that has no place; the
// names of two lists, "values and dates".
inline std::string too_few_words(std::string_view names) { return "too few arguments: no " + std::string{names}; }
inline std::string too_many_words(std::string_view first) {
    return "too many arguments, from " + catalogue::in_quotes(first) + " on";
}
inline std::string unpaired_words(std::string_view names) { return std::string{names} + " do not pair up"; }
std::string names_of_two(const catalogue::Parameter& first, const catalogue::Parameter& second);

// "too few arguments: no nper, pv"; "too many arguments, from '7' on"; "values and dates do not pair up"; "" where there are
// as many as there may be. What stands in its place counts, whether there is a value or not.
std::string count_fault(const catalogue::Calculation& calculation, Arguments arguments);

// The position of the first text where none may stand; 0: there is none. Only a basis is given in letters.
int misplaced_text(const catalogue::Calculation& calculation, Arguments arguments);

}  // namespace finance::calls
