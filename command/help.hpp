// `finance list` and `finance help`, made from the catalogue: as texts, and for machines as JSON objects, one a line.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "command/job.hpp"
#include "command/text_layout.hpp"

namespace finance::command {

// ---- Texts

// By family, one line a calculation.
std::string list_text(std::span<const catalogue::Family> families);

std::string help_text(const catalogue::Calculation& calculation, std::size_t width = usual_width);

// ---- Objects

// Name, family, result kind and what it answers.
std::string json_list(std::span<const catalogue::Family> families);

// One line a job: its word, what follows it, its purpose.
std::string json_jobs(std::span<const Job> jobs);

// The same with its whole help, as text.
std::string json_help(const Job& job);

// All that the catalogue knows of one.
std::string json_help(const catalogue::Calculation& calculation);

// All of that about all, and the keywords of day-count bases in the order of their codes: one object.
std::string json_catalogue(std::span<const catalogue::Calculation> calculations);

}  // namespace finance::command
