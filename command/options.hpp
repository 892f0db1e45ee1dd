// The words after a job, read by its table of options, and the help that is made from the table.
//
//  (1) Options stand anywhere among the words: --name, --name VALUE, --name=VALUE. The other words keep their order.
//  (2) --help is an option of every job, and in no table but that of the options before the first word.
//  (3) All values of an option are kept, in order: which of them count is the job's to say.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "command/job.hpp"

namespace finance::command {

inline constexpr Option help_option{
    .name = "--help",
    .help = "how the command is used; after a calculation's name, all about it",
    .short_name = "-h",
};

inline constexpr std::string_view json_name = "--json";

constexpr Option json_option(std::string_view help) { return {.name = json_name, .help = help, .anywhere = true}; }

constexpr bool is_called(const Option& option, std::string_view word) {
    return word == option.name || (word == option.short_name && !word.empty());
}

// How a job tells that it cannot take an option.
struct OptionStyle {
    std::string_view job;  // what its sentences begin with
    // Names the closest option, a value that is missing and one too many. Otherwise a missing value is an empty one.
    bool explains = false;
    bool help_ends = false;  // what follows --help is not read
};

class OptionsGiven {
public:
    void add(std::string_view name, std::string_view value) { options_.emplace_back(name, value); }

    [[nodiscard]] bool has(std::string_view name) const { return value(name).has_value(); }
    // The last one given.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view name) const;
    [[nodiscard]] std::vector<std::string_view> values(std::string_view name) const;
    // Of an option with a range.
    [[nodiscard]] std::size_t number(std::string_view name, std::size_t otherwise) const;

    std::vector<std::string_view> places{};  // the words that are no options
    bool help = false;

private:
    std::vector<std::pair<std::string_view, std::string_view>> options_{};
};

// UsageError.
OptionsGiven read_options(std::span<const Option> options, Words words, const OptionStyle& style);

// Lines of help, one below the other.
std::string option_lines(std::span<const Option> table);

}  // namespace finance::command
