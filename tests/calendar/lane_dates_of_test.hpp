// The sets of instructions that this processor has, as parameters of tests.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "elementary/functions.hpp"
#include "tests/calendar/lane_dates.hpp"

namespace finance::test {

inline std::vector<const LaneDates*> sets_of_lanes() {
    std::vector<const LaneDates*> sets{&lane_dates_sse2};
    if (elementary::has_wide_lanes) sets.push_back(&lane_dates_avx2);
    return sets;
}

inline std::string name_of_set(const testing::TestParamInfo<const LaneDates*>& info) { return info.param->name; }

}  // namespace finance::test
