// Jumps over equal amounts against the loop that adds each of them.
#include "calendar/repeated_sum.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();

class Source {
public:
    explicit Source(std::uint64_t seed) : engine_{seed} {}
    std::int64_t whole(std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(high - low + 1));
    }
    // A number of at least 1 and below 2: any, or one of few bits at its end or at its beginning, where sums tie.
    double mantissa() {
        const std::uint64_t any = engine_() >> 12;
        std::uint64_t low = any;
        switch (whole(0, 4)) {
            case 0:
                low = any & 7;
                break;
            case 1:
                low = (any & 3) << whole(44, 50);
                break;
            case 2:
                low = ((std::uint64_t{1} << 52) - 1) ^ (any & 3);
                break;
            case 3:
                low = std::uint64_t{1} << whole(0, 51);
                break;
            default:
                break;
        }
        return std::bit_cast<double>((std::uint64_t{1023} << 52) | low);
    }
    double sign() { return whole(0, 1) == 0 ? 1.0 : -1.0; }

private:
    std::mt19937_64 engine_;
};

template <typename Cycle>
double by_loop(double sum, std::int64_t times, Cycle cycle) {
    for (std::int64_t i = 0; i < times; ++i) sum = cycle(sum);
    return sum;
}

auto cycle_of(const std::vector<double>& amounts) {
    return [&amounts](double sum) {
        for (const double x : amounts) sum = sum + x;
        return sum;
    };
}

void expect_same(double sum, std::int64_t times, const std::vector<double>& amounts) {
    const double got = repeat_sum(sum, times, cycle_of(amounts));
    const double walked = by_loop(sum, times, cycle_of(amounts));
    EXPECT_TRUE(same_value(got, walked)) << std::hexfloat << sum << ' ' << times << " times " << amounts[0] << " of "
                                         << amounts.size() << ": " << got << ", " << walked;
}

// Amounts around 2^exponent and of one sign; some of them 0.
std::vector<double> draw_amounts(Source& draw, std::size_t count, int exponent) {
    std::vector<double> amounts(count);
    const double sign = draw.sign();
    for (double& x : amounts) {
        const int spread = count == 1 ? 0 : static_cast<int>(draw.whole(-3, 3));
        x = draw.whole(0, 19) == 0 ? 0.0 : sign * std::ldexp(draw.mantissa(), exponent + spread);
    }
    return amounts;
}

// Amounts from far below the last bit of the sum to far above its first, in the same direction and against it.
TEST(RepeatedSum, RandomAmounts) {
    Source draw{1};
    for (const std::size_t count : {std::size_t{1}, std::size_t{2}, std::size_t{12}}) {
        for (int i = 0; i < drawn(20000); ++i) {
            const auto exponent = static_cast<int>(draw.whole(-1100, 1023));
            const double sum = draw.sign() * std::ldexp(draw.mantissa(), exponent);
            const auto lower = static_cast<int>(draw.whole(-4, 58));
            const auto times = static_cast<std::int64_t>(std::exp2(draw.whole(0, 12))) + draw.whole(0, 50);
            expect_same(sum, times, draw_amounts(draw, count, exponent - lower));
        }
    }
}

// Half units and quarter units at each end of a power of two, where what is even decides.
TEST(RepeatedSum, Ties) {
    int rows = 0;
    for (const double unit : {0x1p-52, 0x1p-1074, 0x1p-1022, 0x1p+400}) {
        for (const double from : {0x1p52, 0x1p52 + 1, 0x1p53 - 40, 0x1p53 - 41, 0x1.8p52, 0x1.8p52 + 1}) {
            for (const double units : {0.25, 0.5, 0.75, 1.0, 1.5, 2.5, 3.5, 7.25, 1e6 + 0.5, 1e9 + 1.5}) {
                for (const double sign : {1.0, -1.0}) {
                    for (const double turn : {1.0, -1.0}) {
                        const double x = sign * turn * units * unit;
                        expect_same(sign * from * unit, 1000 + rows % 7, {x});
                        expect_same(sign * from * unit, 1000 + rows % 7, {x, 3.0 * x});
                        ++rows;
                    }
                }
            }
        }
    }
    EXPECT_EQ(rows, 960);
}

TEST(RepeatedSum, MillionsOfTimes) {
    Source draw{2};
    for (int i = 0; i < drawn(24); ++i) {
        const auto exponent = static_cast<int>(draw.whole(-40, 40));
        const std::int64_t times = draw.whole(1'000'000, 6'000'000);
        const double begin = draw.whole(0, 2) == 0 ? 0.0 : draw.sign() * std::ldexp(draw.mantissa(), exponent + 20);
        expect_same(begin, times, draw_amounts(draw, 1, exponent));
        expect_same(begin, times / 12, draw_amounts(draw, 12, exponent));
    }
    expect_same(0.0, 5'000'000, {0.1});
    expect_same(0.0, 5'000'000, {1.0});
    expect_same(-100.0, 5'000'000, {1.0 / 30000.0});  // through 0
}

// Denormals, 0 of both signs, overflow, and what is no number.
TEST(RepeatedSum, EndsOfTheScale) {
    const std::vector<double> sums{0.0,        -0.0,      5e-324,   -5e-324,        1e-310,      -1e-310, 0x1p-1022,
                                   -0x1p-1022, largest,   -largest, 0.99 * largest, inf,         -inf,    1.0,
                                   -1.0,       0x1p-1021, 0x1p1000, -0x1p1000,      not_a_number};
    const std::vector<double> amounts{0.0,     -0.0,    5e-324, -5e-324,      1e-314,    3e-320,
                                      1e-312,  -1e-312, 1e292,  -1e292,       2e304,     -2e304,
                                      largest, inf,     -inf,   not_a_number, 0x1p-1023, -0x1p-1023};
    for (const double sum : sums) {
        for (const double x : amounts) {
            for (const std::int64_t times : {0, 1, 2, 3, 4, 5, 20, 3001}) {
                expect_same(sum, times, {x});
                expect_same(sum, times, {x, 0.0, x});
            }
        }
    }
}

// A sum that is watched stops where the loop stops, at any limit.
TEST(RepeatedSum, StopsAtALimit) {
    Source draw{3};
    int stopped = 0;
    for (int i = 0; i < drawn(20000); ++i) {
        const auto exponent = static_cast<int>(draw.whole(-30, 30));
        const double x = draw.sign() * std::ldexp(draw.mantissa(), exponent);
        const double begin = draw.whole(0, 3) == 0 ? 0.0 : draw.sign() * std::ldexp(draw.mantissa(), exponent + 9);
        const auto times = draw.whole(0, 6000);
        const double limit = begin + x * static_cast<double>(draw.whole(-10, 7000)) + 0.3 * x;
        const auto add = [&](double sum) { return sum + x; };
        const auto goes_on = [&](double sum) { return x > 0.0 ? !(sum + x > limit) : !(sum + x < limit); };
        const RepeatedSum got = repeat_while(begin, times, add, goes_on);
        double sum = begin;
        std::int64_t done = 0;
        for (; done < times && goes_on(sum); ++done) sum = sum + x;
        EXPECT_TRUE(same_value(got.sum, sum)) << begin << ' ' << x << ' ' << limit;
        EXPECT_EQ(got.times, done) << begin << ' ' << x << ' ' << limit;
        if (done < times) ++stopped;
    }
    EXPECT_GT(stopped, drawn(20000) / 20);
}

// 2^62 times, counted: what has come to rest is found after a few cycles for each power of two.
TEST(RepeatedSum, TakesFewSteps) {
    for (const double begin : {0.0, -1e5, 1.0}) {
        std::int64_t cycles = 0;
        const double sum = repeat_sum(begin, std::int64_t{1} << 62, [&](double s) {
            ++cycles;
            return s + 0.1;
        });
        EXPECT_EQ(sum, 0x1p50);  // the first with units of 0.25, of which 0.1 is less than half
        EXPECT_GT(cycles, 50);
        EXPECT_LT(cycles, 1000);
    }
    // ones up to 2^53 are exact
    const auto one = [](double s) { return s + 1.0; };
    EXPECT_EQ(repeat_sum(0.0, 1'234'567'890'123'456, one), 1'234'567'890'123'456.0);
    EXPECT_EQ(repeat_sum(-5e14, 1'234'567'890'123'456, one), 1'234'567'890'123'456.0 - 5e14);
    EXPECT_EQ(repeat_sum(0.0, std::int64_t{1} << 60, one), 0x1p53);
    const RepeatedSum stopped = repeat_while(0.0, std::int64_t{1} << 60, one, [](double s) { return s < 1e15 + 7; });
    EXPECT_EQ(stopped.sum, 1e15 + 7);
    EXPECT_EQ(stopped.times, 1'000'000'000'000'007);
}

}  // namespace
}  // namespace finance::test
