// x^y: edges by hand, measured errors against 200 bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "cashflow/numeric_kernels.hpp"
#include "tests/support/call.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_to_53 = 9007199254740992.0;

struct PowerRow {
    const char* id;
    double x;
    double y;
    std::int32_t status;
    double expected;  // of status 0; a failure gives the missing value
};

const std::vector<PowerRow> power_rows{
    {"0^0 fails", 0, 0, 3, 0},
    {"0^-0 fails", 0, -0.0, 3, 0},
    {"0^2", 0, 2, 0, 0.0},
    {"-0 squared", -0.0, 2, 0, 0.0},
    {"-0 cubed has no sign", -0.0, 3, 0, 0.0},
    {"0^0.5", 0, 0.5, 0, 0.0},
    {"0^infinity", 0, inf, 0, 0.0},
    {"0^-2", 0, -2, 3, 0},
    {"0^-infinity", 0, -inf, 3, 0},
    {"0^NaN", 0, nan, 3, 0},
    {"exponent 1", -5.5, 1, 0, -5.5},
    {"exponent 1 of infinity", -inf, 1, 0, -inf},
    {"exponent 1 of a NaN", nan, 1, 0, nan},
    {"exponent 1 of the smallest number", 5e-324, 1, 0, 5e-324},
    {"exponent 0", -5.5, 0, 0, 1.0},
    {"exponent -0", 7, -0.0, 0, 1.0},
    {"exponent 0 of infinity", inf, 0, 0, 1.0},
    {"exponent 0 of a NaN", nan, 0, 0, 1.0},
    {"cube root of -8", -8, 1.0 / 3.0, 2, 0},
    {"square root of -1", -1, 0.5, 2, 0},
    {"negative base, inverse of a fraction", -8, -2.5, 2, 0},
    {"-1 to 2^53: counts as not whole", -1, two_to_53, 2, 0},
    {"-1 to -2^53", -1, -two_to_53, 2, 0},
    {"-2 to 1e300", -2, 1e300, 2, 0},
    {"-2 to infinity", -2, inf, 2, 0},
    {"-2 to NaN", -2, nan, 2, 0},
    {"-1 to 2^53 - 1", -1, two_to_53 - 1, 0, -1.0},
    {"-1 to 2^53 - 2", -1, two_to_53 - 2, 0, 1.0},
    {"-1 to -3", -1, -3, 0, -1.0},
    {"-1 to -4", -1, -4, 0, 1.0},
    {"1 to 0.5", 1, 0.5, 0, 1.0},
    {"1 to infinity", 1, inf, 0, 1.0},
    {"1 to -infinity", 1, -inf, 0, 1.0},
    {"1 to NaN", 1, nan, 0, 1.0},
    {"-2 cubed", -2, 3, 0, -8.0},
    {"-2 to 4", -2, 4, 0, 16.0},
    {"-2 to -3", -2, -3, 0, -0.125},
    {"2 to -2", 2, -2, 0, 0.25},
    {"square root of 4", 4, 0.5, 0, 2.0},
    {"4 to -1.5", 4, -1.5, 0, 0.125},
    {"10^400", 10, 400, 1, 0},
    {"10^-400", 10, -400, 0, 0.0},
    {"(-10)^401", -10, 401, 1, 0},
    {"(-10)^-401 has no sign", -10, -401, 0, 0.0},
    {"0.1^400", 0.1, 400, 0, 0.0},
    {"0.1^-400", 0.1, -400, 1, 0},
    {"2^1023", 2, 1023, 0, 0x1p1023},
    {"2^1024", 2, 1024, 1, 0},
    {"2^-1021", 2, -1021, 0, 0x1p-1021},
    {"2^-1022 is too small already", 2, -1022, 0, 0.0},
    {"huge exponent, base above 1", 2, 1.4e154, 1, 0},
    {"huge negative exponent, base above 1", 2, -1.4e154, 0, 0.0},
    {"huge exponent, base below 1", 0.5, 1.4e154, 0, 0.0},
    {"huge negative exponent, base below 1", 0.5, -1.4e154, 1, 0},
    {"huge exponent, NaN base: not above 1", nan, 1.4e154, 0, 0.0},
    {"huge negative exponent, NaN base", nan, -1.4e154, 1, 0},
    {"just below huge", std::nextafter(1.0, 2.0), 1.3e154, 1, 0},
    {"2^infinity", 2, inf, 1, 0},
    {"2^-infinity", 2, -inf, 0, 0.0},
    {"infinity squared", inf, 2, 1, 0},
    {"infinity to -2", inf, -2, 0, 0.0},
    {"-infinity cubed", -inf, 3, 1, 0},
    {"-infinity to -3 has no sign", -inf, -3, 0, 0.0},
    {"NaN squared", nan, 2, 0, nan},
    {"2^NaN", 2, nan, 0, nan},
    // squared, not by the library: the last digits differ; squared step by step in another language
    {"1.3^5", 1.3, 5, 0, 3.712930000000001},
    {"(-1.3)^5", -1.3, 5, 0, -3.712930000000001},
    {"1.1^100", 1.1, 100, 0, 13780.612339822364},
    {"1.1^-100", 1.1, -100, 0, 7.256571590148151e-05},
    {"0.7^45", 0.7, 45, 0, 1.0700690442359768e-07},
    {"0.7^-45", 0.7, -45, 0, 9345191.372337982},
    {"1.0001^1000", 1.0001, 1000, 0, 1.105165392603197},
    {"2.7^70", 2.7, 70, 0, 1.56842404291316e+30},
    {"10^23", 10, 23, 0, 1e+23},
};

TEST(Power, Rows) {
    for (const PowerRow& row : power_rows) {
        std::int32_t status = 77;
        const double got = zpower(&status, row.x, row.y);
        EXPECT_EQ(status, row.status) << row.id;
        if (row.status != 0) {
            EXPECT_EQ(bits(got), ZELKOVAN_MISSING_VALUE_BITS) << row.id;
        } else {
            EXPECT_TRUE(same_value(got, row.expected)) << row.id << ": " << got;
        }
    }
}

// From e^72.09 on the library's pow takes over, whole exponent or not.
TEST(Power, WhereSquaringEnds) {
    int differs_below = 0;
    for (int k = 2; k <= 250; ++k) {
        std::int32_t status = 77;
        const double got = zpower(&status, 1.7, k);
        ASSERT_EQ(status, 0);
        const bool far = k * std::log(1.7) > 72.1;
        if (far) {
            EXPECT_EQ(bits(got), bits(std::pow(1.7, k))) << k;
        } else if (bits(got) != bits(std::pow(1.7, k))) {
            ++differs_below;
        }
    }
    EXPECT_GT(differs_below, 30);
}

// Squaring lets the rounding of each step grow with the steps after it: the error is counted per unit of the exponent.
TEST(Power, Errors) {
    Draws draws{20240614};
    Worst squared;
    Worst by_library;
    for (int i = 0; i < 60000; ++i) {
        const double spread = i % 3 == 0 ? 1e-3 : i % 3 == 1 ? 1.0 : 200.0;
        const double base = std::exp(draws.between(-spread, spread));
        const double size = std::abs(std::log(base));
        if (size == 0.0) continue;
        const bool whole = i % 2 == 0;
        const double limit = std::min((whole ? 71.9 : 700.0) / size, 4e15);
        const double y = whole ? draws.sign() * std::floor(draws.log_between(2.0, std::max(limit, 2.5)))
                               : draws.sign() * draws.log_between(1e-3, limit);
        const double x = whole && draws.coin() ? -base : base;
        std::int32_t status = 77;
        const double got = zpower(&status, x, y);
        const double logarithm = std::abs(y) * size;
        if (status != 0 || got == 0.0) continue;               // a base too far from 1 for any square
        if (logarithm > 72.08 && logarithm < 72.09) continue;  // either way
        const double error = error_in_ulps(got, power(Precise{x}, Precise{y}));
        if (y == std::trunc(y) && logarithm < 72.08) {
            squared.add(error / std::abs(y));
        } else {
            by_library.add(error);
        }
    }
    std::printf("power: %d squared, worst %.3f ulp per unit of the exponent; %d by the library, worst %.3f ulp\n",
                squared.count(), squared.error(), by_library.count(), by_library.error());
    EXPECT_EQ(squared.count(), 21821);
    EXPECT_EQ(by_library.count(), 38178);
    EXPECT_LE(squared.error(), 0.95);
    EXPECT_LE(by_library.error(), 0.6);
}

}  // namespace
}  // namespace finance::test
