// Values as text.
#include "reading/argument_text.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace finance::test {
namespace {

using catalogue::Kind;

using host::Argument;

std::uint64_t bits_of(double x) { return std::bit_cast<std::uint64_t>(x); }

constexpr double infinity = std::numeric_limits<double>::infinity();

struct NumberCase {
    const char* text;
    double expected;  // as the compiler reads the literal
};

constexpr NumberCase numbers[] = {
    {"5", 5.0},
    {"-100", -100.0},
    {"+2.5", 2.5},
    {"-0", -0.0},
    {".5", 0.5},
    {"5.", 5.0},
    {"1e-3", 1e-3},
    {"-1E5", -1e5},
    {"0.1", 0.1},
    {"9007199254740993", 9007199254740992.0},  // halfway: to even
    {"inf", infinity},
    {"-infinity", -infinity},
    // percentages move the decimal point: x / 100 and x * 0.01 both miss the nearest double of the next three
    {"0.07%", 0.0007},
    {"0.55%", 0.0055},
    {"0.57%", 0.0057},
    {"5.75%", 0.0575},
    {"100%", 1.0},
    {"-5%", -0.05},
    {"+5%", 0.05},
    {".5%", 0.005},
    {"5e1%", 0.5},
    {"5e+1%", 0.5},
    {"5E-1%", 0.005},
};

TEST(ArgumentText, Numbers) {
    for (const NumberCase& row : numbers) {
        const auto given = reading::read_value(Kind::number, row.text);
        ASSERT_TRUE(given && given->kind() == Argument::Kind::number) << row.text;
        EXPECT_EQ(bits_of(given->number()), bits_of(row.expected)) << row.text;
    }
}

TEST(ArgumentText, DividingAPercentageWouldMiss) {
    EXPECT_NE(0.07 / 100, 0.0007);
    EXPECT_NE(0.07 * 0.01, 0.0007);
}

TEST(ArgumentText, MissingAndAbsentOfEveryKind) {
    for (const Kind kind : {Kind::number, Kind::whole, Kind::date, Kind::date_time, Kind::basis, Kind::flag,
                            Kind::numbers, Kind::dates}) {
        const auto missing = reading::read_value(kind, ".");
        ASSERT_TRUE(missing && missing->kind() == Argument::Kind::number);
        EXPECT_EQ(bits_of(missing->number()), ZELKOVAN_MISSING_VALUE_BITS);
        const auto absent = reading::read_value(kind, "");
        EXPECT_TRUE(absent && absent->kind() == Argument::Kind::absent);
    }
}

// The module tells bit patterns of NaNs apart.
TEST(ArgumentText, EveryNanIsTheMissingValue) {
    for (const char* text : {"nan", "-nan", "NaN"}) {
        const auto value = reading::read_value(Kind::number, text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(bits_of(value->number()), ZELKOVAN_MISSING_VALUE_BITS) << text;
    }
}

double number(Kind kind, const char* text) { return reading::read_value(kind, text)->number(); }
std::string_view text(Kind kind, const char* text) { return reading::read_value(kind, text)->text(); }

TEST(ArgumentText, Dates) {
    EXPECT_EQ(number(Kind::date, "2008-02-15"), 17577.0);
    EXPECT_EQ(number(Kind::dates, "1959-12-31"), -1.0);
    EXPECT_EQ(number(Kind::date_time, "1960-01-02"), 1.0);
    EXPECT_EQ(number(Kind::date, "17577"), 17577.0);
    EXPECT_EQ(number(Kind::date, "-21915"), -21915.0);
    EXPECT_FALSE(reading::read_value(Kind::number, "2008-02-15")) << "a date is no number";
}

TEST(ArgumentText, BasesAreNumbersOrTexts) {
    EXPECT_EQ(number(Kind::basis, "2"), 2.0);
    EXPECT_EQ(number(Kind::basis, "2.9"), 2.9);
    EXPECT_EQ(text(Kind::basis, "act / 360"), "act / 360");
    EXPECT_EQ(text(Kind::basis, "30/360"), "30/360");
    EXPECT_EQ(text(Kind::basis, "abc"), "abc");
}

struct UnreadableCase {
    Kind kind;
    const char* text;
    const char* expected;
};

constexpr UnreadableCase unreadable[] = {
    {Kind::number, "abc", "'abc' is not a number"},
    {Kind::number, "5x", "'5x' is not a number"},
    {Kind::number, "1,234", "'1,234' is not a number"},
    {Kind::number, " 5", "' 5' is not a number"},
    {Kind::number, "5 ", "'5 ' is not a number"},
    {Kind::number, "0x10", "'0x10' is not a number"},
    {Kind::number, "+-5", "'+-5' is not a number"},
    {Kind::number, "++5", "'++5' is not a number"},
    {Kind::number, "+", "'+' is not a number"},
    {Kind::number, "--5", "'--5' is not a number"},
    {Kind::number, "%", "'%' is not a number"},
    {Kind::number, "5%%", "'5%%' is not a number"},
    {Kind::number, "5e%", "'5e%' is not a number"},
    {Kind::number, "5e1x%", "'5e1x%' is not a number"},
    {Kind::number, "inf%", "'inf%' is not a number"},
    {Kind::number, "..", "'..' is not a number"},
    {Kind::number, "1e999", "'1e999' is beyond what a double can hold"},
    {Kind::number, "1e-999", "'1e-999' is beyond what a double can hold"},
    {Kind::number, "1e99999999999999999999%", "'1e99999999999999999999%' is beyond what a double can hold"},
    // -2^63, of which nothing can be taken away any more
    {Kind::number, "1e-9223372036854775808%", "'1e-9223372036854775808%' is beyond what a double can hold"},
    {Kind::whole, "twelve", "'twelve' is not a number"},
    {Kind::date, "2008-02-30", "'2008-02-30' is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01"},
    {Kind::dates, "15.2.2008", "'15.2.2008' is not a date: year-month-day as in 2008-02-15, or days since 1960-01-01"},
};

TEST(ArgumentText, Unreadable) {
    for (const UnreadableCase& row : unreadable) {
        EXPECT_FALSE(reading::read_value(row.kind, row.text)) << row.text;
        EXPECT_EQ(reading::unreadable(row.kind, row.text), row.expected);
    }
}

}  // namespace
}  // namespace finance::test
