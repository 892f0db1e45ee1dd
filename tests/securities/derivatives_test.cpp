// Slopes: the objectives' derivatives and the duration against differences of prices at 200 bits.
#include <gtest/gtest.h>

#include <cstdio>

#include "securities/kernels.hpp"
#include "tests/securities/bonds.hpp"

namespace finance::test {
namespace {

constexpr int draws = 10000;

// ComputeF_YIELD at a bond with N coupons, the first after d of a period.
TEST(Derivatives, YieldObjective) {
    Draws draw{51};
    Worst value;
    Worst derivative;
    while (value.count() < draws) {
        Security bond;
        draw_regular_bond(draw, bond);
        SecurityComputeRecord& record = bond.record;
        const double x = draw.between(-0.3, 1.0);
        ASSERT_EQ(zComputePRICE(&record), 0);  // leaves the counts
        if (record.couponCount == 1.0) continue;
        record.price = draw.between(20.0, 300.0);
        NewtonProblem problem{};
        problem.userData = &record;
        problem.x = x;
        ASSERT_EQ(ComputeF_YIELD(&problem), 0U);
        EXPECT_EQ(record.yield, x);
        const PreciseAmount exact = regular_price(record, x);
        value.add(error_in_ulps(problem.value, exact.value - record.price, exact.size + record.price));
        const Precise exact_slope = slope([&](const Precise& y) { return regular_price(record, y).value; }, x);
        derivative.add(error_in_ulps(problem.derivative, exact_slope));
    }
    std::printf("    F of YIELD: %.3g ulp, F': %.3g ulp worst of %d draws\n", value.error(), derivative.error(),
                value.count());
    EXPECT_LE(value.error(), 500.0);
    EXPECT_LE(derivative.error(), 500.0);
}

TEST(Derivatives, OddFirstYieldObjective) {
    Draws draw{52};
    Worst value;
    Worst derivative;
    for (int i = 0; i < draws; ++i) {
        Security bond;
        draw_odd_first_bond(draw, bond, draw.one_of(bases));
        SecurityComputeRecord& record = bond.record;
        ASSERT_EQ(zComputeODDFPRICE(&record), 0);
        record.oddFirstPrice = draw.between(20.0, 300.0);
        NewtonProblem problem{};
        problem.userData = &record;
        problem.x = draw.between(-0.3, 1.0);
        ASSERT_EQ(ComputeF_ODDFYIELD(&problem), 0U);
        const PreciseAmount exact = odd_first_price(record, problem.x);
        value.add(error_in_ulps(problem.value, exact.value - record.oddFirstPrice, exact.size + record.oddFirstPrice));
        const Precise exact_slope =
            slope([&](const Precise& y) { return odd_first_price(record, y).value; }, problem.x);
        derivative.add(error_in_ulps(problem.derivative, exact_slope));
    }
    std::printf("    F of ODDFYIELD: %.3g ulp, F': %.3g ulp worst of %d draws\n", value.error(), derivative.error(),
                value.count());
    EXPECT_EQ(value.count(), draws);
    EXPECT_LE(value.error(), 300.0);
    EXPECT_LE(derivative.error(), 350.0);
}

// The dirty price P(y) is a sum of flows C (1 + y/f)^-(f t). So -dP/dy (1 + y/f) / P is their average time, weighted by
// worth: the duration, wherever the first period's fraction discounts as d periods. One coupon left is priced with
// simple interest, on which this does not hold; and times below 0 are the duration's alone.
TEST(Derivatives, DurationIsTheSlopeOfTheDirtyPrice) {
    Draws draw{53};
    Worst worst;
    int on_coupon_dates = 0;
    for (int i = 0; worst.count() < draws; ++i) {
        Security bond;
        draw_regular_bond(draw, bond);
        if (i % 3 == 0) {  // settlement on a coupon date
            const int day = static_cast<int>(draw.whole(1, 27));
            set_date(bond.settlement, host_days(2001, 2, static_cast<unsigned>(day)));
            const int year = 2001 + static_cast<int>(draw.whole(1, 30));
            set_date(bond.maturity, host_days(year, 2, static_cast<unsigned>(day)));
        }
        bond.record.redemption = 100.0;
        SecurityComputeRecord& record = bond.record;
        ASSERT_EQ(zComputeDURATION(&record), 0);
        if (record.couponCount == 1.0 || !(record.daysToNextCoupon > 0.0)) continue;
        if (record.accruedFraction == 0.0) ++on_coupon_dates;
        const double f = bond.terms.frequency;
        const Precise accrued = Precise{100.0} * record.rate / f * record.daysAccrued / record.daysInPeriod;
        const auto dirty = [&](const Precise& y) { return regular_price(record, y).value + accrued; };
        const double y = record.yield;
        const Precise modified = Precise{0.0} - slope(dirty, y) / dirty(y);
        worst.add(error_in_ulps(record.duration, modified * (Precise{y} / f + 1.0)));
    }
    std::printf("    DURATION against the slope: %.3g ulp worst of %d draws\n", worst.error(), worst.count());
    EXPECT_EQ(on_coupon_dates, 5048);
    EXPECT_LE(worst.error(), 200.0);
}

}  // namespace
}  // namespace finance::test
