// What `finance` can be asked to do: the word that comes first, all that can follow it, and what is done then.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "catalogue/pages/command_words.hpp"
#include "command/host_on_demand.hpp"
#include "command/outcome.hpp"

namespace finance::command {

using catalogue::pages::FixedWord;
using catalogue::pages::Option;
using catalogue::pages::Takes;

class Variables;

using Words = std::span<const std::string_view>;

// What was said before the first word, and the host that everything of one run evaluates on.
struct Settings {
    bool json = false;  // results and errors as JSON objects, one a line
    HostOnDemand& host;
    const Variables* variables = nullptr;  // of a session
    std::optional<int> digits{};           // decimals of answers; none: all
};

// A job writes what it streams itself; the outcome holds what is left to say and how it ends.
struct Job : catalogue::pages::Word {
    Outcome (*run)(Words words, const Settings& settings);
    std::string (*help)() = nullptr;  // all there is to know of it; null where usage and purpose are
};

}  // namespace finance::command
