// Plain numbers against the library's reading of the same text.
#include "reading/plain_decimal.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <random>
#include <string>

namespace finance::test {
namespace {

using reading::read_plain_decimal;

std::uint64_t bits_of(double x) { return std::bit_cast<std::uint64_t>(x); }

// The library's; the whole text must be a number. A percentage has an exponent of its own.
double as_library(std::string text) {
    if (text.ends_with('%')) text.replace(text.size() - 1, 1, "e-2");
    double value = 0.0;
    const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_TRUE(fault == std::errc{} && stop == text.data() + text.size()) << text;
    return value;
}

void expect_as_library(const std::string& text) {
    double value = 0.0;
    ASSERT_TRUE(read_plain_decimal(text, value)) << text;
    ASSERT_EQ(bits_of(value), bits_of(as_library(text))) << text;
}

TEST(PlainDecimal, IsReadToTheSameBits) {
    for (const char* text : {"0",
                             "-0",
                             "0.0",
                             "-0.00",
                             "5",
                             "-100",
                             "0.1",
                             "0.3",
                             "123.456",
                             "000.5",
                             "00",
                             "5.75%",
                             "0.07%",
                             "0.55%",
                             "-5%",
                             "0%",
                             "-0%",
                             "9007199254740992",
                             "9007199254740991",
                             "0.9007199254740992",
                             "900719925474099.2",
                             "0.000000000000000001",
                             "0.000000000000000002%",
                             "0000000000000000001",
                             "1.000000000000000"}) {
        expect_as_library(text);
    }
}

struct OtherCase {
    const char* id;
    const char* text;
};

// Numbers and others; what they are is for the full reading to say.
constexpr OtherCase others[] = {
    {"nothing", ""},
    {"a sign alone", "-"},
    {"a plus", "+5"},
    {"a point alone", "."},
    {"no digit before the point", ".5"},
    {"no digit after the point", "5."},
    {"no digit before the percent sign", "%"},
    {"a point before the percent sign", "5.%"},
    {"two signs", "--5"},
    {"two points", "1.2.3"},
    {"two percent signs", "5%%"},
    {"an exponent", "1e5"},
    {"a blank before", " 5"},
    {"a blank after", "5 "},
    {"a blank before the percent sign", "5 %"},
    {"groups", "1,234"},
    {"a quotation mark", "\"5\""},
    {"the character before 0", "1/"},
    {"the character after 9", "1:"},
    {"a byte above ASCII", "1\xB2"},
    {"halfway between two doubles", "9007199254740993"},
    {"twenty digits", "00000000000000000001"},
    {"twenty places", "0.00000000000000000001"},
    {"more than 64 bits", "18446744073709551617"},
    {"infinite", "inf"},
    {"a date", "2008-02-15"},
};

TEST(PlainDecimal, OthersAreLeftToOthers) {
    for (const OtherCase& row : others) {
        double value = 7.5;
        EXPECT_FALSE(read_plain_decimal(row.text, value)) << row.id;
        EXPECT_EQ(value, 7.5) << row.id;
    }
}

// All numbers of digits before and after the point, with and without signs, around 2^53 too.
TEST(PlainDecimal, DrawsAreReadToTheSameBits) {
    std::mt19937_64 draw{20260101};
    int read = 0;
    for (int i = 0; i < 2'000'000; ++i) {
        std::string text = std::to_string(draw() >> (draw() % 64));
        if (i % 8 == 0) text = std::to_string((std::uint64_t{1} << 53U) - 8 + draw() % 16);
        const std::size_t point = draw() % (text.size() + 1);
        if (point > 0 && point < text.size()) text.insert(point, 1, '.');
        if (draw() % 4 == 0) text.insert(0, 1, '-');
        if (draw() % 4 == 0) text += '%';
        double value = 0.0;
        if (!read_plain_decimal(text, value)) continue;
        ++read;
        ASSERT_EQ(bits_of(value), bits_of(as_library(text))) << text;
    }
    EXPECT_GT(read, 1'500'000);
}

}  // namespace
}  // namespace finance::test
