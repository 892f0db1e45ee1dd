#include "command/tables/progress.hpp"

#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace finance::command {

namespace {

constexpr const char* clear_line = "\r\033[K";

void draw(const std::string& text) {
    // A terminal that is gone is no reason to stop.
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

std::string time_text(double seconds) {
    constexpr double minute = 60.0;
    if (seconds < minute) return std::to_string(std::llround(std::ceil(seconds))) + " s";
    return std::to_string(std::llround(std::ceil(seconds / minute))) + " min";
}

// 1234567 as 1,234,567.
std::string grouped(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
        text += digits[i];
    }
    return text;
}

}  // namespace

std::string progress_text(std::uint64_t rows, std::uint64_t bytes, std::optional<std::uint64_t> size,
                          std::chrono::duration<double> elapsed) {
    std::string text = grouped(rows) + " rows";
    const double seconds = elapsed.count();
    if (!(seconds > 0.0)) return text;
    text += ", " + grouped(static_cast<std::uint64_t>(static_cast<double>(rows) / seconds)) + " rows a second";
    if (size && bytes > 0) {
        const auto done = static_cast<double>(bytes);
        const double rest = std::max(0.0, static_cast<double>(*size) - done);
        text += ", " + time_text(rest * seconds / done) + " left";
    }
    return text;
}

Progress::Progress(std::optional<std::uint64_t> size, bool quiet)
    : size_{size}, shown_{!quiet && isatty(STDERR_FILENO) == 1} {}

Progress::~Progress() {
    if (drawn_) draw(clear_line);
}

void Progress::update(std::uint64_t rows, std::uint64_t bytes) {
    constexpr auto interval = std::chrono::milliseconds{200};
    if (!shown_) return;
    const auto now = Clock::now();
    if (drawn_ && now - last_ < interval) return;
    drawn_ = true;
    last_ = now;
    draw(clear_line + progress_text(rows, bytes, size_, now - start_));
}

}  // namespace finance::command
