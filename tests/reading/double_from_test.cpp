// Doubles from their texts. Values are the compiler's literals; where the range ends is counted: the smallest double is
// 2^-1074, half of which is 2.4703282292062327...e-324, the largest 2^1024 - 2^970, and halfway to 2^1024 is
// 1.79769313486231580793...e308.
#include "reading/double_from.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace finance::test {
namespace {

using reading::double_from;

constexpr double infinity = std::numeric_limits<double>::infinity();

struct NumberCase {
    const char* text;
    double expected;
};

constexpr NumberCase numbers[] = {
    {"5", 5.0},
    {"-.5", -0.5},
    {"5.", 5.0},
    {"-0", -0.0},
    {"0e999999", 0.0},
    {"-0e-99999999999999999999", -0.0},
    {"1e+2", 100.0},
    {"1E-2", 0.01},
    {"9007199254740993", 9007199254740992.0},                                 // halfway: to even
    {"9007199254740993.000000000000000000000000000001", 9007199254740994.0},  // above halfway
    {"5e-324", 0x1p-1074},
    {"2.4703282292062328e-324", 0x1p-1074},
    {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022},
    {"1.7976931348623158e308", 0x1.fffffffffffffp1023},
    {"inf", infinity},
    {"-Infinity", -infinity},
};

TEST(DoubleFrom, Numbers) {
    for (const NumberCase& row : numbers) {
        const auto read = double_from(row.text);
        ASSERT_TRUE(read.good()) << row.text;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read.value), std::bit_cast<std::uint64_t>(row.expected)) << row.text;
    }
    const std::string zeros(1000, '0');
    EXPECT_EQ(double_from("1" + zeros + "e-1000").value, 1.0);
    EXPECT_EQ(double_from("0." + zeros + "1e1001").value, 1.0);
}

TEST(DoubleFrom, Nans) {
    for (const char* text : {"nan", "-nan", "NaN", "nan()", "nan(0_z)", "-NAN(1)"}) {
        const auto read = double_from(text);
        EXPECT_TRUE(read.good() && std::isnan(read.value)) << text;
    }
}

TEST(DoubleFrom, OutOfRangeWhateverFollows) {
    for (const char* text : {"1e999", "-1e999", "1.7976931348623159e308", "1e99999999999999999999", "1e-400", "2e-324",
                             "2.4703282292062327e-324", "1e-99999999999999999999", "1e999x", "1e-400%", "1e999e5"}) {
        EXPECT_EQ(double_from(text).fault, std::errc::result_out_of_range) << text;
    }
}

TEST(DoubleFrom, NoNumbers) {
    for (const char* text : {"",        ".",    "-",    "-.",   "+5",    "-+5",   "--5",   " 5",       "5 ",
                             "- 5",     "0x10", "1e",   "1e+",  "1e+-5", "1e-5.", "1.2.3", ".e5",      "5%",
                             "1,5",     "infi", "infx", "nanx", "nan(",  "nan(a", "nan)",  "nan(a b)", "nan(\xC3\xA9)",
                             "-nan(-)", "i",    "e5",   "1f",   "1_000"}) {
        EXPECT_EQ(double_from(text).fault, std::errc::invalid_argument) << text;
    }
}

}  // namespace
}  // namespace finance::test
