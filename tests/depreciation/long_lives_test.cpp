// Lives of up to 2^31 - 1 periods.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "depreciation/prorated.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/depreciation/literal_walks.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double n = 2147483647.0;
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_handler();
    EXPECT_EQ(got.status, STATUS_SUCCESS) << name;
    return got.value;
}

// Long alternations: q is 2, and above 1 where the first period takes all.
TEST(LongLives, DoubleDecliningAlternates) {
    check_values({
        {"DDB/q 2, even period", "DDB", {100, -1000, 2e7, 2e7, 4e7}, -200.0, "100, -100, 100, .. is left"},
        {"DDB/q 2, odd period", "DDB", {100, -1000, 2e7, 19999999, 4e7}, 200.0, "100, -100, 100, .. is left"},
        {"DDB/q 4, all at once", "DDB", {100, -50, 2e7, 2e7, 8e7}, -200.0, "-50, 150, -50, .. is left"},
        {"DDB/q 4, all at once, odd", "DDB", {100, -50, 2e7, 19999999, 8e7}, 200.0, "-50, 150, -50, .. is left"},
        {"DDB/q just below 2",
         "DDB",
         {100, -1000, 2e8, 2e8, 4e8 - 1},
         -200.0 * std::exp(-1.0),
         "(1-q)^n, q = 2 - 1/n",
         1e3},
        {"DDB/q just below 2, all at once",
         "DDB",
         {100, -50, 2e8, 2e8, 4e8 - 1},
         -50.0 * (2.0 - 5e-9) * std::exp((2e8 - 2.0) * std::log1p(-5e-9)),
         "-50 is left after one period, (1-q)^(n-2) of it before the last, q = 2 - 1/n",
         1e3},
    });
}

// One rounding an operation, and no walk at all.
const std::vector<ValueCase> values{
    {"SLN/2^31 - 1", "SLN", {n, 0, n}, 1.0, "by hand"},
    {"SYD/first of 2^31 - 1", "SYD", {(n + 1.0) / 2.0, 0, n, 1}, 1.0, "n / (n (n + 1) / 2)", 2},
    {"SYD/last of 2^31 - 1", "SYD", {n, 0, n, n}, 0x1p-30, "n * 1 / (n (n + 1) / 2)", 2},
    {"DB/2^31 - 1, the rate rounds to 0", "DB", {1e6, 1e-300, n, n}, 0.0, "by hand"},
    {"DB/2^31 - 1, salvage 0", "DB", {1e6, 0, n, n + 1.0, 5}, 0.0, "all is gone after period 2"},
    {"DB/2^52, salvage 0", "DB", {1e6, 0, 0x1p52, 0x1p52, 5}, 0.0, "all is gone after period 2"},
    {"DDB/salvage above cost", "DDB", {1, 2, n, n}, 0.0, "by hand"},
    {"VDB/whole life", "VDB", {5, 2, n, 0, n, 1e-9, 0}, 3.0, "by hand"},
    {"VDB/salvage above cost, switch: in each period",
     "VDB",
     {4, 6, n, 7, n, 2, 0},
     -2.0 * (n - 7.0),
     "n - 7 times -2"},
    {"VDB/negative cost, q 1", "VDB", {-1, -2, n, 0, n - 1.0, n, 1}, -1.0, "all in the first period"},
    {"VDB/infinite cost", "VDB", {inf, 5, n, 2e7, 3e7}, not_a_number, "infinite less infinite"},
    {"VDB/infinite cost, switch", "VDB", {-inf, 5, n, 5, 3e7, 2, 0}, not_a_number, "infinite less infinite"},
    {"VDB/infinite salvage, switch", "VDB", {1, inf, n, 2e7, 1.5e7, 2, 0}, 0.0, "nothing counts"},
    {"VDB/infinite room, switch", "VDB", {1, -inf, n, 2e7, 3e7, 2, 0}, inf, "a straight line to infinity"},
    {"VDB/infinite factor, then nothing", "VDB", {1, 0, n, 2e7, 3e7, inf, 0}, 0.0, "all in the first period"},
    {"VDB/no cost, factor beyond the life", "VDB", {0, 0, n, 2e7, 3e7, 1e11}, 0.0, "nothing to take"},
    {"VDB/negative cost, straight line",
     "VDB",
     {-100, -228, 0x1p25, 0x1p23, 0x1.8p24, 2, 0},
     64.0,
     "half the life, half of 128"},
    {"VDB/q 2 and room below salvage, odd end", "VDB", {1, -100, 2e7, 0, 10000001, 4e7}, 2.0, "2 - 2 + 2 ..."},
    {"VDB/q 2 and room below salvage, even end", "VDB", {1, -100, 2e7, 0, 10000002, 4e7}, 0.0, "2 - 2 + 2 - 2 ..."},
};

TEST(LongLives, Values) { check_values(values); }

TEST(LongLives, LinearPeriods) {
    const double begin = host_date(2009, 1, 1);
    const double cost = n;
    const double rate = 1.0 / n;
    const auto amount = [&](double period) {
        return value_of("AMORLINC", {cost, begin, begin + 73, 0, period, rate, 3});
    };
    EXPECT_NEAR(amount(0), 0.2, 1e-12);
    EXPECT_NEAR(amount(1e9), 1.0, 1e-12);
    EXPECT_NEAR(amount(n), 0.8, 1e-12 * cost);  // the rest of the first period
}

// ---- Degressive: whole units

// Ten thousand runs in a billion periods: the bits of a walk by runs, made here of the exact ends of each.
TEST(LongLives, DegressiveRunsAreExact) {
    const auto life = static_cast<std::int32_t>(n);
    const double r = 2.5 / n;
    double left = 1e13;
    std::int64_t done = 0;
    double d = 0.0;
    constexpr std::int64_t periods = 1'500'000'000;
    while (done < periods) {
        d = whole_units(left * r);
        if (d == 0.0) break;
        // the largest count of periods whose last one still takes d, by bisection of the rule itself
        std::int64_t low = 1;
        std::int64_t high = periods - done;
        while (low < high) {
            const std::int64_t mid = low + (high - low + 1) / 2;
            const bool same = whole_units((left - static_cast<double>(mid - 1) * d) * r) == d;
            (same ? low : high) = same ? mid : mid - 1;
        }
        left -= static_cast<double>(low) * d;
        done += low;
    }
    EXPECT_EQ(degressive_amount(1e13, 0.0, r, life, periods), d);
    EXPECT_GT(d, 1000.0);
}

// Amounts that change in every period: within one unit of the walk.
TEST(LongLives, DegressiveWithoutRunsIsWithinAUnit) {
    const std::int32_t life = drawn(400) == 400 ? 40'000'000 : 12'000'000;
    const double r = 2.5 / life;
    for (const double left : {3e16, 2.9e16, 1e16, 4e15}) {
        const std::int32_t periods = life - 1000;
        EXPECT_NEAR(degressive_amount(left, 0.0, r, life, periods), literal_degressive(left, 0.0, r, life, periods),
                    1.0)
            << left;
    }
    // amounts beyond 32 bits, then the last two periods
    for (const double left : {1e18, 3e16}) {
        for (std::int32_t last = 0; last < 2; ++last) {
            EXPECT_EQ(degressive_amount(left, 0.0, r, life, life - last), -2147483648.0) << left << ' ' << last;
        }
    }
    EXPECT_EQ(degressive_amount(1e16, 1e16, r, life, life), 0.0);  // salvage stops it in the second period
}

}  // namespace
}  // namespace finance::test
