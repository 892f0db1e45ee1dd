// Sums of discounted flows beside the literal loops that they stand for, in every set of instructions, bit for bit.
#include "cashflow/discounting.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "abi/conversions.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Literal {
    double value;
    double derivative;
    double largest;
};

Literal literally(const DatedFlows<std::int64_t>& flows, double x) {
    const double q = 1.0 / (x + 1.0);
    Literal sums{flows.values[0], 0.0, std::abs(flows.values[0])};
    for (std::int64_t i = 1; i < flows.count; ++i) {
        const double t = static_cast<double>(wrapping_add(flows.days[i], wrapping_multiply(-1, flows.days[0]))) / 365.0;
        const double p = elementary::pow(q, t) * flows.values[i];
        sums.derivative = sums.derivative + (0.0 - t * q) * p;
        sums.value = sums.value + p;
        sums.largest = std::max(std::abs(p), sums.largest);
    }
    return sums;
}

bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

std::vector<const Discounting*> all_instructions() {
    if (elementary::has_wide_lanes) return {&discounting_sse2, &discounting_avx2};
    return {&discounting_sse2};
}

void expect_sides(const NewtonProblem& got, const Literal& expected, double x) {
    EXPECT_TRUE(same(got.value, expected.value)) << x;
    EXPECT_TRUE(same(got.derivative, expected.derivative)) << x;
    // Of a flow that is no number nothing asks how large it is.
    if (!std::isnan(expected.value)) {
        EXPECT_TRUE(same(got.residualScale, expected.largest)) << x;
    }
}

// As Julian days, and as days of a list where those are usual.
void expect_as_literally(const std::vector<double>& values, const std::vector<std::int64_t>& days, double x) {
    const DatedFlows<std::int64_t> flows{values.data(), days.data(), static_cast<std::int64_t>(values.size())};
    const std::vector<double> days_of_list(days.begin(), days.end());
    const DatedFlows<double> list{values.data(), days_of_list.data(), flows.count};
    const Literal expected = literally(flows, x);
    for (const Discounting* with : all_instructions()) {
        const double q = 1.0 / (x + 1.0);
        NewtonProblem problem{};
        problem.x = x;
        EXPECT_TRUE(same(with->value(flows, q), expected.value)) << x;
        with->sides(flows, problem);
        expect_sides(problem, expected, x);
        if (!with->is_usual(list)) continue;
        EXPECT_TRUE(same(with->value_of_list(list, q), expected.value)) << x;
        with->sides_of_list(list, problem);
        expect_sides(problem, expected, x);
    }
}

constexpr double rates[] = {0.0,  0.1,        0.07,         1e-9, -1e-9, 1e-16, 3.0, 1e6,  1e300, 1e308,
                            -0.5, -0.9999999, -1 + 0x1p-53, -1.0, -1.5,  -2.0,  inf, -inf, nan};

TEST(Discounting, RandomFlowsOfAllCounts) {
    std::mt19937_64 random{5};
    for (std::size_t count = 1; count <= 40; ++count) {
        std::vector<double> values(count);
        std::vector<std::int64_t> days(count);
        for (double& value : values) value = static_cast<double>(random() % 2000001) / 100.0 - 10000.0;
        for (std::int64_t& day : days) day = 17000 + static_cast<std::int64_t>(random() % 12000);
        for (const double x : rates) expect_as_literally(values, days, x);
    }
}

TEST(Discounting, DaysFarOutAndTheSameDay) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    const std::vector<std::int64_t> days{2451545, 2451545, 2451545 + 36500, 2451545 - 36500, 9007199254740992,
                                         lowest,  0,       2451546,         2451545,         2000000000,
                                         5};
    const std::vector<double> values{1.0, -2.0, 3.0, 0.0, 1e300, -1e-300, inf, 8.0, -9.0, -0.0, 11.0};
    for (const double x : rates) expect_as_literally(values, days, x);
    // The far days first: everything is counted from there.
    std::vector<std::int64_t> from_far = days;
    std::ranges::reverse(from_far);
    for (const double x : rates) expect_as_literally(values, from_far, x);
    std::rotate(from_far.begin(), from_far.begin() + 5, from_far.end());
    for (const double x : rates) expect_as_literally(values, from_far, x);
}

TEST(Discounting, ListsThatAreUsual) {
    for (std::size_t count = 1; count <= 9; ++count) {
        for (std::size_t at = 0; at < count; ++at) {
            const auto is_usual = [&](double value, double day) {
                std::vector<double> values(count, 1.0);
                std::vector<double> days(count, 17000.0);
                values[at] = value;
                days[at] = day;
                const DatedFlows<double> list{values.data(), days.data(), static_cast<std::int64_t>(count)};
                std::vector<bool> answers;
                for (const Discounting* with : all_instructions()) answers.push_back(with->is_usual(list));
                EXPECT_EQ(std::ranges::count(answers, answers[0]), std::ssize(answers));
                return static_cast<bool>(answers[0]);
            };
            EXPECT_TRUE(is_usual(inf, -1.0));
            EXPECT_TRUE(is_usual(0.0, 2147483647.0));
            EXPECT_FALSE(is_usual(nan, 1.0));
            EXPECT_FALSE(is_usual(1.0, nan));
            EXPECT_FALSE(is_usual(1.0, 0.5));
            EXPECT_FALSE(is_usual(1.0, 2147483648.0));
            EXPECT_FALSE(is_usual(1.0, -2147483648.0));
            EXPECT_FALSE(is_usual(1.0, inf));
        }
    }
}

}  // namespace
}  // namespace finance::test
