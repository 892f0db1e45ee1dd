// What follows `map` and `fold`.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "command/jobs.hpp"

namespace finance::command {

inline constexpr std::string_view standard_stream = "-";

struct TableOptions {
    std::string_view calls{};
    std::string input{standard_stream};
    std::string output{standard_stream};
    std::optional<char> delimiter{};
    std::vector<std::string_view> by{};
    bool header = true;
    bool status = false;
    bool strict = false;
    bool quiet = false;
    bool help = false;
    bool json = false;  // results as objects; said before the first word, or anywhere
};

// Options stand anywhere among the words, as --name value or --name=value. groups: whether --by is one of them.
// UsageError.
TableOptions read_table_options(Words words, std::string_view job, bool groups, bool json);

// The help on the options that both jobs have.
std::string_view table_options_help();

}  // namespace finance::command
