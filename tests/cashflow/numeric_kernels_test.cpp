// Numeric kernels: edges by hand, measured errors against MPFR at 200 bits.
#include "cashflow/numeric_kernels.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/call.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr int draws_a_range = 20000;

// Draws of one range, and the worst error allowed there: a little above what a million draws showed.
struct Range {
    const char* id;
    double low;
    double high;
    bool logarithmic;
    double sign;  // of the argument; 0: either
    double ulps;
};

double draw_from(const Range& range, Draws& draws) {
    const double size =
        range.logarithmic ? draws.log_between(range.low, range.high) : draws.between(range.low, range.high);
    return size * (range.sign != 0.0 ? range.sign : draws.sign());
}

template <typename Kernel, typename Reference>
void check_errors(const std::vector<Range>& ranges, std::uint64_t seed, Kernel kernel, Reference reference) {
    Draws draws{seed};
    for (const Range& range : ranges) {
        double worst = 0.0;
        double worst_at = 0.0;
        for (int i = 0; i < draws_a_range; ++i) {
            const double x = draw_from(range, draws);
            const double error = error_in_ulps(kernel(x), reference(Precise{x}));
            ASSERT_FALSE(std::isnan(error)) << range.id << ' ' << x;
            if (error > worst) {
                worst = error;
                worst_at = x;
            }
        }
        std::printf("%s: worst of %d draws %.2f ulp\n", range.id, draws_a_range, worst);
        EXPECT_LE(worst, range.ulps) << range.id << " at " << worst_at;
        EXPECT_GT(worst, 0.0) << range.id;
    }
}

// ---- e^x - 1

TEST(Expm1, Errors) {
    check_errors(
        {
            {"expm1, series, small", 1e-300, 0.01, true, 0, 2.4},
            {"expm1, series, large", 0.001, 0.01, false, 0, 2.4},
            {"expm1, 0.01 to 0.02", 0.01000001, 0.02, false, 0, 65},
            {"expm1, 0.02 to 0.1", 0.02, 0.1, false, 0, 33},
            {"expm1, 0.1 to 1", 0.1, 1.0, false, 0, 9},
            {"expm1, 1 to 709", 1.0, 709.0, false, 0, 1.1},
        },
        20240610, [](double x) { return zexpm1(x); }, [](const Precise& x) { return exponential_less_1(x); });
}

double expm1_error(double x) { return error_in_ulps(zexpm1(x), exponential_less_1(Precise{x})); }

// The series keeps the digits that the difference has lost: the error tells which one was taken.
TEST(Expm1, WhereTheSeriesEnds) {
    for (const double x : {0.01, -0.01}) {
        EXPECT_LT(expm1_error(x), 2.4) << "0.01 itself is the series'";
        EXPECT_NE(zexpm1(x), std::exp(x) - 1.0);
    }
    for (const double x : {0.010000001, -0.010000001, std::nextafter(0.01, 1.0), std::nextafter(-0.01, -1.0)}) {
        EXPECT_EQ(zexpm1(x), std::exp(x) - 1.0) << x;
        EXPECT_GT(expm1_error(x), 2.4) << x;
    }
}

TEST(Expm1, Edges) {
    EXPECT_EQ(bits(zexpm1(0.0)), bits(0.0));
    EXPECT_EQ(bits(zexpm1(-0.0)), bits(-0.0));
    EXPECT_EQ(zexpm1(5e-324), 5e-324);
    EXPECT_EQ(zexpm1(-1e-300), -1e-300);
    EXPECT_EQ(zexpm1(inf), inf);
    EXPECT_EQ(zexpm1(-inf), -1.0);
    EXPECT_EQ(zexpm1(710.0), inf);
    EXPECT_EQ(zexpm1(-800.0), -1.0);
    EXPECT_TRUE(std::isnan(zexpm1(nan)));
    EXPECT_TRUE(std::isfinite(zexpm1(std::nextafter(largest_exponent, 0.0))));
    EXPECT_EQ(zexpm1(std::nextafter(largest_exponent, 1000.0)), inf);
}

// ---- ln(1 + x)

TEST(Ln1p, Errors) {
    check_errors(
        {
            {"ln1p, rational, small", 1e-300, 0.03125, true, 0, 2.1},
            {"ln1p, rational, large", 0.001, 0.03125, false, 0, 2.1},
            {"ln1p, 2^-5 to 2^-4", 0.0312501, 0.0625, false, 0, 32},
            {"ln1p, 2^-4 to 0.5", 0.0625, 0.5, false, 0, 16.5},
            {"ln1p, 0.5 to 1", 0.5, 1.0, false, 0, 2},
            {"ln1p, 1 to 1e300", 1.0, 1e300, true, 1, 1.6},
        },
        20240611, [](double x) { return zln1px(x); }, [](const Precise& x) { return logarithm_of_1_and(x); });
}

// Close to -1 the sum 1 + x is exact.
TEST(Ln1p, ErrorsTowardsMinusOne) {
    check_errors(
        {{"ln1p, 1 + x from 1e-16 to 0.5", 1e-16, 0.5, true, 1, 0.6}}, 20240612,
        [](double gap) { return zln1px(-1.0 + std::abs(gap)); },
        [](const Precise& gap) { return logarithm_of_1_and(Precise{-1.0 + gap.rounded()}); });
}

// Bits on both sides of the bound: the rational form evaluated step by step in another language, and the logarithm.
TEST(Ln1p, WhereTheLogarithmBegins) {
    EXPECT_EQ(zln1px(0.03125), 0.03077165866675369) << "2^-5 itself is the rational form's";
    EXPECT_EQ(std::log(1.03125), 0.030771658666753687) << "where the logarithm has another last digit";
    EXPECT_EQ(zln1px(std::nextafter(0.03125, 1.0)), std::log(1.03125)) << "1 + x rounds to 1.03125";
    EXPECT_EQ(zln1px(-0.03125), -0.0317486983145803);
}

TEST(Ln1p, Edges) {
    EXPECT_EQ(zln1px(-1.0), -inf);
    EXPECT_TRUE(std::isnan(zln1px(-1.0000000000000002)));
    EXPECT_TRUE(std::isnan(zln1px(-inf)));
    EXPECT_TRUE(std::isnan(zln1px(nan)));
    EXPECT_EQ(zln1px(inf), inf);
    EXPECT_EQ(bits(zln1px(0.0)), bits(0.0));
    EXPECT_EQ(bits(zln1px(-0.0)), bits(-0.0));
    EXPECT_EQ(zln1px(1e-300), 1e-300);
    EXPECT_EQ(zln1px(-5e-324), -5e-324);
}

// ---- ln(e^a + e^b)

// Counted in units of the larger of result, greater argument and second part: where the two cancel, digits go.
TEST(LnSumOfExp, Errors) {
    Draws draws{20240613};
    const auto wide = [&](double& a, double& b) {
        a = draws.between(-700.0, 700.0);
        b = a + draws.between(-40.0, 40.0);
    };
    const auto near_zero = [&](double& a, double& b) {
        a = draws.between(-1.0, 1.0);
        b = a + draws.between(-2.0, 2.0);
    };
    const auto any_size = [&](double& a, double& b) {
        a = draws.sign() * draws.log_between(1e-8, 1e300);
        b = draws.sign() * draws.log_between(1e-8, 1e300);
    };
    const auto before_the_bound = [&](double& a, double& b) {
        a = draws.sign() * draws.log_between(1e-8, 0.1);
        b = a - draws.between(2.0, 4.0);
        if (draws.coin()) std::swap(a, b);
    };
    const auto worst_of = [&](const char* id, auto draw) {
        Worst worst;
        for (int i = 0; i < draws_a_range; ++i) {
            double a;
            double b;
            draw(a, b);
            const double larger = std::max(a, b);
            const Precise second_part = logarithm_of_1_and(exponential(Precise{std::min(a, b)} - larger));
            const Precise exact = second_part + larger;
            const double scale = std::max({std::abs(exact.rounded()), std::abs(larger), second_part.rounded()});
            worst.add(error_in_ulps(zlnSumOfExp(a, b), exact, scale));
        }
        std::printf("%s: worst of %d draws %.2f ulp\n", id, worst.count(), worst.error());
        return worst.error();
    };
    EXPECT_LE(worst_of("lnSumOfExp, wide", wide), 15);
    EXPECT_LE(worst_of("lnSumOfExp, near 0", near_zero), 6);
    EXPECT_LE(worst_of("lnSumOfExp, any size", any_size), 18);
    EXPECT_LE(worst_of("lnSumOfExp, ratio near 2^-5", before_the_bound), 36);
}

TEST(LnSumOfExp, EqualArgumentsAddTheLogarithmOf2) {
    for (const double x : {0.0, 1.0, -1.0, 0.1, -745.0, 1e-300, 1e300, -1e300, 709.0}) {
        EXPECT_EQ(bits(zlnSumOfExp(x, x)), bits(x + 0.6931471805599453)) << x;
    }
    EXPECT_EQ(zlnSumOfExp(0.0, -0.0), 0.6931471805599453);
    EXPECT_EQ(zlnSumOfExp(inf, inf), inf);
    EXPECT_EQ(zlnSumOfExp(-inf, -inf), -inf);
}

TEST(LnSumOfExp, Edges) {
    EXPECT_EQ(zlnSumOfExp(inf, 5.0), inf);
    EXPECT_EQ(zlnSumOfExp(5.0, inf), inf);
    EXPECT_EQ(zlnSumOfExp(-inf, 5.0), 5.0);
    EXPECT_EQ(zlnSumOfExp(5.0, -inf), 5.0);
    EXPECT_EQ(zlnSumOfExp(inf, -inf), inf);
    EXPECT_EQ(zlnSumOfExp(1e308, -1e308), 1e308);
    EXPECT_EQ(zlnSumOfExp(1000.0, 0.0), 1000.0) << "e^1000 itself overflows";
    for (const double x : {0.0, inf, -inf, nan}) {
        EXPECT_TRUE(std::isnan(zlnSumOfExp(nan, x))) << x;
        EXPECT_TRUE(std::isnan(zlnSumOfExp(x, nan))) << x;
    }
}

// ---- Reductions

TEST(Reductions, Rows) {
    struct Row {
        const char* id;
        std::vector<double> values;
        double sum;
        double largest;
    };
    const std::vector<Row> rows{
        {"one", {-3.0}, 3.0, 3.0},
        {"one -0", {-0.0}, 0.0, 0.0},
        {"signs do not count", {1.0, -5.0, 2.5}, 8.5, 5.0},
        {"largest first", {-7.0, 1.0, 2.0}, 10.0, 7.0},
        {"largest last", {1.0, 2.0, -7.0}, 10.0, 7.0},
        {"all equal", {2.0, -2.0, 2.0}, 6.0, 2.0},
        {"infinity", {1.0, -inf, 2.0}, inf, inf},
        {"one NaN", {nan}, nan, nan},
        {"NaN last", {1.0, 9.0, nan}, nan, nan},
        {"NaN gives way to what follows", {nan, 1.0, 9.0, 3.0}, nan, 9.0},
        {"NaN in the middle hides what came before", {9.0, nan, 1.0, 3.0}, nan, 3.0},
        {"NaN, then one smaller", {9.0, nan, 1.0}, nan, 1.0},
        {"two NaNs", {nan, nan, 4.0}, nan, 4.0},
    };
    for (const Row& row : rows) {
        const auto n = static_cast<std::int64_t>(row.values.size());
        EXPECT_TRUE(same_value(zvasum(row.values.data(), n), row.sum)) << row.id;
        EXPECT_TRUE(same_value(zvamx(row.values.data(), n), row.largest)) << row.id;
        EXPECT_EQ(bits(zvasum(row.values.data(), 0)), bits(0.0)) << row.id;
    }
    const std::vector<double> values{1.0, 2.0, 100.0};
    EXPECT_EQ(zvasum(values.data(), 2), 3.0) << "not beyond n";
    EXPECT_EQ(zvamx(values.data(), 2), 2.0);
}

TEST(Reductions, NothingIsReadWithoutACount) {
    for (const std::int64_t n : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) {
        EXPECT_EQ(bits(zvasum(nullptr, n)), bits(0.0));
        EXPECT_EQ(bits(zvamx(nullptr, n)), bits(0.0));
    }
}

// ---- The exported names are these kernels

TEST(ExportedKernels, SameBits) {
    Draws draws{20240615};
    for (int i = 0; i < 1000; ++i) {
        const double x = draws.sign() * draws.log_between(1e-6, 100.0);
        const double y = draws.between(-20.0, 20.0);
        const double values[] = {x, y, -1.0};
        ASSERT_EQ(bits(::zexpm1(x)), bits(finance::zexpm1(x)));
        ASSERT_TRUE(same_value(::zln1px(x), finance::zln1px(x)));
        ASSERT_EQ(bits(::zlnSumOfExp(x, y)), bits(finance::zlnSumOfExp(x, y)));
        ASSERT_EQ(bits(::zvasum(values, 3)), bits(finance::zvasum(values, 3)));
        ASSERT_EQ(bits(::zvamx(values, 3)), bits(finance::zvamx(values, 3)));
        std::int32_t status = 77;
        std::int32_t other_status = 78;
        ASSERT_TRUE(same_value(::zpower(&status, x, y), finance::zpower(&other_status, x, y)));
        ASSERT_EQ(status, other_status);
    }
}

}  // namespace
}  // namespace finance::test
