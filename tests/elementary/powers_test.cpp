// x^y where x or y is 0, infinite, no number or out of the common range: as the C standard has them (F.10.4.4).
#include "elementary/powers.hpp"

#include <gtest/gtest.h>

#include "elementary/functions.hpp"
#include "tests/elementary/doubles.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct PowerRow {
    const char* id;
    double x;
    double y;
    double expected;
};

const std::vector<PowerRow> rows{
    {"0 to an odd number below 0", 0.0, -3.0, inf},
    {"-0 to an odd number below 0", -0.0, -3.0, -inf},
    {"0 to a number below 0", 0.0, -2.5, inf},
    {"-0 to an even number below 0", -0.0, -2.0, inf},
    {"-0 to a fraction below 0", -0.0, -2.5, inf},
    {"0 to -infinity", -0.0, -inf, inf},
    {"0 to an odd number", 0.0, 3.0, 0.0},
    {"-0 to an odd number", -0.0, 3.0, -0.0},
    {"-0 to an even number", -0.0, 4.0, 0.0},
    {"-0 to a fraction", -0.0, 0.5, 0.0},
    {"-0 to the largest odd number", -0.0, 0x1p53 - 1.0, -0.0},
    {"-0 to 2^53, even", -0.0, 0x1p53, 0.0},
    {"-1 to infinity", -1.0, inf, 1.0},
    {"-1 to -infinity", -1.0, -inf, 1.0},
    {"1 to NaN", 1.0, nan, 1.0},
    {"NaN to 0", nan, 0.0, 1.0},
    {"infinity to -0", inf, -0.0, 1.0},
    {"NaN to 1", nan, 1.0, nan},
    {"2 to NaN", 2.0, nan, nan},
    {"below 0 to a fraction", -2.0, 0.5, nan},
    {"below 1 to -infinity", 0.5, -inf, inf},
    {"above 1 to -infinity", -1.5, -inf, 0.0},
    {"below 1 to infinity", -0.5, inf, 0.0},
    {"above 1 to infinity", 1.5, inf, inf},
    {"-infinity to an odd number below 0", -inf, -3.0, -0.0},
    {"-infinity to an even number below 0", -inf, -2.0, 0.0},
    {"-infinity to a fraction below 0", -inf, -0.5, 0.0},
    {"-infinity to an odd number", -inf, 3.0, -inf},
    {"-infinity to an even number", -inf, 2.0, inf},
    {"-infinity to a fraction", -inf, 0.5, inf},
    {"infinity to a number below 0", inf, -0.5, 0.0},
    {"infinity to a number", inf, 0.5, inf},
    // by hand
    {"-1 to an odd number", -1.0, 0x1p53 - 1.0, -1.0},
    {"-1 to a huge number", -1.0, 1e300, 1.0},
    {"-1 to a tiny number", -1.0, 1e-300, nan},
    {"-2 to 3", -2.0, 3.0, -8.0},
    {"-2 to -1074", -2.0, -1074.0, 5e-324},
    {"-2 to -1073", -2.0, -1073.0, -0x1p-1073},
    {"half of the smallest goes to the even one", 2.0, -1075.0, 0.0},
    {"2 to 1023", 2.0, 1023.0, 0x1p1023},
    {"2 to 1024", 2.0, 1024.0, inf},
    {"-2 to 1025", -2.0, 1025.0, -inf},
    {"the smallest to -0.5", 5e-324, -0.5, 0x1p537},
    {"the smallest to 1", 5e-324, 1.0, 5e-324},
    {"below the normal ones, negative", -0x1p-1040, 1.0, -0x1p-1040},
    {"tiny exponent, base above 1", 2.0, 1e-30, 1.0},
    {"tiny exponent, base below 1", 0.5, 1e-30, 1.0},
    {"huge exponent, base above 1", 1.0000001, 1e19, inf},
    {"huge exponent, base below 1", 0.9999999, 1e19, 0.0},
    {"huge exponent below 0, base below 1", 0.9999999, -1e19, inf},
    {"negative base, huge exponent", -2.0, 1e300, inf},
    {"square root", 2.25, 0.5, 1.5},
};

TEST(ElementaryPowers, Rows) {
    for (const PowerRow& row : rows) {
        const double got = elementary::pow(row.x, row.y);
        EXPECT_TRUE(same_answer(got, row.expected)) << row.id << std::hexfloat << ": " << got;
    }
}

// A signalling NaN is an operand like others, even where any number would do.
TEST(ElementaryPowers, SignallingNaN) {
    const auto signalling = std::bit_cast<double>(std::uint64_t{0x7FF0000000000001});
    EXPECT_TRUE(std::isnan(elementary::pow(signalling, 0.0)));
    EXPECT_TRUE(std::isnan(elementary::pow(1.0, signalling)));
}

// The logarithm that powers of one base have in common makes no difference to any.
TEST(PowersOfOneBase, AreThoseOfPow) {
    for (const double x : edge_doubles) {
        const elementary::PowersOf powers{x};
        for (const double y : edge_doubles) {
            const double expected = elementary::pow(x, y);
            const double got = powers(y);
            EXPECT_TRUE(std::bit_cast<std::uint64_t>(got) == std::bit_cast<std::uint64_t>(expected) ||
                        (std::isnan(got) && std::isnan(expected)))
                << x << " to " << y;
        }
    }
}

TEST(PowersOfOneBase, InWholeNumbersToo) {
    for (const double x : edge_doubles) {
        if (!elementary::is_normal_positive(elementary::bits_of(x))) continue;
        const elementary::LongLogarithm l = elementary::without_instruction::long_log(x);
        for (const double y : edge_doubles) {
            if (!elementary::is_plain_power(y)) continue;
            EXPECT_EQ(elementary::without_instruction::pow_of_log(l, y), elementary::pow(x, y)) << x << " to " << y;
        }
    }
}

}  // namespace
}  // namespace finance::test
