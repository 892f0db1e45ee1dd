// The table of all jobs.
#pragma once

#include <span>
#include <string_view>

#include "command/job.hpp"

namespace finance::command {

// ---- Each where it is done: tables/, schedules/, pictures/

extern const Job map_job;
extern const Job fold_job;
extern const Job schedule_job;
extern const Job plot_job;

// ---- All of them

std::span<const Job> jobs();

// Those that stand before the first word.
std::span<const Option> options();

// The job of that word, or else the calculation of that name. UsageError, ModuleNotFound, host::LoadError.
Outcome run_job(std::string_view word, Words words, const Settings& settings);

}  // namespace finance::command
