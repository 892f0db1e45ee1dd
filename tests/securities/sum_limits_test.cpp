// Long sums over coupons: the bits of the literal loops up to where closed forms take over, 200 bits beyond.
#include <gtest/gtest.h>

#include <cmath>

#include "securities/kernels.hpp"
#include "securities/long_sums.hpp"
#include "tests/securities/literal_sums.hpp"
#include "tests/securities/long_bonds.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double accuracy = 1e-12;
constexpr auto longest = static_cast<std::int64_t>(longest_literal_sum);
constexpr auto longest_of_search = longest_literal_loop;
constexpr auto longest_of_denormals = static_cast<std::int64_t>(longest_literal_sum / cost_of_denormals);

void compute(int (*kernel)(SecurityComputeRecord*), Security& bond) { ASSERT_EQ(kernel(&bond.record), 0); }

Objective objective_at(std::uint32_t (*objective)(NewtonProblem*), Security& bond, double x) {
    NewtonProblem problem{};
    problem.userData = &bond.record;
    problem.x = x;
    EXPECT_EQ(objective(&problem), 0U);
    return {problem.value, problem.derivative};
}

void expect_same(const char* what, double got, double walked, double coupons, double yield) {
    EXPECT_TRUE(same_value(got, walked)) << what << ' ' << coupons << " coupons, yield " << yield << ": " << got << ", "
                                         << walked;
}

// ---- Literal loops

void expect_literal_prices(Security& bond) {
    SecurityComputeRecord& r = bond.record;
    compute(zComputePRICE, bond);
    expect_same("PRICE", r.price, literal_price(r), r.couponCount, r.yield);
    compute(zComputeDURATION, bond);
    expect_same("DURATION", r.duration, literal_duration(r), r.couponCount, r.yield);
    compute(zComputeODDFPRICE, bond);
    expect_same("ODDFPRICE", r.oddFirstPrice, literal_odd_first_price(r), r.couponCount, r.yield);
}

// The record's price is the one searched for.
void expect_literal_objectives(Security& bond, double x) {
    SecurityComputeRecord& r = bond.record;
    const double price = r.price;
    const double y = r.yield;
    compute(zComputePRICE, bond);
    r.price = price;
    r.termsAdded = 0.0;
    const Objective regular = objective_at(ComputeF_YIELD, bond, x);
    const Objective walked = literal_yield(r, x);
    expect_same("F of YIELD", regular.value, walked.value, r.couponCount, x);
    expect_same("F' of YIELD", regular.derivative, walked.derivative, r.couponCount, x);
    compute(zComputeODDFPRICE, bond);
    r.oddFirstPrice = price;
    r.termsAdded = 0.0;
    const Objective odd = objective_at(ComputeF_ODDFYIELD, bond, x);
    const Objective odd_walked = literal_odd_first_yield(r, x);
    expect_same("F of ODDFYIELD", odd.value, odd_walked.value, r.couponCount, x);
    expect_same("F' of ODDFYIELD", odd.derivative, odd_walked.derivative, r.couponCount, x);
    r.yield = y;
}

// Amounts of every size, so that coupons, redemption and price each decide when a sum has settled; prices as the yield
// makes them, so that the objective is all rounding; yields of both signs.
TEST(SumLimits, EarlyEndsOfRandomBonds) {
    Draws draw{71};
    for (int i = 0; i < 400; ++i) {
        Security bond;
        const double y = draw.log_between(1e-7, 100.0) * (draw.whole(0, 4) == 0 ? -1.0 : 1.0);
        const double yield = y < -11.0 ? -11.0 : y;
        set_long_bond(bond, static_cast<std::int64_t>(draw.log_between(20.0, 60000.0)), yield);
        SecurityComputeRecord& r = bond.record;
        const bool wild = draw.whole(0, 1) == 0;
        r.rate = wild ? draw.log_between(1e-300, 1e300) : draw.log_between(1e-4, 10.0);
        r.redemption = wild ? draw.log_between(1e-300, 1e300) : draw.log_between(1.0, 1e4);
        expect_literal_prices(bond);
        r.price = draw.whole(0, 2) == 0 ? r.oddFirstPrice : wild ? draw.log_between(1e-300, 1e300) : 90.0;
        expect_literal_objectives(bond, draw.whole(0, 1) == 0 ? yield : draw.log_between(1e-5, 1e3));
    }
}

// ---- At 200 bits, from the quantities and the discount factor that the kernel has

struct PreciseBond {
    const SecurityComputeRecord& r;
    double v;
    double c;

    PreciseBond(const SecurityComputeRecord& record, double y)
        : r{record}, v{1.0 / (1.0 + y / record.terms->frequency)}, c{100.0 * record.rate / record.terms->frequency} {}

    [[nodiscard]] Precise powered(double k) const { return power(Precise{v}, Precise{k}); }
    [[nodiscard]] Precise price() const {
        return powered(r.remainingFraction) *
                   (powered(r.couponCount - 1.0) * r.redemption + powers_of(v, r.couponCount) * c) -
               Precise{c} * r.accruedFraction;
    }
    [[nodiscard]] Precise duration() const {
        const double f = r.terms->frequency;
        const Precise first = Precise{r.remainingFraction} / f;
        const Precise all = powers_of(v, r.couponCount);
        const Precise last = powered(r.couponCount - 1.0) * 100.0;
        const Precise last_time = first + Precise{r.couponCount - 1.0} / f;
        return ((first * all + weighted_powers_of(v, r.couponCount) / f) * c + last * last_time) / (all * c + last);
    }
    [[nodiscard]] Precise odd_first_price() const {
        const double e = r.wholeCoupons + r.remainingFraction;
        return (powered(e) * v * powers_of(v, r.couponCount) - r.accruedFraction) * c +
               powered(e) * c * r.firstPeriodLength + powered(e + r.couponCount) * r.redemption;
    }
};

// Relative to the price with what is subtracted from it.
void expect_exact(const char* what, double got, const Precise& exact, double subtracted) {
    EXPECT_LE((magnitude(exact - got) / (magnitude(exact) + 2.0 * subtracted)).rounded(), accuracy)
        << what << ' ' << got << ", " << exact.rounded();
}

void expect_exact_prices(Security& bond) {
    SecurityComputeRecord& r = bond.record;
    compute(zComputePRICE, bond);
    const PreciseBond exact{r, r.yield};
    expect_exact("PRICE", r.price, exact.price(), exact.c * r.accruedFraction);
    compute(zComputeDURATION, bond);
    expect_exact("DURATION", r.duration, exact.duration(), 0.0);
    compute(zComputeODDFPRICE, bond);
    expect_exact("ODDFPRICE", r.oddFirstPrice, exact.odd_first_price(), exact.c * r.accruedFraction);
}

// F and F' as they are without a price.
void expect_exact_objectives(Security& bond, double x) {
    SecurityComputeRecord& r = bond.record;
    const double R = r.redemption;
    r.price = r.oddFirstPrice = 0.0;
    compute(zComputePRICE, bond);
    r.price = 0.0;
    const PreciseBond exact{r, x};
    const double f = r.terms->frequency;
    const auto check = [&](const char* what, const Objective& got, const Precise& value, const Precise& slope) {
        expect_exact(what, got.value, value, exact.c * r.accruedFraction);
        expect_exact(what, got.derivative, slope, 0.0);
    };
    const double last = r.remainingFraction + (r.couponCount - 1.0);
    check(
        "F of YIELD", objective_at(ComputeF_YIELD, bond, x), exact.price(),
        slopes_of(exact.v, f, r.remainingFraction, r.couponCount) * exact.c - exact.powered(last + 1.0) * last / f * R);
    compute(zComputeODDFPRICE, bond);
    r.oddFirstPrice = 0.0;
    const double e = r.wholeCoupons + r.remainingFraction;
    const Precise first = Precise{0.0} - exact.powered(e + 1.0) * e / f;
    check("F of ODDFYIELD", objective_at(ComputeF_ODDFYIELD, bond, x), exact.odd_first_price(),
          first * exact.c * r.firstPeriodLength + slopes_of(exact.v, f, e + 1.0, r.couponCount) * exact.c -
              exact.powered(e + r.couponCount + 1.0) * (e + r.couponCount) / f * R);
}

// ---- Both sides of the limits

// set_long_bond's coupons are those after the first one, which ODDFPRICE counts; PRICE counts three more.
TEST(SumLimits, SingleSums) {
    if (drawn(40) < 40) return;  // takes other builds than a release a minute
    Security below;
    set_long_bond(below, longest - 3, 1e-7);
    compute(zComputePRICE, below);
    ASSERT_EQ(below.record.couponCount, longest_literal_sum);
    expect_same("PRICE", below.record.price, literal_price(below.record), longest_literal_sum, 1e-7);
    for (const double coupons : {longest_literal_sum + 1.0, 2.0 * longest_literal_sum}) {
        Security beyond;
        set_long_bond(beyond, static_cast<std::int64_t>(coupons), coupons == 2.0 * longest_literal_sum ? -1e-6 : 1e-7);
        expect_exact_prices(beyond);
    }
}

// Coupons so small that sums of them are given fewer terms: DURATION's ten million.
TEST(SumLimits, SumsNearTheDenormals) {
    for (const std::int64_t coupons : {longest_of_denormals - 4, longest_of_denormals - 3}) {
        Security bond;
        set_long_bond(bond, coupons, 2e-6);
        bond.record.rate = 1e-300;
        compute(zComputeDURATION, bond);
        expect_same("DURATION", bond.record.duration, literal_duration(bond.record), bond.record.couponCount, 2e-6);
    }
    int rows = 0;
    for (const double y : {2e-6, -2e-6, 1e-3, 1e-2}) {
        for (const std::int64_t coupons : {longest_of_denormals - 2, 2 * longest_of_denormals}) {
            for (const double rate : {1e-300, 1e-320}) {
                if (drawn(40) < 40 && ++rows % 3 != 1) continue;
                Security bond;
                set_long_bond(bond, coupons, y);
                bond.record.rate = rate;
                compute(zComputeDURATION, bond);
                expect_exact("DURATION", bond.record.duration, PreciseBond{bond.record, y}.duration(), 0.0);
            }
        }
    }
}

TEST(SumLimits, SumsOfSearches) {
    for (const double x : {1e-7, -1e-7, 0.0}) {
        if (drawn(40) < 40 && x < 0.0) continue;
        for (const std::int64_t coupons : {longest_of_search - 4, longest_of_search - 3}) {
            Security bond;
            set_long_bond(bond, coupons, x);
            expect_literal_objectives(bond, x);
        }
        for (const std::int64_t coupons : {longest_of_search + 1, 2 * longest_of_search}) {
            Security bond;
            set_long_bond(bond, coupons, x);
            expect_exact_objectives(bond, x);
        }
    }
}

// A search that has added all it may takes the closed form at once.
TEST(SumLimits, SearchesOfManySums) {
    Security bond;
    set_long_bond(bond, 500'000, 1e-5);
    bond.record.termsAdded = longest_literal_search - 100.0;
    expect_exact_objectives(bond, 1e-5);
    EXPECT_LE(bond.record.termsAdded, longest_literal_search + 1.0);
}

// A whole search of ten million coupons.
TEST(SumLimits, SearchOfALongBondHasTheBitsOfItsLoops) {
    Call call{"YIELD", {14684, 300014684, 0.05, 102.42044633271857, 100, 12, 0}};
    const Outcome got = call.through_handler();
    ASSERT_EQ(got.status, STATUS_SUCCESS);
    Security bond;
    set_date(bond.settlement, 14684);
    set_date(bond.maturity, 300014684);
    set_terms(bond, 12, BASIS_30_360);
    bond.record.rate = 0.05;
    bond.record.redemption = 100.0;
    compute(zComputePRICE, bond);  // for the quantities
    bond.record.price = 102.42044633271857;
    NewtonProblem problem{};
    problem.tolerance = 1e-12;
    problem.maxIterations = 100;
    problem.userData = &bond.record;
    problem.start = 0.1;
    problem.objective = [](NewtonProblem* p) -> std::uint32_t {
        const Objective at = literal_yield(*static_cast<SecurityComputeRecord*>(p->userData), p->x);
        p->value = at.value;
        p->derivative = at.derivative;
        return 0;
    };
    ASSERT_EQ(CallSpecialNewton(&problem), 0);
    EXPECT_GT(bond.record.couponCount, 9e6);
    EXPECT_TRUE(same_value(got.value, problem.x)) << got.value << ", " << problem.x;
}

// Without coupons all is the redemption at the last power, and its slope; among millions of coupons nothing is seen of
// either.
TEST(SumLimits, TheLastPowerAlone) {
    constexpr double x = 1e-6;
    const double v = 1.0 / (1.0 + x / 12.0);
    const auto check = [&](const NewtonProblem& problem, double last) {
        const auto t = static_cast<double>(101.0L * std::pow(static_cast<long double>(v), last));
        EXPECT_NEAR(problem.value, t - 90.0, 1e-12);
        EXPECT_NEAR(problem.derivative / (-v * last / 12.0 * t), 1.0, 1e-13);
    };
    Security bond;
    set_long_bond(bond, 20'000'000, x);
    SecurityComputeRecord& r = bond.record;
    r.rate = 0.0;
    NewtonProblem problem{};
    problem.userData = &r;
    problem.x = x;
    ASSERT_EQ(zComputePRICE(&r), 0);
    ASSERT_EQ(r.couponCount, 20'000'003.0);
    r.price = 90.0;
    ASSERT_EQ(ComputeF_YIELD(&problem), 0U);
    check(problem, r.remainingFraction + 20'000'002.0);
    ASSERT_EQ(zComputeODDFPRICE(&r), 0);
    ASSERT_EQ(r.couponCount, 20'000'000.0);
    r.oddFirstPrice = 90.0;
    ASSERT_EQ(ComputeF_ODDFYIELD(&problem), 0U);
    check(problem, r.wholeCoupons + r.remainingFraction + 20'000'000.0);
}

}  // namespace
}  // namespace finance::test
