// `finance plot`: a calculation drawn over a range of one of its arguments.
#pragma once

#include <string>

#include "command/jobs.hpp"

namespace finance::command {

Outcome plot(Words words, const Settings& settings);
std::string plot_help();

}  // namespace finance::command
