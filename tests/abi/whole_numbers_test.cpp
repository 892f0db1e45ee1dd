// Takers of whole numbers: what counts as whole, and bounds before and after narrowing.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/abi/takers.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr double two_to_63 = 9223372036854775808.0;

struct WholeRow {
    const char* id;
    double x;
    bool whole;
    std::int64_t value;
};

// The last two decimal boundaries are exact: n units in the last place beyond k against the rounded product 1e-12 x.
const std::vector<WholeRow> whole_rows{
    {"3", 3.0, true, 3},
    {"0", 0.0, true, 0},
    {"-0", -0.0, true, 0},
    {"-4", -4.0, true, -4},
    {"2^53", two_to_53, true, 9007199254740992},
    {"2^53 + 2", two_to_53 + 2, false, 0},
    {"1e16", 1e16, false, 0},
    {"infinity", inf, false, 0},
    {"-2^53 - 2: no lower bound", -two_to_53 - 2, true, -9007199254740994},
    {"-1e16", -1e16, true, -10000000000000000},
    {"-2^63", -two_to_63, true, INT64_MIN},
    {"-2^63 - 2048: within 1e-12 of -2^63", -two_to_63 - 2048, true, INT64_MIN},
    {"-2^63 - 2^25: not within", -two_to_63 - 33554432, false, 0},
    {"-1e300", -1e300, false, 0},
    {"-infinity: no distance is above infinity", -inf, true, INT64_MIN},
    {"0.5", 0.5, false, 0},
    {"-0.5", -0.5, false, 0},
    {"2.5", 2.5, false, 0},
    {"2.9999999999999: truncated, not rounded", 2.9999999999999, false, 0},
    {"3.0000000000001", 3.0000000000001, true, 3},
    {"-3.0000000000001", -3.0000000000001, true, -3},
    {"3.00000000001", 3.00000000001, false, 0},
    {"1e-13: its own size is the measure", 1e-13, false, 0},
    {"smallest number", 5e-324, false, 0},
    {"1 and the last within 1e-12", 1.0000000000009999, true, 1},
    {"1 and the first beyond", 1.000000000001, false, 0},
    {"3 and the last within 3e-12", 3.000000000003, true, 3},
    {"3 and the first beyond", 3.0000000000030003, false, 0},
    {"-3 and the first beyond", -3.0000000000030003, false, 0},
};

TEST(WholeNumbers, Rows) {
    for (const WholeRow& row : whole_rows) {
        std::int64_t wide = 77;
        std::int32_t narrow = 77;
        const Taken in_64 = take(row.x, [&](Arguments& in) { return in.whole(2, wide); });
        const Taken in_32 = take(row.x, [&](Arguments& in) { return in.whole(2, narrow); });
        if (row.whole) {
            expect_accepted(in_64, row.id);
            expect_accepted(in_32, row.id);
            EXPECT_EQ(wide, row.value) << row.id;
            EXPECT_EQ(narrow, static_cast<std::int32_t>(row.value & 0xFFFFFFFF)) << row.id;
        } else {
            expect_refused(in_64, STATUS_INVALID_ARGUMENT, row.id);
            expect_refused(in_32, STATUS_INVALID_ARGUMENT, row.id);
        }
    }
}

// The same through a calculation whose arguments have no lower bound; interest is summed over nothing.
TEST(WholeNumbers, ThroughTheTable) {
    int accepted = 0;
    for (const WholeRow& row : whole_rows) {
        for (const int position : {2, 4, 5}) {
            std::vector<Arg> arguments{0.25, 4, 100, 3, 2};
            arguments[static_cast<std::size_t>(position - 1)] = row.x;
            const Outcome got = Call{"CUMIPMT", arguments}.through_handler();
            EXPECT_EQ(got.status, row.whole ? STATUS_SUCCESS : STATUS_INVALID_ARGUMENT) << row.id << ' ' << position;
            EXPECT_EQ(got.flagged, row.whole ? std::vector<int>{} : std::vector<int>{position}) << row.id;
            if (row.whole) ++accepted;
        }
    }
    EXPECT_EQ(accepted, 42);
}

// At least 1 after narrowing to 32 bits, or before it.
struct BoundRow {
    const char* id;
    double x;
    bool count;
    bool from_1;
    std::int32_t value;
};

const std::vector<BoundRow> bound_rows{
    {"1", 1, true, true, 1},
    {"0", 0, false, false, 0},
    {"-1", -1, false, false, 0},
    {"2^31 - 1", two_to_31 - 1, true, true, INT32_MAX},
    {"2^31", two_to_31, false, true, INT32_MIN},
    {"2^32", two_to_32, false, true, 0},
    {"2^32 + 3", two_to_32 + 3, true, true, 3},
    {"-2^32 + 5", -two_to_32 + 5, true, false, 5},
    {"2^53", two_to_53, false, true, 0},
    {"-infinity", -inf, false, false, 0},
    {"-2^63", -two_to_63, false, false, 0},
    {"-1e300", -1e300, false, false, 0},
    {"1e16", 1e16, false, false, 0},
};

void expect_taken(const Taken& taken, bool accepted, const char* id) {
    if (accepted) {
        expect_accepted(taken, id);
    } else {
        expect_refused(taken, STATUS_INVALID_ARGUMENT, id);
    }
}

TEST(WholeNumbers, LowerBounds) {
    for (const BoundRow& row : bound_rows) {
        std::int32_t narrow = 77;
        std::int32_t from_1 = 77;
        std::int64_t wide = 77;
        expect_taken(take(row.x, [&](Arguments& in) { return in.count(2, narrow); }), row.count, row.id);
        expect_taken(take(row.x, [&](Arguments& in) { return in.whole_from_1(2, from_1); }), row.from_1, row.id);
        expect_taken(take(row.x, [&](Arguments& in) { return in.whole_from_1(2, wide); }), row.from_1, row.id);
        if (row.count) {
            EXPECT_EQ(narrow, row.value) << row.id;
        }
        if (row.from_1) {
            EXPECT_EQ(from_1, row.value) << row.id;
            EXPECT_EQ(static_cast<double>(wide), row.x) << row.id;
        }
    }
}

TEST(WholeNumbers, ExactOnes) {
    struct Row {
        double x;
        bool exact;
        bool timing;
    };
    const std::vector<Row> rows{{0, true, true},
                                {-0.0, true, true},
                                {1, true, true},
                                {-1, true, true},
                                {2, true, false},
                                {-two_to_31, true, true},
                                {two_to_31 - 1, true, false},
                                {two_to_31, false, false},
                                {-two_to_31 - 1, false, false},
                                {0.5, false, false},
                                {-0.5, false, false},
                                {1.0000000000000002, false, false},
                                {1e300, false, false},
                                {inf, false, false},
                                {-inf, false, false}};
    for (const Row& row : rows) {
        std::int32_t value = 77;
        const std::string id = std::to_string(row.x);
        const Taken exact = take(row.x, [&](Arguments& in) { return in.optional_exact(2, value); });
        if (row.exact) {
            expect_accepted(exact, id.c_str());
            EXPECT_EQ(value, row.x);
        } else {
            expect_refused(exact, STATUS_INVALID_ARGUMENT, id.c_str());
        }
        const Taken timing = take(row.x, [&](Arguments& in) { return in.payment_timing(2, value); });
        if (row.timing) {
            expect_accepted(timing, id.c_str());
        } else {
            expect_refused(timing, STATUS_INVALID_ARGUMENT, id.c_str());
        }
    }
}

}  // namespace
}  // namespace finance::test
