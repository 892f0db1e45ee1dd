// The module's entry for columns: what is answered, what is left, and what it leaves as it was. Bits are compared in
// tests/corpus/columns_test.cpp.
#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "abi/zelkovan.h"
#include "tests/module/answered_columns.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const std::vector<double> rates{0.005, 0.01, nan, 0.02, -0.01, 0.03, 0.04, 0.05};
const std::vector<double> periods{360, 12, 12, 2.5, 12, 1e300, 12, 5e9};
const std::vector<double> amounts{1000, 2000, 3000, 4000, 5000, 6000, nan, 8000};

TEST(Columns, PlainRowsAreAnswered) {
    for (const std::uint32_t instructions : instruction_sets()) {
        const Answered got =
            answer("PMT", {numbers(rates.data()), numbers(periods.data()), numbers(amounts.data())}, 8, instructions);
        EXPECT_EQ(got.count, 2) << instructions;
        EXPECT_EQ(got.rows[0], 3U) << "missing, 2.5 periods, below 0, too many, missing, above 32 bits are left";
        // 1000 over 360 periods at 0.5 %: -r P g / (g - 1) for g = 1.005^360 = 6.0225752122632...
        EXPECT_NEAR(got.results[0], -5.9955052515275, 1e-12);
    }
}

TEST(Columns, OneValueForAllRowsAndAnyStride) {
    const std::vector<double> pairs{0.005, 7, 0.005, 7, 0.005, 7};
    const double twelve = 12;
    const double thousand = 1000;
    const Answered got = answer("PMT", {numbers(pairs.data(), 16), numbers(&twelve, 0), numbers(&thousand, 0)}, 3);
    EXPECT_EQ(got.rows[0], 7U);
    const Answered back =
        answer("PMT", {numbers(pairs.data() + 4, -16), numbers(&twelve, 0), numbers(&thousand, 0)}, 3);
    EXPECT_EQ(back.rows[0], 7U);
    EXPECT_EQ(got.results, back.results);
}

TEST(Columns, NumbersMayLieAnywhere) {
    std::vector<char> bytes(sizeof(double) * 64 + 1);
    for (std::size_t i = 0; i < 64; ++i) {
        const double rate = 0.001 * static_cast<double>(i + 1);
        std::memcpy(bytes.data() + 1 + sizeof(double) * i, &rate, sizeof rate);
    }
    ZelkovanColumn odd = numbers(nullptr);
    odd.first = bytes.data() + 1;
    const double twelve = 12;
    const double thousand = 1000;
    const Answered got = answer("PMT", {odd, numbers(&twelve, 0), numbers(&thousand, 0)}, 64);
    EXPECT_EQ(got.rows[0], ~std::uint64_t{0});
    std::vector<double> rates_in_place(64);
    std::memcpy(rates_in_place.data(), bytes.data() + 1, bytes.size() - 1);
    EXPECT_EQ(answer("PMT", {numbers(rates_in_place.data()), numbers(&twelve, 0), numbers(&thousand, 0)}, 64).results,
              got.results);
    const double rate = 0.001 * 64;
    EXPECT_EQ(answer("PMT", {numbers(&rate), numbers(&twelve, 0), numbers(&thousand, 0)}, 1).results[0],
              got.results[63]);
}

// 2.9 is code 2, a missing one is ACTUAL, 7 is none.
TEST(Columns, CodesOfABasisAreReadAsInCalls) {
    const std::vector<double> starts(64, 17532);
    const std::vector<double> ends(64, 17892);
    std::vector<double> codes(64, 2.9);
    codes[1] = nan;
    codes[2] = 7;
    const Answered got = answer("YEARFRAC", {numbers(starts.data()), numbers(ends.data()), numbers(codes.data())}, 64);
    EXPECT_EQ(got.rows[0], ~std::uint64_t{4});
    EXPECT_EQ(got.results[0], 1.0) << "360 days of 360";
    EXPECT_EQ(got.results[1], 360.0 / 366.0) << "of the leap year 2008";
}

// The rate of XNPV is no list, and may lie at an odd place beside lists.
TEST(Columns, NumbersBesideLists) {
    const std::vector<double> flows{-1000, 1200};
    const std::vector<double> days{17000, 17365};
    const std::vector<std::int64_t> starts{0, 2};
    const double rate = 0.25;
    char bytes[sizeof rate + 1];
    std::memcpy(bytes + 1, &rate, sizeof rate);
    ZelkovanColumn odd = numbers(nullptr, 0);
    odd.first = bytes + 1;
    const auto list = [&](const std::vector<double>& values) {
        return ZelkovanColumn{ZELKOVAN_COLUMN_LISTS, 0, values.data(), 0, starts.data()};
    };
    const Answered got = answer("XNPV", {odd, list(flows), list(days)}, 1);
    EXPECT_EQ(got.rows[0], 1U);
    EXPECT_EQ(got.results[0], -40.0);  // 1200 / 1.25 - 1000, a year apart
}

TEST(Columns, WordsOfABasisAreLookedUp) {
    const std::vector<double> starts(6, 17532);
    const std::vector<double> ends(6, 17897);
    const std::string_view words[] = {"30/360", " act/ 360", "30/360", "ACT/300", "actual", "actual"};
    std::vector<CharacterDescriptor> descriptors(6);
    std::vector<ArgSlot> bases(6);
    for (std::size_t i = 0; i < 6; ++i) {
        descriptors[i].text = const_cast<char*>(words[i].data());
        descriptors[i].length = static_cast<std::uint32_t>(words[i].size());
        bases[i].type = ZELKOVAN_TYPE_CHARACTER;
        bases[i].value = &descriptors[i];
    }
    const Answered got =
        answer("YEARFRAC", {numbers(starts.data()), numbers(ends.data()), slots(bases.data(), sizeof(ArgSlot))}, 6);
    EXPECT_EQ(got.rows[0], 0b110111U);
    // 1 January to 31 December 2008: 11 months of 30 days, 29 days and one for the 31st; 365 of 360; 365 of a leap year's
    EXPECT_EQ(got.results[0], 1.0);
    EXPECT_EQ(got.results[1], 365.0 / 360.0);
    EXPECT_EQ(got.results[4], 365.0 / 366.0);
    EXPECT_EQ(got.results[2], got.results[0]);
    EXPECT_EQ(got.results[5], got.results[4]);
}

TEST(Columns, SlotsWithoutAValueOrOfTheWrongKindAreLeft) {
    double rate = 0.01;
    double count = 12;
    CharacterDescriptor word{};
    ArgSlot of_rate{};
    of_rate.type = ZELKOVAN_TYPE_NUMERIC;
    of_rate.value = &rate;
    std::vector<ArgSlot> of_count(3);
    of_count[0].type = ZELKOVAN_TYPE_NUMERIC;
    of_count[0].value = &count;
    of_count[1].type = ZELKOVAN_TYPE_NUMERIC;
    of_count[2].type = ZELKOVAN_TYPE_CHARACTER;
    of_count[2].value = &word;
    const double amount = 1000;
    const Answered got =
        answer("PMT", {slots(&of_rate, 0), slots(of_count.data(), sizeof(ArgSlot)), numbers(&amount, 0)}, 3);
    EXPECT_EQ(got.rows[0], 1U);
    of_rate.value = nullptr;
    EXPECT_EQ(answer("PMT", {slots(&of_rate, 0), slots(of_count.data(), 0), numbers(&amount, 0)}, 3).count, 0);
}

TEST(Columns, WhatIsNoColumnIsLeft) {
    const std::vector<ZelkovanColumn> three(3, numbers(amounts.data()));
    EXPECT_EQ(answer("NOSUCH", three, 70).rows, (std::vector<std::uint64_t>{0, 0})) << "every word is set";
    EXPECT_EQ(answer("VDB", three, 3).count, 0) << "too few, and not in lanes";
    EXPECT_EQ(answer("PMT", {three[0], three[1]}, 3).count, 0) << "too few";
    EXPECT_EQ(answer("SLN", std::vector<ZelkovanColumn>(4, three[0]), 3).count, 0) << "too many";
    EXPECT_EQ(answer("SLN", std::vector<ZelkovanColumn>(400, three[0]), 3).count, 0) << "far too many";
    EXPECT_EQ(answer("SLN", three, 0).count, 0);
    EXPECT_EQ(answer("SLN", three, std::numeric_limits<std::int64_t>::min()).count, 0);
    EXPECT_EQ(answer("SLN", three, 3, ZELKOVAN_INSTRUCTIONS_NONE).count, 0);
    EXPECT_EQ(answer("SLN", three, 3, 77).count, 0);
    ensure_host();
    std::uint64_t word = 5;
    ZelkovanColumns negative{};
    negative.name = "SLN";
    negative.name_length = 3;
    negative.column_count = -1;
    negative.rows = 3;
    negative.answered = &word;
    EXPECT_EQ(fnccols(&negative), 0) << "nothing of it is read";
    EXPECT_EQ(answer("sln  ", three, 3).count, 3) << "a name is found as in a call";
}

// Rows that are refused, rows that overflow, and both sides of choices, in the lanes beside plain ones.
TEST(Columns, FlagsOfExceptionsAreLeftAlone) {
    const std::vector<double> edges{0.005, -1.0, std::numeric_limits<double>::infinity(), 1e300, 1e-300, 0.02,
                                    nan,   0.0};
    const std::vector<double> counts{360, 0, 12, 2e9, 1, 40, 12, 12};
    const std::vector<double> sizes{1e308, 1e308, 1e-308, 1, 5e-324, 1, 0, 1e308};
    for (const std::string_view name : {"PMT", "FV", "PV", "EFFECT", "SLN"}) {
        std::vector<ZelkovanColumn> columns{numbers(edges.data()), numbers(counts.data())};
        if (name != "EFFECT") columns.push_back(numbers(sizes.data()));
        for (const int before : {0, int{FE_DIVBYZERO}}) {
            std::feclearexcept(FE_ALL_EXCEPT);
            std::feraiseexcept(before);
            const Answered got = answer(name, columns, 8);
            EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), before) << name;
            EXPECT_GT(got.count, 0) << name;
        }
    }
    std::feclearexcept(FE_ALL_EXCEPT);
}

}  // namespace
}  // namespace finance::test
