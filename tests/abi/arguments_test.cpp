// The takers: what each accepts and keeps, what a refusal leaves behind; on records made by hand and through the table.
#include "abi/arguments.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr double two_to_63 = 9223372036854775808.0;
constexpr double untouched = 1234.5;

// What reading argument 2 of three left behind.
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

void expect_accepted(const Taken& taken, const char* id) {
    EXPECT_TRUE(taken.accepted) << id;
    EXPECT_EQ(taken.status, STATUS_SUCCESS) << id;
    EXPECT_EQ(taken.result, untouched) << id;
    EXPECT_TRUE(taken.flagged.empty()) << id;
}

void expect_refused(const Taken& taken, Status status, const char* id) {
    EXPECT_FALSE(taken.accepted) << id;
    EXPECT_EQ(taken.status, status) << id;
    EXPECT_EQ(bits(taken.result), ZELKOVAN_MISSING_VALUE_BITS) << id;
    EXPECT_EQ(taken.flagged, std::vector<int>{2}) << id;
}

// ---- Absent, missing, any NaN

double nan_of_bits(std::uint64_t pattern) { return std::bit_cast<double>(pattern); }

TEST(Takers, MissingIsAnyNaN) {
    const std::vector<std::uint64_t> patterns{ZELKOVAN_MISSING_VALUE_BITS, 0x7FF8000000000000, 0xFFF8000000000000,
                                              0x7FF0000000000001,          0xFFF4000000000000, 0xFFFFFFFFFFFFFFFF};
    for (const std::uint64_t pattern : patterns) {
        double value = 7.0;
        expect_refused(take(nan_of_bits(pattern), [&](Arguments& in) { return in.number(2, value); }),
                       STATUS_MISSING_RESULT, "number");
        value = 7.0;
        const auto optional_number = [&](Arguments& in) { return in.optional_number(2, value), true; };
        expect_accepted(take(nan_of_bits(pattern), optional_number), "optional number");
        EXPECT_EQ(value, 7.0) << "keeps its default";
    }
    double value = 0.0;
    expect_accepted(take(inf, [&](Arguments& in) { return in.number(2, value); }), "infinity is a number");
    EXPECT_EQ(value, inf);
}

TEST(Takers, RequiredArgumentsMustBeThere) {
    double x = 0.0;
    std::int64_t wide = 0;
    std::int32_t narrow = 0;
    const auto refuse_both = [](auto taker, const char* id) {
        expect_refused(take(absent, taker), STATUS_INVALID_ARGUMENT, id);
        expect_refused(take(no_descriptor, taker), STATUS_INVALID_ARGUMENT, id);
        expect_refused(take(missing, taker), STATUS_MISSING_RESULT, id);
    };
    refuse_both([&](Arguments& in) { return in.number(2, x); }, "number");
    refuse_both([&](Arguments& in) { return in.above(2, -1.0, x); }, "above");
    refuse_both([&](Arguments& in) { return in.positive(2, x); }, "positive");
    refuse_both([&](Arguments& in) { return in.whole(2, wide); }, "whole, 64 bits");
    refuse_both([&](Arguments& in) { return in.whole(2, narrow); }, "whole, 32 bits");
    refuse_both([&](Arguments& in) { return in.count(2, narrow); }, "count");
    refuse_both([&](Arguments& in) { return in.whole_from_1(2, narrow); }, "whole from 1");
    refuse_both([&](Arguments& in) { return in.whole_from_1(2, wide); }, "whole from 1, 64 bits");
}

TEST(Takers, OptionalArgumentsKeepTheirDefault) {
    double x = 7.0;
    std::int32_t k = -7;
    const auto accept_all = [](auto taker, const char* id) {
        expect_accepted(take(absent, taker), id);
        expect_accepted(take(missing, taker), id);
        expect_accepted(take(5, taker, 2), id);  // left out: the count ends before it
        expect_accepted(take(5, taker, -1), id);
    };
    accept_all([&](Arguments& in) { return in.optional_number(2, x), true; }, "number");
    accept_all([&](Arguments& in) { return in.optional_exact(2, k); }, "exact");
    accept_all([&](Arguments& in) { return in.payment_timing(2, k); }, "timing");
    double amount = 7.0;
    accept_all([&](Arguments& in) { return in.amount_and_timing(1, amount, k); }, "amount and timing");
    EXPECT_EQ(amount, 0.5);
    EXPECT_EQ(x, 7.0);
    EXPECT_EQ(k, -7);
}

// No type byte is looked at where a number is read.
TEST(Takers, NumbersOfAnyType) {
    double value = 0.0;
    expect_accepted(take(other_type, [&](Arguments& in) { return in.number(2, value); }), "type 3");
    EXPECT_EQ(value, 0.0);
    for (const std::uint8_t type : std::vector<std::uint8_t>{0, 1, 2, 3, 4, 5, 6, 0xFF}) {
        Call call{"PMT", {1, 1, 5}};
        for (int i = 1; i <= 3; ++i) slots_of(call.context())[i].type = type;
        const Outcome got = call.through_dispatcher();
        EXPECT_EQ(got.status, STATUS_SUCCESS) << int{type};
        EXPECT_EQ(got.value, -10.0) << "5 borrowed at 100 %, repaid by 10 after one period";
    }
}

// ---- Ranges

TEST(Takers, Ranges) {
    double value = 0.0;
    const auto above_minus_1 = [&](Arguments& in) { return in.above(2, -1.0, value); };
    const auto positive = [&](Arguments& in) { return in.positive(2, value); };
    for (const double good : {5e-324, 1e-300, 0.05, 1e300, inf}) {
        expect_accepted(take(good, positive), "positive");
        EXPECT_EQ(value, good);
    }
    for (const double bad : {0.0, -0.0, -5e-324, -1.0, -inf}) {
        expect_refused(take(bad, positive), STATUS_INVALID_ARGUMENT, "positive");
    }
    for (const double good : {-0.9999999999999999, 0.0, 3.0, inf})
        expect_accepted(take(good, above_minus_1), "above -1");
    for (const double bad : {-1.0, -1.0000000000000002, -inf}) {
        expect_refused(take(bad, above_minus_1), STATUS_INVALID_ARGUMENT, "above -1");
    }
}

// ---- Whole numbers

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
    EXPECT_GT(accepted, 30);
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

// ---- The end of a call

TEST(EndOfACall, WhatEachWayLeaves) {
    Call call{"PMT", {1, 2, 3}};
    double result = untouched;
    Arguments in{call.context(), &result, 4};
    EXPECT_EQ(in.answer(2.5), STATUS_SUCCESS);
    EXPECT_EQ(result, 2.5);
    double from_kernel = 3.5;
    EXPECT_EQ(in.answer_if(0, from_kernel), STATUS_SUCCESS);
    EXPECT_EQ(result, 3.5);
    EXPECT_EQ(in.answer_if(1, from_kernel), STATUS_INVALID_ARGUMENT) << "no argument is at fault";
    EXPECT_EQ(bits(result), ZELKOVAN_MISSING_VALUE_BITS);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(slots_of(call.context())[i].flags, 0xFE);
    result = untouched;
    EXPECT_EQ(in.invalid(3), STATUS_INVALID_ARGUMENT);
    EXPECT_EQ(bits(result), ZELKOVAN_MISSING_VALUE_BITS);
    EXPECT_EQ(slots_of(call.context())[3].flags, 0xFF);
    EXPECT_FALSE(in.reject(2));
    EXPECT_EQ(in.status(), STATUS_INVALID_ARGUMENT);
}

// Failures need no result: the flag and the status say it.
TEST(EndOfACall, FailuresWithoutAResult) {
    for (const Arg& bad : {Arg{missing}, absent, Arg{0}}) {
        Call call{"PMT", {bad, 2, 3}};
        Arguments in{call.context(), nullptr, 4};
        double value;
        EXPECT_FALSE(in.positive(1, value));
        EXPECT_EQ(in.status(), bad.kind() == Arg::Kind::number && bad.number() != 0.0 ? STATUS_MISSING_RESULT
                                                                                      : STATUS_INVALID_ARGUMENT);
        EXPECT_EQ(slots_of(call.context())[1].flags, 0xFF);
        EXPECT_EQ(in.fail(), STATUS_INVALID_ARGUMENT);
    }
}

// ---- Order: strictly left to right, the first failure ends the call

const std::vector<RefusalCase> first_failures{
    {"missing, then invalid", "PMT", {missing, 2.5, 100}, STATUS_MISSING_RESULT, {1}},
    {"missing, then invalid", "ISPMT", {missing, 0, 0, absent}, STATUS_MISSING_RESULT, {1}},
    {"missing, then absent", "IPMT", {missing, absent, 5, 100}, STATUS_MISSING_RESULT, {1}},
    {"invalid, then missing", "PMT", {-1, missing, 100}, STATUS_INVALID_ARGUMENT, {1}},
    {"absent, then missing", "PV", {absent, missing, missing}, STATUS_INVALID_ARGUMENT, {1}},
    {"second missing, third invalid", "CUMIPMT", {0.1, missing, -5, 0.5, 0.5}, STATUS_MISSING_RESULT, {2}},
    {"all missing", "PPMT", {missing, missing, missing, missing, missing, missing}, STATUS_MISSING_RESULT, {1}},
    {"all absent", "CUMPRINC", {absent, absent, absent, absent, absent, absent}, STATUS_INVALID_ARGUMENT, {1}},
};

TEST(Order, FirstFailureEndsTheCall) { check_refusals(first_failures); }

}  // namespace
}  // namespace finance::test
