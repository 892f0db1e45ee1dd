// Numbers as people read them.
#pragma once

#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

// The shortest text that reads back to the same double; a NaN, whichever, is the missing value and written ".".
std::string shortest_text(double value);

// The same, but whole numbers below 2^63 in plain digits: 200000, not 2e+05.
std::string plain_text(double value);

// Appends plain_text.
void append_plain(std::string& text, double value);

// A date as year-month-day where its year has four digits, else as plain_text.
std::string value_text(double value, bool dated);

}  // namespace finance::catalogue
