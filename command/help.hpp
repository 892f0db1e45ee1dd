// The texts of `finance list` and `finance help NAME`, made from the catalogue.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "command/text_layout.hpp"

namespace finance::command {

// By family, one line a calculation.
std::string list_text(std::span<const catalogue::Family> families);

std::string help_text(const catalogue::Calculation& calculation, std::size_t width = usual_width);

}  // namespace finance::command
