// What `finance` can be asked to do: the word that comes first, or the name of a calculation.
#pragma once

#include <filesystem>
#include <span>
#include <string_view>

#include "command/outcome.hpp"

namespace finance::command {

using Words = std::span<const std::string_view>;

// What was said before the first word.
struct Settings {
    std::filesystem::path module{};  // empty: the installed one
};

// A job writes what it streams itself; the outcome holds what is left to say and how it ends.
struct Job {
    std::string_view word;
    std::string_view usage;    // what follows the word
    std::string_view purpose;  // one line
    Outcome (*run)(Words words, const Settings& settings);
};

std::span<const Job> jobs();

// The job of that word, or else the calculation of that name. UsageError, ModuleNotFound, host::LoadError.
Outcome run_job(std::string_view word, Words words, const Settings& settings);

}  // namespace finance::command
