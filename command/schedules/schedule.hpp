// `finance schedule`: payment tables of loans, depreciation tables by all methods.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "calls/answer.hpp"
#include "command/job.hpp"
#include "command/schedules/table_text.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

// A table that is made row by row.
struct Schedule {
    std::vector<std::string> titles{};  // of the picture, and of each of its curves
    std::span<const Column> columns{};
    std::int64_t rows = 0;                                       // at most
    std::function<Row()> next_row{};                             // the rows in order, empty after the last; CallRefused
    std::function<std::string(std::span<const Row>)> picture{};  // what gnuplot is told to draw all rows
};

// As many periods as the largest count that the module keeps.
std::int64_t period_count(std::string_view schedule, double periods);

// What follows the word of a schedule. UsageError.
std::vector<host::Argument> schedule_arguments(const catalogue::Calculation& schedule, Words words,
                                               const Settings& settings);

// decimals: that all amounts are rounded to, so that columns add up; none: all digits. UsageError, CallRefused. The host
// must live as long as the schedule.
Schedule loan_schedule(Words words, const Settings& settings, const std::optional<int>& decimals);
Schedule depreciation_schedule(Words words, const Settings& settings, const std::optional<int>& decimals);
extern const std::array<catalogue::Parameter, 8> loan_parameters;
extern const std::array<catalogue::Parameter, 5> depreciation_parameters;

}  // namespace finance::command
