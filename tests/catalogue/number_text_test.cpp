// Numbers as text.
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <random>

#include "catalogue/text.hpp"

namespace finance::test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct TextCase {
    double value;
    const char* shortest;
    const char* plain;
};

// Shortest: the fewest digits that name the double; by hand.
constexpr TextCase cases[] = {
    {0.0, "0", "0"},
    {-0.0, "0", "0"},
    {0.1, "0.1", "0.1"},
    {-9.0, "-9", "-9"},
    {200000.0, "2e+05", "200000"},
    {0x1p53, "9007199254740992", "9007199254740992"},
    {0x1p53 + 2, "9007199254740994", "9007199254740994"},
    {1e17, "1e+17", "100000000000000000"},
    {1e300, "1e+300", "1e+300"},
    {5e-324, "5e-324", "5e-324"},
    {infinity, "inf", "inf"},
    {-infinity, "-inf", "-inf"},
    {nan, ".", "."},
};

TEST(NumberText, ShortestAndPlain) {
    for (const TextCase& row : cases) {
        EXPECT_EQ(catalogue::shortest_text(row.value), row.shortest);
        EXPECT_EQ(catalogue::plain_text(row.value), row.plain);
    }
}

TEST(NumberText, DatedValues) {
    EXPECT_EQ(catalogue::value_text(17577, true), "2008-02-15");
    EXPECT_EQ(catalogue::value_text(17577, false), "17577");
    EXPECT_EQ(catalogue::value_text(17577.5, true), "17577.5");
    EXPECT_EQ(catalogue::value_text(1e12, true), "1000000000000");
}

double read_back(const std::string& text) {
    double value = nan;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

TEST(NumberText, ReadsBackToTheSameBits) {
    std::mt19937_64 draw{20080215};
    int checked = 0;
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<double>(draw());
        if (value != value) continue;
        ++checked;
        for (const std::string& text : {catalogue::shortest_text(value), catalogue::plain_text(value)}) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(read_back(text)), std::bit_cast<std::uint64_t>(value)) << text;
        }
    }
    EXPECT_EQ(checked, 19990);
}

}  // namespace
}  // namespace finance::test
