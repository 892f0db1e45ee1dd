// Argument 2 of three read by a taker, and what that left behind.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "abi/arguments.hpp"
#include "tests/support/call.hpp"

namespace finance::test {

inline constexpr double untouched = 1234.5;

struct Taken {
    bool accepted;
    Status status;
    double result;
    std::vector<int> flagged;
};

template <typename Take>
Taken take(const Arg& argument, Take taker, std::int64_t count = 4) {
    Call call{"PMT", {0.5, argument, 100}};
    double result = untouched;
    Arguments in{call.context(), &result, count};
    Taken taken{taker(in), in.status(), result, {}};
    for (int i = 0; i < 4; ++i) {
        const std::uint8_t flags = slots_of(call.context())[i].flags;
        if ((flags & ZELKOVAN_FLAG_INVALID) != 0) taken.flagged.push_back(i);
        EXPECT_EQ(flags & 0xFE, 0xFE) << "flag bits of the host's";
    }
    return taken;
}

inline void expect_accepted(const Taken& taken, const char* id) {
    EXPECT_TRUE(taken.accepted) << id;
    EXPECT_EQ(taken.status, STATUS_SUCCESS) << id;
    EXPECT_EQ(taken.result, untouched) << id;
    EXPECT_TRUE(taken.flagged.empty()) << id;
}

inline void expect_refused(const Taken& taken, Status status, const char* id) {
    EXPECT_FALSE(taken.accepted) << id;
    EXPECT_EQ(taken.status, status) << id;
    EXPECT_EQ(bits(taken.result), ZELKOVAN_MISSING_VALUE_BITS) << id;
    EXPECT_EQ(taken.flagged, std::vector<int>{2}) << id;
}

}  // namespace finance::test
