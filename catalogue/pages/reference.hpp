// The reference in Markdown: a page a calculation, and one that lists them.
#pragma once

#include <span>
#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue::pages {

// The page's file: "PRICE.md".
std::string reference_file(const Calculation& calculation);
std::string reference_page(const Calculation& calculation, const Family& family);
std::string reference_index(std::span<const Family> families);

}  // namespace finance::catalogue::pages
