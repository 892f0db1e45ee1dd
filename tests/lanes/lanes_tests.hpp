// Tests of lanes, for each set of instructions: a lane has the bits of one number alone. Each file that includes this says
// which lanes they are, whether its instructions can_run, and names its tests.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <string>

#include "lanes/elementary.hpp"
#include "lanes/instruction_set.hpp"
#include "lanes/rows.hpp"
#include "tests/elementary/doubles.hpp"

namespace finance::test {
namespace {

using Set = LANES_UNDER_TEST;
using N = Lanes<Set>;
using Several = std::array<double, static_cast<std::size_t>(Set::width)>;

N lanes_of(const Several& values) { return N::load(values.data()); }

Several values_of(N lanes) {
    Several values;
    lanes.store(values.data());
    return values;
}

bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

// f of lanes is f of each.
template <typename OfLanes, typename OfOne>
void expect_each(const char* what, const Several& x, const Several& y, OfLanes of_lanes, OfOne of_one) {
    const Several got = values_of(of_lanes(lanes_of(x), lanes_of(y)));
    for (std::size_t i = 0; i < x.size(); ++i) {
        EXPECT_TRUE(same(got[i], of_one(x[i], y[i]))) << what << " of " << x[i] << " and " << y[i] << " is " << got[i];
    }
}

// Numbers of every kind, and pairs of them in every lane.
constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr std::array kinds{0.0,    -0.0,       1.0,       -1.0,         0.5,    1.0 / 3.0, 2.0,
                           1e-310, -0x1p-1074, 0x1p-54,   0x1p-55,      511.9,  512.0,     -745.2,
                           1e300,  infinite,   -infinite, not_a_number, 709.78, 0.9375,    1.0646};

template <typename Check>
void for_all_pairs(Check check) {
    for (const double x : kinds) {
        for (const double y : kinds) {
            Several xs;
            Several ys;
            xs.fill(1.25);
            ys.fill(0.75);
            for (std::size_t i = 0; i < xs.size(); ++i) {
                xs[i] = x;
                ys[i] = y;
                check(xs, ys);
            }
        }
    }
}

void test_arithmetic() {
    for_all_pairs([](const Several& x, const Several& y) {
        expect_each(
            "sum", x, y, [](N a, N b) { return a + b; }, [](double a, double b) { return a + b; });
        expect_each(
            "difference", x, y, [](N a, N b) { return a - b; }, [](double a, double b) { return a - b; });
        expect_each(
            "product", x, y, [](N a, N b) { return a * b; }, [](double a, double b) { return a * b; });
        expect_each(
            "quotient", x, y, [](N a, N b) { return a / b; }, [](double a, double b) { return a / b; });
        expect_each(
            "opposite", x, y, [](N a, N) { return -a; }, [](double a, double) { return -a; });
        expect_each(
            "size", x, y, [](N a, N) { return abs(a); }, [](double a, double) { return std::abs(a); });
        expect_each(
            "root", x, y, [](N a, N) { return sqrt(a); }, [](double a, double) { return std::sqrt(a); });
        expect_each(
            "<", x, y, [](N a, N b) { return select(a < b, a, b); }, [](double a, double b) { return a < b ? a : b; });
        expect_each(
            "<=", x, y, [](N a, N b) { return select(a <= b, a, b); },
            [](double a, double b) { return a <= b ? a : b; });
        expect_each(
            ">", x, y, [](N a, N b) { return select(a > b, a, b); }, [](double a, double b) { return a > b ? a : b; });
        expect_each(
            ">=", x, y, [](N a, N b) { return select(a >= b, a, b); },
            [](double a, double b) { return a >= b ? a : b; });
        expect_each(
            "==", x, y, [](N a, N b) { return select(a == b, a, N{7.0}); },
            [](double a, double b) { return a == b ? a : 7.0; });
        expect_each(
            "!=", x, y, [](N a, N b) { return select(a != b, a, N{7.0}); },
            [](double a, double b) { return a != b ? a : 7.0; });
    });
}

// A side that no lane takes is not formed.
void test_choices() {
    for (unsigned lanes = 0; lanes <= Set::all_lanes; ++lanes) {
        const auto truth = LaneTruth<Set>::of_lanes(lanes);
        EXPECT_EQ(truth.lanes(), lanes);
        EXPECT_EQ((!truth).lanes(), Set::all_lanes & ~lanes);
        EXPECT_EQ(any(truth), lanes != 0);
        EXPECT_EQ(all(truth), lanes == Set::all_lanes);
        int yes = 0;
        int no = 0;
        const Several chosen = values_of(choose(
            truth,
            [&] {
                ++yes;
                return N{1.0};
            },
            [&] {
                ++no;
                return N{2.0};
            }));
        EXPECT_EQ(yes, lanes != 0 ? 1 : 0);
        EXPECT_EQ(no, lanes != Set::all_lanes ? 1 : 0);
        for (std::size_t i = 0; i < chosen.size(); ++i) EXPECT_EQ(chosen[i], (lanes >> i & 1) != 0 ? 1.0 : 2.0);
    }
}

void test_truncation() {
    for (const double x : {0.0, 0.5, -0.5, 1.999, -1.999, 2147483646.5, -2147483647.5, 3.0}) {
        EXPECT_EQ(values_of(truncated(N{x}))[0], std::trunc(x)) << x;
    }
}

void test_functions() {
    for_all_pairs([](const Several& x, const Several& y) {
        expect_each(
            "exp", x, y, [](N a, N) { return elementary::exp(a); },
            [](double a, double) { return elementary::exp(a); });
        expect_each(
            "log", x, y, [](N a, N) { return elementary::log(a); },
            [](double a, double) { return elementary::log(a); });
        expect_each(
            "pow", x, y, [](N a, N b) { return elementary::pow(a, b); },
            [](double a, double b) { return elementary::pow(a, b); });
    });
    DoubleDraws draws{1};
    for (int draw = 0; draw < 200'000; ++draw) {
        Several x;
        Several z;
        Several base;
        Several power;
        for (std::size_t i = 0; i < x.size(); ++i) {
            x[i] = draws.exponent();
            z[i] = draws.number();
            const auto [b, p] = draws.power();
            base[i] = b;
            power[i] = p;
        }
        expect_each(
            "exp", x, x, [](N a, N) { return elementary::exp(a); },
            [](double a, double) { return elementary::exp(a); });
        expect_each(
            "log", z, z, [](N a, N) { return elementary::log(a); },
            [](double a, double) { return elementary::log(a); });
        expect_each(
            "pow", base, power, [](N a, N b) { return elementary::pow(a, b); },
            [](double a, double b) { return elementary::pow(a, b); });
    }
}

}  // namespace
}  // namespace finance::test

#define LANES_TEST(suite, name, body)                                                                     \
    TEST(suite, name) {                                                                                   \
        if (!finance::test::can_run()) GTEST_SKIP() << "this processor has not what these lanes are for"; \
        finance::test::body();                                                                            \
    }
#define LANES_TESTS(suite)                         \
    LANES_TEST(suite, Arithmetic, test_arithmetic) \
    LANES_TEST(suite, Choices, test_choices)       \
    LANES_TEST(suite, Truncation, test_truncation) \
    LANES_TEST(suite, Functions, test_functions)
