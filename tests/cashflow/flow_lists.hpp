// Random lists of flows with a rate that is known to solve them, and how well a rate does.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "tests/support/precise.hpp"

namespace finance::test {

// ---- Periodic flows

struct Population {
    const char* name;
    double unit;         // size of the smallest flow before the list is balanced
    double spread;       // largest over smallest, logarithmically uniform between
    int most_flows;      // at least 2; short lists as frequent as long ones
    double lowest_rate;  // of the rates drawn, uniform in ln(1 + rate)
    double highest_rate;
};

inline constexpr std::array populations{
    Population{"60 flows, -50 % to 100 %", 1.0, 1e2, 60, -0.5, 1.0},
    Population{"360 flows, -10 % to 30 %", 1.0, 1e2, 360, -0.1, 0.3},
    Population{"12 flows, -99 % to 1000 %", 1.0, 1e2, 12, -0.99, 10.0},
    Population{"360 flows, -99 % to 1000 %", 1.0, 1e2, 360, -0.99, 10.0},
    Population{"360 flows, sizes 1 to 1e12", 1.0, 1e12, 360, -0.99, 10.0},
    Population{"360 flows of 1e290 and more", 1e290, 1e6, 360, -0.99, 10.0},
    Population{"360 flows, some below 1e-290", 1e-300, 1e6, 360, -0.99, 10.0},
};

// How often the signs change.
enum class Changes : std::uint8_t { one, two, many };

struct FlowList {
    std::vector<double> flows;
    double rate;  // solves them, but for the rounding of the flows
};

// One tenth of the flows inside a list are 0. The positive ones are scaled so that the rate solves the list.
FlowList draw_flows(Draws& draw, const Population& population, Changes changes);

int sign_changes_of(const std::vector<double>& flows);

// The worth of flows at a rate beside the largest discounted flow, and how much of that the rounding of the rate to a
// double explains: one unit in its last place.
struct Worth {
    double relative;
    double of_rounding;
};
Worth worth_at(const std::vector<double>& flows, double rate);

struct Answer {
    std::int32_t code;
    double rate;
};
Answer solve_periodic(std::vector<double> flows, double periods_per_unit = 1.0);

// ---- Dated flows

struct DatedList {
    std::vector<double> values;
    std::vector<std::int64_t> days;
    double rate;
};

enum class Dates : std::uint8_t { ascending, repeated, unsorted };

// 2 to 60 flows over up to 30 years, an outlay first in argument order; rates from -50 % to 200 %.
DatedList draw_dated(Draws& draw, Dates dates, Changes changes);

Worth worth_at(const DatedList& list, double rate);

}  // namespace finance::test
