// `finance list` and `finance help` for machines: one JSON object a line.
#pragma once

#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "command/job.hpp"

namespace finance::command {

// Name, family, result kind and what it answers.
std::string json_list(std::span<const catalogue::Family> families);

// One line a job: its word, what follows it, its purpose.
std::string json_jobs(std::span<const Job> jobs);

// The same with its whole help, as text.
std::string json_help(const Job& job);

// All that the catalogue knows of one.
std::string json_help(const catalogue::Calculation& calculation);

}  // namespace finance::command
