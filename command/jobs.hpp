// What `finance` can be asked to do: the word that comes first, or the name of a calculation.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

#include "command/host_on_demand.hpp"
#include "command/outcome.hpp"

namespace finance::command {

using Words = std::span<const std::string_view>;

// What was said before the first word, and the host that everything of one run evaluates on.
struct Settings {
    std::filesystem::path module{};  // empty: the installed one
    bool json = false;               // results and errors as JSON objects, one a line
    HostOnDemand& host;
};

// A job writes what it streams itself; the outcome holds what is left to say and how it ends.
struct Job {
    std::string_view word;
    std::string_view usage;    // what follows the word
    std::string_view purpose;  // one line
    Outcome (*run)(Words words, const Settings& settings);
    std::string (*help)() = nullptr;  // all there is to know of it; null where usage and purpose are
};

std::span<const Job> jobs();

struct Option {
    std::string_view name;
    std::string_view value;    // of what follows it; empty where nothing does
    std::string_view purpose;  // one line
};

// Those that stand before the first word.
std::span<const Option> options();

// The job of that word, or else the calculation of that name. UsageError, ModuleNotFound, host::LoadError.
Outcome run_job(std::string_view word, Words words, const Settings& settings);

}  // namespace finance::command
