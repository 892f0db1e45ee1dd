// What a run of the command says and how it ends; writing it to standard output and standard error.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace finance::command {

inline constexpr int exit_answered = 0;
inline constexpr int exit_refused = 1;  // also: no module, no place to write to
inline constexpr int exit_usage = 2;
inline constexpr int exit_closed_pipe = 141;  // 128 + SIGPIPE, as a shell tells of it; nothing is said

struct Outcome {
    int exit_status = exit_answered;
    std::string output{};
    std::string error{};
    std::optional<double> value{};  // of a calculation that answered
    bool dated = false;             // whether that is a date
};

// What std::bad_alloc says, in words.
inline constexpr const char* not_enough_memory = "there is not enough memory";

// At once; whether all of it could be written.
bool write_text(std::FILE* stream, std::string_view text);

// What a run has come to whose output refused the last write.
Outcome unwritten();

// Nobody reads the output any more. It ends the run past everything that tells of failures.
class ClosedPipe {};

}  // namespace finance::command
