// The lines that were typed at the prompt, kept from one session to the next.
//
//  (1) The file is $XDG_STATE_HOME/finance/history, or .local/state/finance/history in the home folder; one line each,
//      the latest last. Only its owner may read it.
//  (2) Each line is added as it is typed, in one piece: sessions side by side keep each other's lines.
//  (3) A file of more than twice as many lines as are kept is cut to those that are.
//  (4) A file that cannot be read or written is of no consequence; a pipe or a device is none.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace finance::command {

inline constexpr std::size_t kept_lines = 1000;

// From the environment; empty where it names no place.
std::filesystem::path history_path();

class PromptHistory {
public:
    explicit PromptHistory(std::filesystem::path file) : file_{std::move(file)} {}

    // The latest lines, at most as many as are kept.
    [[nodiscard]] std::vector<std::string> read() const;
    void add(std::string_view line) const;

private:
    void rewrite(const std::vector<std::string>& lines) const;

    std::filesystem::path file_;
};

}  // namespace finance::command
