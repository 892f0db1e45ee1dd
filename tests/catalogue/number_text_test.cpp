// Numbers as text.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

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

// The library's shortest form, which is found in another way (Ryu); of a NaN and of -0 there is none here.
std::string library_text(double value) {
    std::array<char, 64> buffer;
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

TEST(NumberText, ShortestAsTheLibrary) {
    int checked = 0;
    const auto check = [&](double value) {
        if (value != value || value == 0.0) return;
        ++checked;
        ASSERT_EQ(catalogue::shortest_text(value), library_text(value));
    };
    for (int exponent = -1074; exponent < 1024; ++exponent) {
        const double power = std::ldexp(1.0, exponent);
        for (const double value :
             {power, std::nextafter(power, 0.0), std::nextafter(power, infinity), -power, 3 * power})
            check(value);
    }
    std::mt19937_64 draw{19991231};
    for (int i = 0; i < 200'000; ++i) check(std::bit_cast<double>(draw()));
    // Where one form gives way to the other: few and many digits, around 1e-5 and between 1e5 and 1e23.
    for (int i = 0; i < 500'000; ++i) {
        const double digits =
            std::round(std::ldexp(static_cast<double>(draw() >> 11U), -static_cast<int>(draw() % 53)));
        const auto power = static_cast<int>(draw() % 33);
        const double text = read_back(library_text(digits) + "e" + std::to_string(power - 22));
        check(text);
        check(std::trunc(text));
        check(std::ldexp(digits, power));
    }
    EXPECT_GT(checked, 1'000'000);
}

}  // namespace
}  // namespace finance::test
