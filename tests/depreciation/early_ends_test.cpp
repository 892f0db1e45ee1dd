// Walks that end early, and runs that are passed over at once, give the bits of the walk period by period.
#include <gtest/gtest.h>

#include <limits>

#include "cashflow/numeric_kernels.hpp"
#include "depreciation/prorated.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/depreciation/literal_walks.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double longest = 2e6;
constexpr int shapes = drawn(300);

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_handler();
    EXPECT_EQ(got.status, STATUS_SUCCESS) << name;
    return got.value;
}

// What no draw above meets: no end, no size, no room.
const std::vector<double> extremes{inf, -inf, 1e308, -1e308, 5e-324, -5e-324, 1e-300, 0.0, -0.0, 100.0, -100.0};

double extreme(Draws& draw) {
    return extremes[static_cast<std::size_t>(draw.whole(0, static_cast<std::int64_t>(extremes.size()) - 1))];
}

double extreme_factor(Draws& draw) {
    constexpr double factors[] = {5e-324, 1e-300, 1e-9, 1.0, 2.0, 1e9, 1e300, inf};
    return factors[draw.whole(0, 7)];
}

void expect_same_declining(double cost, double salvage, double life, double factor, DrawnSpan span) {
    const DecliningAsset a{cost, cost - salvage, life, factor};
    const bool whole_life = life == static_cast<double>(span.e - span.s);
    for (const int flag : {0, 1}) {
        const double got = value_of("VDB", {cost, salvage, life, span.s, span.e, factor, flag});
        const double walked = whole_life  ? a.depreciable
                              : flag == 1 ? literal_declining<double>(a, span.s, span.e)
                                          : literal_switching<double>(a, span.s, span.e);
        EXPECT_TRUE(same_value(got, walked)) << "VDB " << cost << ' ' << salvage << ' ' << life << ' ' << span.s << ' '
                                             << span.e << ' ' << factor << ' ' << flag << ": " << got << ", " << walked;
    }
    const double got = value_of("DDB", {cost, salvage, life, span.e, factor});
    const auto walked = literal_double<double>(cost, salvage, life, factor, span.e);
    EXPECT_TRUE(same_value(got, walked)) << "DDB " << cost << ' ' << salvage << ' ' << life << ' ' << span.e << ' '
                                         << factor << ": " << got << ", " << walked;
}

TEST(EarlyEnds, DecliningBalances) {
    Draws draw{11};
    for (int i = 0; i < shapes; ++i) {
        const double life = draw_life(draw, longest);
        const double cost = draw_cost(draw);
        const double salvage = draw_salvage(draw, cost);
        const double factor = draw_factor(draw, life);
        expect_same_declining(cost, salvage, life, factor, draw_span(draw, life));
    }
}

TEST(EarlyEnds, ExtremeDecliningBalances) {
    Draws draw{12};
    for (int i = 0; i < shapes; ++i) {
        const double life = draw_life(draw, 3000.0);
        const double cost = extreme(draw);
        const double salvage = extreme(draw);
        const double factor = extreme_factor(draw);
        expect_same_declining(cost, salvage, life, factor, draw_span(draw, life));
        expect_same_declining(cost, salvage, draw.whole(0, 1) == 0 ? inf : 1e300, factor, draw_span(draw, life));
    }
}

// The longest walks that are taken period by period: ten million. Of the degressive method whole units alone are seen,
// and whether salvage is above what is left before the last period, to the unit.
TEST(EarlyEnds, TenMillionPeriodsAreLiteral) {
    constexpr std::int32_t most = 10'000'000;
    expect_same_declining(1e6, 10.0, 2e7, 2.0, {0, most});
    constexpr double begin = 4e15;
    constexpr double r = 5e-7;
    double left = begin;
    for (std::int32_t i = 1; i < most; ++i) left = left - whole_units(left * r);
    EXPECT_EQ(degressive_amount(begin, left, r, most + 2, most), whole_units(left * r));
    EXPECT_EQ(degressive_amount(begin, left + 1.0, r, most + 2, most), 0.0);
}

// Rates from a fast decline to one that grows without end.
TEST(EarlyEnds, FixedDecliningBalance) {
    Draws draw{13};
    for (int i = 0; i < shapes; ++i) {
        const auto L = static_cast<std::int64_t>(draw.log_between(1.0, longest));
        const std::int64_t p = draw.whole(0, 2) == 0 ? L + 1 : draw.whole(1, L);
        const auto m = static_cast<double>(draw.whole(0, 3) == 0 ? draw.whole(1, 2147483647) : draw.whole(1, 12));
        const bool wild = draw.whole(0, 3) == 0;
        const double cost = wild ? extreme(draw) : draw_cost(draw);
        const double salvage =
            wild ? extreme(draw) : cost * std::exp(draw.between(-0.01, 0.01) * std::min(static_cast<double>(L), 7e4));
        const double rate0 = -zexpm1(std::log(salvage / cost) / static_cast<double>(L));
        const double rate = whole_units(rate0 * 1000.0) / 1000.0;
        const double got = value_of("DB", {cost, salvage, static_cast<double>(L), static_cast<double>(p), m});
        const double walked = literal_fixed(cost, rate, m, L, p);
        EXPECT_TRUE(same_value(got, walked)) << cost << ' ' << salvage << ' ' << L << ' ' << p << ' ' << m << " rate "
                                             << rate << ": " << got << ", " << walked;
    }
}

// What is left from less than a unit to more than all that 53 bits hold; whole, and with a fraction.
TEST(EarlyEnds, DegressiveRuns) {
    Draws draw{14};
    for (int i = 0; i < 10 * shapes; ++i) {
        const double L = draw_life(draw, draw.whole(0, 9) == 0 ? longest : 3e4) + 3.0;
        const auto n = static_cast<std::int32_t>(L);
        const double r = (L <= 4.0 ? 1.5 : L <= 6.0 ? 2.0 : 2.5) / L;
        double left = draw.log_between(0.3, draw.whole(0, 1) == 0 ? 1e5 : 1e18);
        if (draw.whole(0, 1) == 0) left = std::floor(left);
        if (draw.whole(0, 9) == 0) left = extreme(draw);
        const double salvage = draw.whole(0, 2) == 0 ? 0.0 : std::abs(left) * draw.between(0.0, 1.1);
        const auto periods = static_cast<std::int32_t>(draw.whole(0, 2) == 0 ? n - draw.whole(0, 2) : draw.whole(1, n));
        const double got = degressive_amount(left, salvage, r, n, periods);
        const double walked = literal_degressive(left, salvage, r, n, periods);
        EXPECT_TRUE(same_value(got, walked)) << "left " << left << " salvage " << salvage << " r " << r << " n " << n
                                             << " periods " << periods << ": " << got << ", " << walked;
    }
}

}  // namespace
}  // namespace finance::test
