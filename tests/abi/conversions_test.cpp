// Narrowings: total functions, expected values by hand from the two's complement and the range of each width.
#include "abi/conversions.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_63 = 9223372036854775808.0;
constexpr double below_two_to_63 = 9223372036854774784.0;

TEST(Conversions, DoubleTo64Bits) {
    struct Row {
        double x;
        std::int64_t expected;
    };
    const std::vector<Row> rows{
        {0.0, 0},
        {-0.0, 0},
        {0.9999999999999999, 0},
        {-0.9999999999999999, 0},
        {2.5, 2},
        {-2.5, -2},
        {5e-324, 0},
        {9007199254740993.0, 9007199254740992},
        {-1e16, -10000000000000000},
        {below_two_to_63, 9223372036854774784},
        {-below_two_to_63, -9223372036854774784},
        {two_to_63, INT64_MIN},
        {-two_to_63, INT64_MIN},
        {-9223372036854777856.0, INT64_MIN},
        {1e300, INT64_MIN},
        {-1e300, INT64_MIN},
        {inf, INT64_MIN},
        {-inf, INT64_MIN},
        {nan, INT64_MIN},
        {-nan, INT64_MIN},
    };
    for (const Row& row : rows) EXPECT_EQ(truncate_to_int64(row.x), row.expected) << row.x;
}

TEST(Conversions, DoubleTo32Bits) {
    struct Row {
        double x;
        std::int32_t expected;
    };
    const std::vector<Row> rows{
        {0.0, 0},
        {-0.0, 0},
        {-0.5, 0},
        {4.7, 4},
        {-4.7, -4},
        {2147483647.0, INT32_MAX},
        {2147483647.9999998, INT32_MAX},
        {two_to_31, INT32_MIN},
        {-two_to_31, INT32_MIN},
        {-2147483648.9999995, INT32_MIN},
        {-2147483649.0, INT32_MIN},
        {4294967296.0 + 3.0, INT32_MIN},
        {1e300, INT32_MIN},
        {inf, INT32_MIN},
        {-inf, INT32_MIN},
        {nan, INT32_MIN},
    };
    for (const Row& row : rows) EXPECT_EQ(truncate_to_int32(row.x), row.expected) << row.x;
}

// In range both are std::trunc.
TEST(Conversions, LikeTheLibraryInRange) {
    std::mt19937_64 draw{20240603};
    std::uniform_real_distribution<double> wide{-9.2e18, 9.2e18};
    std::uniform_real_distribution<double> narrow{-2147483648.0, 2147483647.0};
    for (int i = 0; i < 100000; ++i) {
        const double x = wide(draw);
        ASSERT_EQ(static_cast<double>(truncate_to_int64(x)), std::trunc(x));
        const double y = narrow(draw);
        ASSERT_EQ(static_cast<double>(truncate_to_int32(y)), std::trunc(y));
    }
}

TEST(Conversions, LowHalf) {
    struct Row {
        std::int64_t k;
        std::int32_t expected;
    };
    const std::vector<Row> rows{
        {0, 0},
        {-1, -1},
        {4294967296 + 3, 3},
        {4294967296, 0},
        {2147483648, INT32_MIN},
        {2147483647, INT32_MAX},
        {4294967295, -1},
        {-2147483648, INT32_MIN},
        {-2147483649, INT32_MAX},
        {-4294967296 + 7, 7},
        {INT64_MIN, 0},
        {INT64_MAX, -1},
        {0x123456789ABCDEF0, -1698898192},
    };
    for (const Row& row : rows) EXPECT_EQ(low_32_bits(row.k), row.expected) << row.k;
}

TEST(Conversions, WrappingArithmetic) {
    EXPECT_EQ(wrapping_add(std::int32_t{2}, std::int32_t{-5}), -3);
    EXPECT_EQ(wrapping_add(INT32_MAX, std::int32_t{1}), INT32_MIN);
    EXPECT_EQ(wrapping_add(INT32_MIN, std::int32_t{-1}), INT32_MAX);
    EXPECT_EQ(wrapping_add(INT32_MIN, INT32_MIN), 0);
    EXPECT_EQ(wrapping_add(std::int64_t{2}, std::int64_t{-5}), -3);
    EXPECT_EQ(wrapping_add(INT64_MAX, std::int64_t{1}), INT64_MIN);
    EXPECT_EQ(wrapping_add(INT64_MIN, std::int64_t{-1}), INT64_MAX);
    EXPECT_EQ(wrapping_multiply(-3, 7), -21);
    EXPECT_EQ(wrapping_multiply(INT64_MIN, -1), INT64_MIN);
    EXPECT_EQ(wrapping_multiply(INT64_MAX, 2), -2);
    EXPECT_EQ(wrapping_multiply(4294967296, 4294967296), 0);
    EXPECT_EQ(wrapping_multiply(3037000500, 3037000500), -9223372036709301616);
}

// No step is undefined: the same at compile time, where undefined arithmetic does not compile.
static_assert(low_32_bits(INT64_MIN) == 0);
static_assert(wrapping_add(INT32_MAX, std::int32_t{1}) == INT32_MIN);
static_assert(wrapping_add(INT64_MAX, std::int64_t{1}) == INT64_MIN);
static_assert(wrapping_multiply(INT64_MAX, 2) == -2);

}  // namespace
}  // namespace finance::test
