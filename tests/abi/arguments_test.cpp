// The takers: what each accepts and keeps, what a refusal leaves behind; on records made by hand and through the table.
#include "abi/arguments.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <string>
#include <vector>

#include "tests/abi/takers.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();

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
