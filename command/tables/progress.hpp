// A line on the terminal that says how far a run has come: rows, rows a second, time left where the size is known.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace finance::command {

// "1,234,567 rows, 850,000 rows a second, 12 s left".
std::string progress_text(std::uint64_t rows, std::uint64_t bytes, std::optional<std::uint64_t> size,
                          std::chrono::duration<double> elapsed);

// Draws where standard error is a terminal and quiet is not asked for, at most five times a second; the line is gone
// when the object is.
class Progress {
public:
    Progress(std::optional<std::uint64_t> size, bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void update(std::uint64_t rows, std::uint64_t bytes);

private:
    using Clock = std::chrono::steady_clock;

    std::optional<std::uint64_t> size_;
    bool shown_;
    bool drawn_ = false;
    Clock::time_point start_ = Clock::now();
    Clock::time_point last_{};
};

}  // namespace finance::command
