// Missing-value counters: by number, by type, of the first slot. Expected counts by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "abi/arguments.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// The arguments are slots 0 and up: the name counts like any other.
struct Row {
    const char* id;
    std::vector<Arg> slots;
    double by_type;
    double of_first;
};

Call call_of(const Row& row) {
    return Call{row.slots.front().text(), std::vector<Arg>(row.slots.begin() + 1, row.slots.end())};
}

TEST(MissingCounters, ByType) {
    const std::vector<Row> rows{
        {"a name alone", {"IRR"}, 0, 0},
        {"a blank name", {"   "}, 1, 1},
        {"an empty name", {""}, 1, 1},
        {"numbers", {"IRR", 1, missing, 2, nan, -nan}, 3, 0},
        {"infinities are there", {"IRR", std::numeric_limits<double>::infinity()}, 0, 0},
        {"texts", {"IRR", "", " ", "  x", std::string(300, ' '), "\t"}, 3, 0},
        {"no value pointer", {"IRR", absent, no_descriptor}, 2, 0},
        {"no text pointer", {"IRR", absent_text}, 1, 0},
        {"all missing", {" ", missing, "", absent}, 4, 1},
    };
    for (const Row& row : rows) {
        Call call = call_of(row);
        double result = 77.0;
        EXPECT_EQ(fnccmis(call.context(), &result), 0U) << row.id;
        EXPECT_EQ(result, row.by_type) << row.id;
        result = 77.0;
        EXPECT_EQ(fncmis(call.context(), &result), 0U) << row.id;
        EXPECT_EQ(result, row.of_first) << row.id;
    }
}

// Slots of numbers, made by hand; value pointers may be null.
struct NumericSlots {
    explicit NumericSlots(std::vector<double> numbers, std::uint8_t type = ZELKOVAN_TYPE_NUMERIC)
        : numbers_{std::move(numbers)}, record_(5 + 2 * numbers_.size(), 0xA5A5A5A5A5A5A5A5) {
        context()->count = static_cast<std::int64_t>(numbers_.size());
        for (std::size_t i = 0; i < numbers_.size(); ++i) {
            slots_of(context())[i].type = type;
            slots_of(context())[i].value = &numbers_[i];
        }
    }
    HostCallContext* context() { return reinterpret_cast<HostCallContext*>(record_.data()); }

private:
    std::vector<double> numbers_;
    std::vector<std::uint64_t> record_;
};

TEST(MissingCounters, AsNumbersWhateverTheType) {
    for (const std::uint8_t type : std::vector<std::uint8_t>{1, 2, 3, 5, 6, 0}) {
        NumericSlots slots{{missing, 1.0, nan, 0.0, -nan}, type};
        double result = 77.0;
        EXPECT_EQ(fncnmis(slots.context(), &result), 0U);
        EXPECT_EQ(result, 3.0) << int{type};
    }
    NumericSlots slots{{1.0, 2.0, missing}};
    slots_of(slots.context())[1].value = nullptr;
    double result = 77.0;
    EXPECT_EQ(fncnmis(slots.context(), &result), 0U);
    EXPECT_EQ(result, 2.0) << "a slot without a value is missing";
}

// Bit 0 of the type byte makes a number, whatever the other bits say.
TEST(MissingCounters, WhatCountsAsANumber) {
    for (const std::uint8_t type : std::vector<std::uint8_t>{1, 3, 5, 7, 0x81, 0xFF}) {
        NumericSlots slots{{missing, 1.0}, type};
        double result = 77.0;
        fnccmis(slots.context(), &result);
        EXPECT_EQ(result, 1.0) << int{type};
        fncmis(slots.context(), &result);
        EXPECT_EQ(result, 1.0) << int{type};
    }
    for (const std::uint8_t type : std::vector<std::uint8_t>{2, 6, 0, 4, 0x80, 0xFE}) {
        Call call{"IRR", {"  ", "x"}};
        for (int i = 0; i < 3; ++i) slots_of(call.context())[i].type = type;
        double result = 77.0;
        fnccmis(call.context(), &result);
        EXPECT_EQ(result, 1.0) << int{type};
    }
}

// A count whose low 32 bits are below 1 has no slots; the high ones are not looked at.
TEST(MissingCounters, WithoutSlots) {
    for (const std::int64_t count : {0LL, -1LL, 1LL << 32, 0xFFFFFFFFLL, 5LL << 31}) {
        NumericSlots slots{{}};
        slots.context()->count = count;
        double result = 77.0;
        EXPECT_EQ(fncnmis(slots.context(), &result), 0U);
        EXPECT_EQ(result, 0.0);
        result = 77.0;
        EXPECT_EQ(fnccmis(slots.context(), &result), 0U);
        EXPECT_EQ(result, 0.0);
    }
    NumericSlots slots{{missing, missing, 1.0}};
    slots.context()->count = -4294967296 + 3;
    double result = 77.0;
    EXPECT_EQ(fncnmis(slots.context(), &result), 0U);
    EXPECT_EQ(result, 2.0);
    EXPECT_EQ(fnccmis(slots.context(), &result), 0U);
    EXPECT_EQ(result, 2.0);
}

// The test of the first slot asks for no count.
TEST(MissingCounters, TheFirstSlotWhateverTheCount) {
    for (const std::int64_t count : {0LL, -1LL, 1LL << 32}) {
        for (const double value : {missing, 5.0}) {
            NumericSlots slots{{value}};
            slots.context()->count = count;
            double result = 77.0;
            EXPECT_EQ(fncmis(slots.context(), &result), 0U);
            EXPECT_EQ(result, std::isnan(value) ? 1.0 : 0.0);
        }
    }
}

// They read, and write nothing but the result.
TEST(MissingCounters, NothingOfTheHostsIsChanged) {
    Call call{"IRR", {missing, "", absent, 3}};
    const auto* bytes = reinterpret_cast<const unsigned char*>(call.context());
    const std::vector<unsigned char> before(bytes, bytes + 40 + 5 * 16);
    double result;
    fnccmis(call.context(), &result);
    fncmis(call.context(), &result);
    EXPECT_EQ(std::vector<unsigned char>(bytes, bytes + 40 + 5 * 16), before);
}

}  // namespace
}  // namespace finance::test
