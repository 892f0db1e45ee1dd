// Long sums: closed forms at 200 bits, early ends bit for bit.
#include "securities/long_sums.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "securities/duration.hpp"
#include "securities/odd_first_period.hpp"
#include "securities/price_and_yield.hpp"
#include "tests/securities/long_bonds.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

TEST(LongSums, ClosedFormsAgainst200Bits) {
    Draws draw{61};
    Worst plain;
    Worst weighted;
    const auto check = [&](double v, double n) {
        plain.add(relative_error(sum_of_powers(v, n), powers_of(v, n)));
        weighted.add(relative_error(sum_of_weighted_powers(v, n), weighted_powers_of(v, n)));
    };
    for (int i = 0; i < 10000; ++i) {
        const double n = std::floor(draw.log_between(1e3, 1e10));
        const double exponent = draw.log_between(1e-12, 600.0);
        check(std::exp((i % 2 == 0 ? exponent : -exponent) / n), n);
    }
    for (const double n : {2.0, 3.0, 1e3, 1e7, 1e7 + 1, 1e10}) {
        for (const double v : {1.0, 1.0 + 0x1p-52, 1.0 - 0x1p-53, 1.0 + 0x1p-40, 1.0 - 0x1p-40}) check(v, n);
    }
    std::printf("    sum of powers %.3g, weighted %.3g relative, worst of %d draws\n", plain.error(), weighted.error(),
                plain.count());
    EXPECT_GE(plain.count(), 10000);
    EXPECT_LE(plain.error(), 2e-13);
    EXPECT_LE(weighted.error(), 2e-15);
}

TEST(LongSums, SmallCasesByAddition) {
    EXPECT_EQ(sum_of_powers(1.0, 7.0), 7.0);
    EXPECT_EQ(sum_of_weighted_powers(1.0, 4.0), 6.0);
    EXPECT_DOUBLE_EQ(sum_of_powers(0.5, 3.0), 1.75);
    EXPECT_DOUBLE_EQ(sum_of_weighted_powers(0.5, 3.0), 1.0);  // 0 + 0.5 + 2 * 0.25
    EXPECT_DOUBLE_EQ(sum_of_weighted_powers(2.0, 4.0), 34.0);
    EXPECT_EQ(sum_of_weighted_powers(0.75, 1.0), 0.0);
}

// ---- Bits of the literal loops

double literal_price(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (1.0 + r.yield / f);
    const double c = 100.0 * r.rate / f;
    double S = 0.0;
    double term = 1.0;
    double k = 0.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        S = S + term;
        term = term * v;
    }
    return std::pow(v, r.remainingFraction) * (r.redemption * std::pow(v, r.couponCount - 1.0) + c * S) -
           c * r.accruedFraction;
}

double literal_duration(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (1.0 + r.yield / f);
    const double c = 100.0 * r.rate / f;
    double t = r.remainingFraction / f;
    double w = r.remainingFraction;
    double PV = c * w;
    double TW = t * c * w;
    double k = 1.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        w = w * v;
        t = t + 1.0 / f;
        PV = PV + c * w;
        TW = TW + c * w * t;
    }
    const double R = 100.0 * w;
    return (TW + R * t) / (PV + R);
}

double literal_odd_first_price(const SecurityComputeRecord& r) {
    const double f = r.terms->frequency;
    const double v = 1.0 / (r.yield / f + 1.0);
    const double c = 100.0 * r.rate / f;
    double t = std::pow(v, r.wholeCoupons + r.remainingFraction);
    const double first = c * t;
    double sum = 0.0;
    double k = 1.0;
    do {
        k = k + 1.0;
        t = t * v;
        sum = sum + t;
    } while (k <= r.couponCount);
    return (sum - r.accruedFraction) * c + first * r.firstPeriodLength + t * r.redemption;
}

struct Objective {
    double value;
    double derivative;
};

Objective literal_yield(const SecurityComputeRecord& r, double x) {
    const double f = r.terms->frequency;
    const double c = 100.0 * r.rate / f;
    const double v = 1.0 / (1.0 + x / f);
    double e = r.remainingFraction;
    double t = std::pow(v, e);
    double S = t;
    double g = t * v * (-e) / f;
    double D = g;
    double k = 1.0;
    while (r.couponCount > k) {
        k = k + 1.0;
        t = t * v;
        e = e + 1.0;
        S = S + t;
        g = -(v * e) * t / f;
        D = D + g;
    }
    return {c * (S - r.accruedFraction) + (r.redemption * t - r.price), c * D + r.redemption * g};
}

Objective literal_odd_first_yield(const SecurityComputeRecord& r, double x) {
    const double f = r.terms->frequency;
    const double c = 100.0 * r.rate / f;
    const double v = 1.0 / (x / f + 1.0);
    const double e = r.wholeCoupons + r.remainingFraction;
    const double t0 = std::pow(v, e);
    const double g0 = -e * t0 * v / f;
    double t = t0;
    double g = g0;
    double S = 0.0;
    double G = 0.0;
    double k = 1.0;
    do {
        k = k + 1.0;
        t = t * v;
        S = S + t;
        g = g * v - t * v / f;
        G = G + g;
    } while (r.couponCount >= k);
    const double DFC = r.firstPeriodLength;
    return {c * (DFC * t0 + S - r.accruedFraction) + r.redemption * t - r.oddFirstPrice,
            c * DFC * g0 + c * G + r.redemption * g};
}

// v near 1 on both sides; v tiny; overflow at once and late; sums that settle, and powers that end among the smallest
// numbers, at 0 or at rest above it.
TEST(LongSums, EarlyEndsKeepTheBits) {
    const std::vector<double> yields{0.05,  1e-3,   1e-7,   1e-12,  -1e-12, -1e-6,         -1e-3, -0.02,
                                     -11.0, 0.9,    12.0,   120.0,  1e6,    1e15,          0.003, 12 * 0x1p-50,
                                     0.0,   0.0084, 0.0045, 1.2e-3, 6.0,    -12 + 0x1p-22, 0.3,   0.05};
    int rows = 0;
    for (const std::int64_t coupons : {2, 65, 66, 3000, 20000, 200000, 2000000}) {
        for (const double y : yields) {
            if (coupons == 2000000 && rows % 3 != 0 && std::abs(y) > 0.01) {
                ++rows;
                continue;  // settled long before
            }
            Security bond;
            set_long_bond(bond, coupons, y);
            SecurityComputeRecord& r = bond.record;
            const double objective_at = y > -1.0 && y < 1e6 ? y : 0.5;
            ASSERT_EQ(zComputePRICE(&r), 0);
            const double price = r.price;
            EXPECT_TRUE(same_value(price, literal_price(r))) << coupons << ' ' << y << ' ' << price;
            ASSERT_EQ(r.couponCount, static_cast<double>(coupons) + 3.0);
            r.price = 90.0;
            NewtonProblem problem{};
            problem.userData = &r;
            problem.x = objective_at;
            ASSERT_EQ(ComputeF_YIELD(&problem), 0U);
            const Objective regular = literal_yield(r, objective_at);
            EXPECT_TRUE(same_value(problem.value, regular.value)) << coupons << ' ' << objective_at;
            EXPECT_TRUE(same_value(problem.derivative, regular.derivative)) << coupons << ' ' << objective_at;
            r.yield = y;
            ASSERT_EQ(zComputeDURATION(&r), 0);
            EXPECT_TRUE(same_value(r.duration, literal_duration(r))) << coupons << ' ' << y << ' ' << r.duration;
            ASSERT_EQ(zComputeODDFPRICE(&r), 0);
            EXPECT_TRUE(same_value(r.oddFirstPrice, literal_odd_first_price(r))) << coupons << ' ' << y;
            ASSERT_EQ(r.couponCount, static_cast<double>(coupons));
            r.oddFirstPrice = 90.0;
            ASSERT_EQ(ComputeF_ODDFYIELD(&problem), 0U);
            const Objective odd = literal_odd_first_yield(r, objective_at);
            EXPECT_TRUE(same_value(problem.value, odd.value)) << coupons << ' ' << objective_at;
            EXPECT_TRUE(same_value(problem.derivative, odd.derivative)) << coupons << ' ' << objective_at;
            ++rows;
        }
    }
    EXPECT_GE(rows, 168);
}

// The longest sums that are formed literally: ten million terms.
TEST(LongSums, TenMillionTermsAreLiteral) {
    Security bond;
    set_long_bond(bond, 10'000'000 - 3, 1e-7);
    SecurityComputeRecord& r = bond.record;
    ASSERT_EQ(zComputePRICE(&r), 0);
    ASSERT_EQ(r.couponCount, 1e7);
    EXPECT_TRUE(same_value(r.price, literal_price(r)));
    ASSERT_EQ(zComputeDURATION(&r), 0);
    EXPECT_TRUE(same_value(r.duration, literal_duration(r)));
}

// One more is too many: the closed form, which ends differently.
TEST(LongSums, OneTermMoreIsTheClosedForm) {
    Security bond;
    set_long_bond(bond, 10'000'001 - 3, 1e-7);
    SecurityComputeRecord& r = bond.record;
    ASSERT_EQ(zComputePRICE(&r), 0);
    ASSERT_EQ(r.couponCount, 1e7 + 1.0);
    const double f = r.terms->frequency;
    const double v = 1.0 / (1.0 + r.yield / f);
    const double c = 100.0 * r.rate / f;
    const double closed = std::pow(v, r.remainingFraction) *
                              (r.redemption * std::pow(v, r.couponCount - 1.0) + c * sum_of_powers(v, r.couponCount)) -
                          c * r.accruedFraction;
    EXPECT_TRUE(same_value(r.price, closed));
    EXPECT_FALSE(same_value(literal_price(r), closed));
}

// Without coupons all is the redemption at the last power, and its slope; among millions of coupons nothing is seen of
// either.
TEST(LongSums, TheLastPowerAlone) {
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
