// How gnuplot draws a schedule: what happens in each period above, what is left after it below.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "command/schedules/table_text.hpp"

namespace finance::command {

// In the order of their columns, the amounts from the second on, the book values after them.
inline constexpr std::array<std::string_view, 5> depreciation_methods{"SLN", "SYD", "DB", "DDB", "VDB"};

struct LoanPicture {
    std::string title{};
    double opening_balance = 0.0;
};

struct DepreciationPicture {
    std::string title{};
    double cost = 0.0;
};

std::string loan_script(const LoanPicture& picture, std::span<const Row> rows);
std::string depreciation_script(const DepreciationPicture& picture, std::span<const Row> rows);

}  // namespace finance::command
