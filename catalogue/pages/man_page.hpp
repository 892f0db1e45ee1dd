// finance(1), in the macros of man(7).
#pragma once

#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "catalogue/pages/command_words.hpp"

namespace finance::catalogue::pages {

std::string man_page(std::span<const Family> families, const CommandWords& command);

}  // namespace finance::catalogue::pages
