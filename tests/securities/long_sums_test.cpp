// Long sums: closed forms at 200 bits, early ends bit for bit.
#include "securities/long_sums.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <vector>

#include "securities/kernels.hpp"
#include "tests/securities/literal_sums.hpp"
#include "tests/securities/long_bonds.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr double accuracy = 1e-12;

// The formulas at 200 bits, which the closed forms are compared with, are the sums.
TEST(LongSums, FormulasAt200BitsAreTheSums) {
    Draws draw{60};
    Worst worst;
    for (int i = 0; i < 100; ++i) {
        const double n = std::floor(draw.log_between(1.0, 3000.0));
        const double v = i % 10 == 0 ? 1.0 : 1.0 + draw.log_between(0x1p-52, 1.0) * (i % 2 == 0 ? 1.0 : -0.999);
        const double e = draw.between(0.0, 100.0);
        Precise plain;
        Precise weighted;
        Precise slopes;
        for (double j = 0.0; j < n; j += 1.0) {
            const Precise p = power(Precise{v}, Precise{j});
            plain = plain + p;
            weighted = weighted + p * j;
            slopes = slopes - (Precise{e} + j) * power(Precise{v}, Precise{e} + j + 1.0) / 12.0;
        }
        worst.add(magnitude(powers_of(v, n) / plain - 1.0).rounded());
        if (n > 1.0) worst.add(magnitude(weighted_powers_of(v, n) / weighted - 1.0).rounded());
        worst.add(magnitude(slopes_of(v, 12.0, e, n) / slopes - 1.0).rounded());
    }
    EXPECT_EQ(worst.count(), 295);
    EXPECT_LE(worst.error(), 1e-20);
}

// Errors of the closed forms against 200 bits.
struct ClosedForms {
    Worst plain;
    Worst weighted;
    Worst discounts;

    void check_sums(double v, double n) {
        const bool rising = v > 1.0;
        const PowerSums sums = sums_from_largest(v, n);
        const Precise all = powers_of(v, n);
        const Precise by_index = weighted_powers_of(v, n);
        const Precise last = power(Precise{v}, Precise{n - 1.0});
        plain.add(relative_error(sums.plain, rising ? all / last : all));
        if (n > 1.0)
            weighted.add(relative_error(sums.weighted, rising ? (all * (n - 1.0) - by_index) / last : by_index));
        if (all.rounded() < 1e308) plain.add(relative_error(sum_of_powers(v, n), all));
    }

    void add_discount(double value, const Precise& exact) {
        const double size = std::abs(exact.rounded());
        if (size > 1e308) {
            EXPECT_GT(std::abs(value), 1e308) << exact.rounded();
        } else if (size > 1e-290) {
            discounts.add(relative_error(value, exact));
        }
    }

    void check(double v, double n, double e, double f) {
        check_sums(v, n);
        const DiscountSums got = closed_discount_sums(v, f, e, n);
        const Precise first = power(Precise{v}, Precise{e});
        const Precise last_t = first * power(Precise{v}, Precise{n - 1.0});
        add_discount(got.S, first * powers_of(v, n));
        add_discount(got.t, last_t);
        if (std::isinf(got.S)) return;  // powers have overflowed, with all their slopes
        add_discount(got.D, slopes_of(v, f, e, n));
        add_discount(got.g, Precise{0.0} - last_t * (Precise{e} + (n - 1.0)) * v / f);
    }
};

// All that reaches them and more: n from 1 to beyond what dates can count, v from far below 1 to where powers overflow.
TEST(LongSums, ClosedFormsAgainst200Bits) {
    Draws draw{61};
    ClosedForms forms;
    for (int i = 0; i < 10000; ++i) {
        const double n = std::floor(draw.log_between(i % 4 == 0 ? 1.0 : 1e6, 3e10));
        const double exponent = draw.log_between(1e-12, 760.0) * (i % 2 == 0 ? 1.0 : -1.0);
        const double v = i % 16 == 1 ? draw.between(1e-12, 1.0) : std::min(std::exp(exponent / n), 1e8);
        const double e = draw.whole(0, 1) == 0 ? draw.between(0.0, 1.0) : draw.log_between(1.0, 1e10);
        forms.check(v, n, e, draw.log_between(1.0, 2147483647.0));
    }
    for (const double n : {1.0, 2.0, 3.0, 1e3, 1e7, 1e7 + 1, 1e10}) {
        for (const double v : {1.0, 1.0 + 0x1p-52, 1.0 - 0x1p-53, 1.0 + 0x1p-40, 1.0 - 0x1p-40})
            forms.check(v, n, 0.5, 2.0);
    }
    std::printf("    sums of powers %.2g, weighted %.2g, discounts and slopes %.2g relative, worst of %d draws\n",
                forms.plain.error(), forms.weighted.error(), forms.discounts.error(), forms.weighted.count());
    EXPECT_EQ(forms.weighted.count(), 9959);
    EXPECT_EQ(forms.discounts.count(), 37546);
    EXPECT_LE(forms.plain.error(), accuracy);
    EXPECT_LE(forms.weighted.error(), accuracy);
    EXPECT_LE(forms.discounts.error(), accuracy);
}

TEST(LongSums, SmallCasesByAddition) {
    EXPECT_EQ(sum_of_powers(1.0, 7.0), 7.0);
    EXPECT_EQ(sums_from_largest(1.0, 4.0).weighted, 6.0);
    EXPECT_DOUBLE_EQ(sum_of_powers(0.5, 3.0), 1.75);
    EXPECT_DOUBLE_EQ(sum_of_powers(2.0, 4.0), 15.0);
    EXPECT_DOUBLE_EQ(sums_from_largest(0.5, 3.0).weighted, 1.0);    // 0 + 0.5 + 2 * 0.25
    EXPECT_DOUBLE_EQ(sums_from_largest(2.0, 4.0).plain, 1.875);     // 1 + 0.5 + 0.25 + 0.125
    EXPECT_DOUBLE_EQ(sums_from_largest(2.0, 4.0).weighted, 1.375);  // 0.5 + 2 * 0.25 + 3 * 0.125
    EXPECT_EQ(sums_from_largest(0.75, 1.0).weighted, 0.0);
}

// ---- Bits of the literal loops

void expect_objective(NewtonProblem::Objective compute, Objective (*literal)(const SecurityComputeRecord&, double),
                      SecurityComputeRecord& r, double x) {
    NewtonProblem problem{};
    problem.userData = &r;
    problem.x = x;
    ASSERT_EQ(compute(&problem), 0U);
    const Objective expected = literal(r, x);
    EXPECT_TRUE(same_value(problem.value, expected.value)) << r.couponCount << ' ' << x;
    EXPECT_TRUE(same_value(problem.derivative, expected.derivative)) << r.couponCount << ' ' << x;
}

void expect_literal_bits(std::int64_t coupons, double y) {
    Security bond;
    set_long_bond(bond, coupons, y);
    SecurityComputeRecord& r = bond.record;
    const double objective_at = y > -1.0 && y < 1e6 ? y : 0.5;
    ASSERT_EQ(zComputePRICE(&r), 0);
    EXPECT_TRUE(same_value(r.price, literal_price(r))) << coupons << ' ' << y << ' ' << r.price;
    ASSERT_EQ(r.couponCount, static_cast<double>(coupons) + 3.0);
    r.price = 90.0;
    expect_objective(ComputeF_YIELD, literal_yield, r, objective_at);
    r.yield = y;
    ASSERT_EQ(zComputeDURATION(&r), 0);
    EXPECT_TRUE(same_value(r.duration, literal_duration(r))) << coupons << ' ' << y << ' ' << r.duration;
    ASSERT_EQ(zComputeODDFPRICE(&r), 0);
    EXPECT_TRUE(same_value(r.oddFirstPrice, literal_odd_first_price(r))) << coupons << ' ' << y;
    ASSERT_EQ(r.couponCount, static_cast<double>(coupons));
    r.oddFirstPrice = 90.0;
    expect_objective(ComputeF_ODDFYIELD, literal_odd_first_yield, r, objective_at);
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
            expect_literal_bits(coupons, y);
            ++rows;
        }
    }
    EXPECT_EQ(rows, 168);
}

}  // namespace
}  // namespace finance::test
