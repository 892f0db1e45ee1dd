// Completion of `finance` in zsh: words, names of calculations, names of arguments, day-count bases, each described.
#pragma once

#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "catalogue/pages/command_words.hpp"

namespace finance::catalogue::pages {

std::string zsh_completion(std::span<const Calculation> calculations, const CommandWords& command);

}  // namespace finance::catalogue::pages
