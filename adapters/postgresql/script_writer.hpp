// The extension's script and the list of its C functions, from the catalogue.
#pragma once

#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::adapters::postgresql {

std::string function_script(const catalogue::Calculation& calculation);
std::string aggregate_script(const catalogue::Calculation& calculation);  // empty where there is none
std::string whole_script();

// One line for each calculation, in C++.
std::string entry_list();

}  // namespace finance::adapters::postgresql
