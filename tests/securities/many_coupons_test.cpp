// Bonds with up to twelve billion coupons, against closed forms at 200 bits.
#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "securities/kernels.hpp"
#include "tests/securities/long_bonds.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

// Models take the discount factor v as the double that it is: its rounding, a billion times over, is the formula's own.

constexpr double billions[] = {1.2e10, 3e8};

// All of them in a release build, the first half in others, where the loops that closed forms wait for take long.
template <std::size_t n>
std::span<const double> some_of(const double (&all)[n]) {
    return {all, drawn(40) == 40 ? n : (n + 1) / 2};
}

constexpr double yields[] = {1e-8, 0.05, 0.0, -1e-8};
constexpr double rates[] = {1e200, 0.0, 1e-8, 1e-200};

double discount(double y) { return 1.0 / (1.0 + y / 12.0); }

TEST(BillionsOfCoupons, Price) {
    for (const double months : some_of(billions)) {
        for (const double y : some_of(yields)) {
            Security bond;
            set_long_bond(bond, static_cast<std::int64_t>(months), y);
            SecurityComputeRecord& r = bond.record;
            ASSERT_EQ(zComputePRICE(&r), 0);
            ASSERT_EQ(r.couponCount, months + 3.0);
            const Precise v = discount(y);
            const Precise c = Precise{7.0} / 12.0;
            const Precise flows = power(v, r.couponCount - 1.0) * 101.0 + c * powers_of(discount(y), r.couponCount);
            const Precise exact = power(v, r.remainingFraction) * flows - c * r.accruedFraction;
            EXPECT_LE(relative_error(r.price, exact), 1e-12) << months << ' ' << y;
        }
    }
}

void check_duration(double months, double y, double rate) {
    Security bond;
    set_long_bond(bond, static_cast<std::int64_t>(months), y);
    SecurityComputeRecord& r = bond.record;
    r.rate = rate;
    ASSERT_EQ(zComputeDURATION(&r), 0);
    const double N = r.couponCount;
    const Precise c = Precise{100.0} * r.rate / 12.0;
    const Precise d = r.remainingFraction;
    const Precise last = power(Precise{discount(y)}, N - 1.0) * 100.0;
    const Precise sum = powers_of(discount(y), N);
    const Precise weighted = weighted_powers_of(discount(y), N);
    const Precise exact = (c * (d * sum + weighted) + last * (d + (N - 1.0))) / (c * sum + last) / 12.0;
    EXPECT_LE(relative_error(r.duration, exact), 1e-12) << months << ' ' << y << ' ' << rate;
}

// Coupons of usual size, so small or so large that their sums would leave the range of doubles, and none.
TEST(BillionsOfCoupons, Duration) {
    for (const double months : some_of(billions)) {
        for (const double y : some_of(yields)) {
            for (const double rate : some_of(rates)) check_duration(months, y, rate);
        }
    }
}

// c (first + S) + R t - a, and its slope by x, of coupons c at v^e, v^(e+1) .. and redemption with the last.
TEST(BillionsOfCoupons, YieldObjective) {
    for (const double months : some_of(billions)) {
        for (const double x : some_of(yields)) {
            Security bond;
            set_long_bond(bond, static_cast<std::int64_t>(months), 0.05);
            SecurityComputeRecord& r = bond.record;
            ASSERT_EQ(zComputePRICE(&r), 0);  // for the quantities
            r.price = 0.0;
            NewtonProblem problem{};
            problem.userData = &r;
            problem.x = x;
            ASSERT_EQ(ComputeF_YIELD(&problem), 0U);
            const double N = r.couponCount;
            const Precise v = discount(x);
            const Precise e = r.remainingFraction;
            const Precise t = power(v, e);
            const Precise last = power(v, e + (N - 1.0));
            const Precise c = Precise{7.0} / 12.0;
            const Precise all = powers_of(discount(x), N);
            const Precise value = c * (t * all - r.accruedFraction) + last * 101.0;
            const Precise timed =
                c * t * (e * all + weighted_powers_of(discount(x), N)) + last * (e + (N - 1.0)) * 101.0;
            EXPECT_LE(relative_error(problem.value, value), 1e-12) << months << ' ' << x;
            EXPECT_LE(relative_error(problem.derivative, Precise{0.0} - timed * v / 12.0), 1e-12) << months << ' ' << x;
        }
    }
}

TEST(BillionsOfCoupons, OddFirstPriceAndObjective) {
    for (const double months : some_of(billions)) {
        for (const double y : some_of(yields)) {
            Security bond;
            set_long_bond(bond, static_cast<std::int64_t>(months), y);
            SecurityComputeRecord& r = bond.record;
            ASSERT_EQ(zComputeODDFPRICE(&r), 0);
            ASSERT_EQ(r.couponCount, months);
            const double N = r.couponCount;
            const Precise v = discount(y);
            const Precise c = Precise{7.0} / 12.0;
            const Precise e = Precise{r.wholeCoupons} + r.remainingFraction;
            const Precise t0 = power(v, e);
            const Precise last = t0 * power(v, N) * 101.0;
            const Precise later = t0 * v * powers_of(discount(y), N);
            const Precise exact = (later - r.accruedFraction) * c + c * t0 * r.firstPeriodLength + last;
            EXPECT_LE(relative_error(r.oddFirstPrice, exact), 1e-12) << months << ' ' << y;
            r.oddFirstPrice = 0.0;
            NewtonProblem problem{};
            problem.userData = &r;
            problem.x = y;
            ASSERT_EQ(ComputeF_ODDFYIELD(&problem), 0U);
            EXPECT_LE(relative_error(problem.value, exact), 1e-12) << months << ' ' << y;
            const Precise weighted = t0 * weighted_powers_of(discount(y), N + 1.0);
            const Precise timed = c * (e * t0 * r.firstPeriodLength + e * later + weighted) + last * (e + N);
            EXPECT_LE(relative_error(problem.derivative, Precise{0.0} - timed * v / 12.0), 1e-12) << months << ' ' << y;
        }
    }
}

// From 0.1 the search reaches yields down to about 0.05. Lower ones of such bonds are overstepped, to rates below 0 whose
// powers overflow: it then rests at the lowest rate, as any search does whose step is no number.
TEST(BillionsOfCoupons, Yields) {
    for (const double months : billions) {
        for (const double y : {0.06, 0.09, 0.15}) {
            Security bond;
            set_long_bond(bond, static_cast<std::int64_t>(months), y);
            SecurityComputeRecord& r = bond.record;
            r.rate = 0.04;
            ASSERT_EQ(zComputePRICE(&r), 0);
            ASSERT_EQ(zComputeYIELD(&r), 0) << months << ' ' << y;
            EXPECT_NEAR(r.yield, y, 1e-11 * y) << months;
            r.yield = y;
            ASSERT_EQ(zComputeODDFPRICE(&r), 0);
            ASSERT_EQ(zComputeODDFYIELD(&r), 0) << months << ' ' << y;
            EXPECT_NEAR(r.yield, y, 1e-11 * y) << months;
        }
    }
}

// Dates as far apart as arguments go: years run over their 32 bits, the schedule means nothing, and the calls end.
TEST(BillionsOfCoupons, FarthestDatesEnd) {
    constexpr double two_to_53 = 9007199254740992.0;
    for (const int basis : bases) {
        for (const int f : frequencies) {
            const std::vector<std::pair<const char*, std::vector<Arg>>> calls{
                {"PRICE", {-two_to_53, two_to_53, 0.05, 1e-9, 100, f, basis}},
                {"YIELD", {-two_to_53, two_to_53, 0.05, 95, 100, f, basis}},
                {"DURATION", {0, two_to_53, 0.05, 1e-9, f, basis}},
                {"ODDFPRICE", {0, two_to_53, -two_to_53, 1e9, 0.05, 1e-9, 100, f, basis}},
                {"ODDLPRICE", {0, two_to_53, -two_to_53, 0.05, 1e-9, 100, f, basis}},
                {"ACCRINT", {-two_to_53, 0, two_to_53, 0.05, 1000, f, basis}},
            };
            for (const auto& [name, arguments] : calls) {
                EXPECT_TRUE(Call(name, arguments).through_dispatcher().written) << name;
            }
        }
    }
}

}  // namespace
}  // namespace finance::test
