// The fewest digits of a double, against the library's, which finds them in another way (Ryu).
#include "catalogue/shortest_digits.hpp"

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

constexpr double largest = std::numeric_limits<double>::max();

// "1.2345e-05" as digits and an exponent of the last one.
catalogue::ShortestDigits library_digits(double value) {
    std::array<char, 64> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific).ptr;
    const std::string_view text{buffer.data(), static_cast<std::size_t>(end - buffer.data())};
    const std::size_t e = text.find('e');
    catalogue::ShortestDigits found;
    for (const char c : text.substr(0, e)) {
        if (c != '.') found.digits = found.digits * 10 + static_cast<unsigned>(c - '0');
    }
    found.exponent = std::stoi(std::string{text.substr(e + 1)});
    if (e > 1) found.exponent -= static_cast<int>(e) - 2;
    return found;
}

double value_of(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void expect_as_library(double value) {
    const auto found = catalogue::shortest_digits(value);
    const auto wanted = library_digits(value);
    ASSERT_EQ(found.digits, wanted.digits) << value;
    ASSERT_EQ(found.exponent, wanted.exponent) << value;
}

void expect_neighbours_as_library(double value) {
    expect_as_library(value);
    expect_as_library(std::nextafter(value, 0.0));
    if (value < largest) expect_as_library(std::nextafter(value, largest));
}

TEST(ShortestDigits, PowersOfTwoAndTheirNeighbours) {
    for (int exponent = -1073; exponent < 1024; ++exponent) expect_neighbours_as_library(std::ldexp(1.0, exponent));
    expect_as_library(std::numeric_limits<double>::denorm_min());
    expect_as_library(largest);
}

TEST(ShortestDigits, PowersOfTenAndTheirMultiples) {
    for (int exponent = -322; exponent <= 308; ++exponent) {
        for (int digit = 1; digit < 10; ++digit) {
            const double value =
                value_of(std::string{"0."}.append(std::to_string(digit)).append("e").append(std::to_string(exponent)));
            expect_neighbours_as_library(value);
        }
    }
}

TEST(ShortestDigits, SmallestOfAll) {
    for (std::uint64_t bits = 1; bits < 20'000; ++bits) expect_as_library(std::bit_cast<double>(bits));
}

// Ties: whole numbers above 2^53 that lie between two multiples of ten.
TEST(ShortestDigits, LargeWholeNumbers) {
    std::mt19937_64 draw{3};
    for (int i = 0; i < 200'000; ++i) expect_as_library(static_cast<double>(draw() >> (draw() % 11)));
}

TEST(ShortestDigits, AllExponents) {
    std::mt19937_64 draw{1};
    int checked = 0;
    for (int i = 0; i < 1'000'000; ++i) {
        const auto value = std::abs(std::bit_cast<double>(draw()));
        if (!std::isfinite(value) || value == 0.0) continue;
        ++checked;
        expect_as_library(value);
    }
    EXPECT_GT(checked, 990'000);
}

TEST(ShortestDigits, FewDigits) {
    std::mt19937_64 draw{2};
    for (int i = 0; i < 500'000; ++i) {
        const auto number = static_cast<double>(draw() % 100'000'000 + 1);
        expect_as_library(number / std::pow(10.0, static_cast<double>(draw() % 23)));
    }
}

// ---- Texts: plain_text is the library's shortest text but for whole numbers, which it writes out below 2^63.

std::string library_text(double value) {
    std::array<char, 64> buffer;
    char* const end = buffer.data() + buffer.size();
    const bool whole = value == std::trunc(value) && std::abs(value) < 0x1p63;
    const auto stop = whole ? std::to_chars(buffer.data(), end, value + 0.0, std::chars_format::fixed).ptr
                            : std::to_chars(buffer.data(), end, value).ptr;
    return {buffer.data(), stop};
}

void expect_text_as_library(double value) {
    ASSERT_EQ(catalogue::plain_text(value), library_text(value));
    ASSERT_EQ(catalogue::plain_text(-value), library_text(-value));
}

TEST(ShortestDigits, TextsOfAllExponents) {
    std::mt19937_64 draw{4};
    for (int i = 0; i < 300'000; ++i) {
        const auto value = std::bit_cast<double>(draw());
        if (!std::isnan(value)) expect_text_as_library(value);
    }
}

// From 1e-20 to 1e20, with all numbers of digits: where an exponent begins to pay, and where it ceases to.
TEST(ShortestDigits, TextsOfOrdinaryNumbers) {
    std::mt19937_64 draw{5};
    for (int exponent = -20; exponent <= 20; ++exponent) {
        for (int i = 0; i < 20'000; ++i) {
            const auto mantissa = static_cast<double>(draw() >> (draw() % 63 + 1)) + 1.0;
            expect_text_as_library(mantissa * std::pow(10.0, static_cast<double>(exponent - 9)));
        }
        expect_text_as_library(std::pow(10.0, static_cast<double>(exponent)));
    }
}

}  // namespace
}  // namespace finance::test
