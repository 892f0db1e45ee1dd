// What a run of the command says and how it ends.
#pragma once

#include <optional>
#include <string>

namespace finance::command {

inline constexpr int exit_answered = 0;
inline constexpr int exit_refused = 1;  // also: no module, no place to write to
inline constexpr int exit_usage = 2;

struct Outcome {
    int exit_status = exit_answered;
    std::string output{};
    std::string error{};
    std::optional<double> value{};  // of a calculation that answered
};

}  // namespace finance::command
