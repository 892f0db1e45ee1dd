// The texts of `finance list` and `finance help NAME`, made from the catalogue.
#pragma once

#include <span>
#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::command {

// By family, one line a calculation.
std::string list_text(std::span<const catalogue::Family> families);

std::string help_text(const catalogue::Calculation& calculation);

// Breaks lines at blanks so that none, indented, exceeds 100 characters; keeps the text's own line breaks.
std::string wrapped(std::string_view text, std::size_t indent);

}  // namespace finance::command
