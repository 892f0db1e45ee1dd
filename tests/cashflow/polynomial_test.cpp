// EvalPol: values, scale and flag by hand; errors against MPFR at 200 bits.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "cashflow/root_search.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

CashFlowPolynomial polynomial_of(const std::vector<double>& c) {
    CashFlowPolynomial polynomial{};
    polynomial.degree = static_cast<std::int32_t>(c.size()) - 1;
    polynomial.c = c.data();
    return polynomial;
}

// ---- By hand

TEST(EvalPol, InsideTheUnitCircleIsNotScaled) {
    const std::vector<double> c{1, -2, 0, 4};
    CashFlowPolynomial p = polynomial_of(c);
    p.exponent = 99;
    p.underflow = true;
    EvalPol(0.5, &p);  // 1 - 1 + 0 + 1/2
    EXPECT_EQ(p.p, 0.5);
    EXPECT_EQ(p.p1, 1.0);   // -2 + 12/4
    EXPECT_EQ(p.p2, 12.0);  // 24/2
    EXPECT_EQ(p.exponent, 0);
    EXPECT_FALSE(p.underflow);
    EvalPol(-0.5, &p);  // 1 + 1 - 1/2
    EXPECT_EQ(p.p, 1.5);
    EXPECT_EQ(p.p1, 1.0);
    EXPECT_EQ(p.p2, -12.0);
    EvalPol(0.0, &p);
    EXPECT_EQ(p.p, 1.0);
    EXPECT_EQ(p.p1, -2.0);
    EXPECT_EQ(p.p2, 0.0);
}

TEST(EvalPol, OnTheUnitCircleTheScaleIsOne) {
    const std::vector<double> c{1, -2, 0, 4};
    CashFlowPolynomial p = polynomial_of(c);
    EvalPol(1.0, &p);
    EXPECT_EQ(p.p, 3.0);
    EXPECT_EQ(p.p1, 10.0);
    EXPECT_EQ(p.p2, 24.0);
    EXPECT_EQ(p.exponent, 0);
    EvalPol(-1.0, &p);  // an odd degree: the sign comes from z
    EXPECT_EQ(p.p, -1.0);
    EXPECT_EQ(p.p1, 10.0);
    EXPECT_EQ(p.p2, -24.0);
    EXPECT_EQ(p.exponent, 0);
}

TEST(EvalPol, OutsideTheExponentIsKeptApart) {
    const std::vector<double> c{1, -2, 0, 4};
    CashFlowPolynomial p = polynomial_of(c);
    EvalPol(4.0, &p);  // 1 - 8 + 256; 3 ln 4 is 4.16
    EXPECT_EQ(p.exponent, 4);
    EXPECT_NEAR(p.p * std::exp(4.0), 249.0, 1e-11);
    EXPECT_NEAR(p.p1 * std::exp(4.0), 190.0, 1e-11);
    EXPECT_NEAR(p.p2 * std::exp(4.0), 96.0, 1e-11);
    EvalPol(-4.0, &p);  // 1 + 8 - 256
    EXPECT_EQ(p.exponent, 4);
    EXPECT_NEAR(p.p * std::exp(4.0), -247.0, 1e-11);
    EXPECT_NEAR(p.p1 * std::exp(4.0), 190.0, 1e-11);
    EXPECT_NEAR(p.p2 * std::exp(4.0), -96.0, 1e-11);
}

TEST(EvalPol, NoPowerOverflows) {
    std::vector<double> c(32767, 1.0);
    CashFlowPolynomial p = polynomial_of(c);
    EvalPol(1e300, &p);               // z^32766, and nothing else counts
    EXPECT_EQ(p.exponent, 22633950);  // trunc(32766 * 300 ln 10) = trunc(22633950.9..)
    EXPECT_NEAR(std::log(p.p) + p.exponent, 32766 * 300 * std::log(10.0), 1e-7);
    EXPECT_NEAR(p.p1 / p.p * 1e300, 32766.0, 1e-8);
    EvalPol(1e-300, &p);
    EXPECT_EQ(p.p, 1.0);
    EXPECT_EQ(p.p1, 1.0);
    EXPECT_EQ(p.p2, 2.0);
}

TEST(EvalPol, Constants) {
    const std::vector<double> c{-7};
    CashFlowPolynomial p = polynomial_of(c);
    for (const double z : {0.0, 0.25, 1.0, -3.0, 1e300}) {
        EvalPol(z, &p);
        EXPECT_EQ(p.p, -7.0) << z;
        EXPECT_EQ(p.p1, 0.0) << z;
        EXPECT_EQ(p.p2, 0.0) << z;
        EXPECT_EQ(p.exponent, 0) << z;
    }
}

// |1/z|^d leading < trailing 2^-42, the bound itself included: the constant is a hair above that power.
TEST(EvalPol, UnderflowFlag) {
    struct Row {
        double z;
        int degree;
        double leading;
        double trailing;
        bool expected;
    };
    const std::vector<Row> rows{
        {2.0, 41, 1.0, 1.0, false}, {2.0, 42, 1.0, 1.0, true},  {2.0, 42, 1.0, 0.5, false}, {2.0, 42, 2.0, 1.0, false},
        {2.0, 43, 2.0, 1.0, true},  {2.0, 43, 4.0, 1.0, false}, {-2.0, 42, 1.0, 1.0, true}, {-2.0, 41, 1.0, 1.0, false},
        {0.5, 43, 0.0, 1.0, false}, {1.0, 43, 1.0, 1.0, false}, {1.0, 9, 0.0, 1.0, true},
    };
    for (const Row& row : rows) {
        const std::vector<double> c(static_cast<std::size_t>(row.degree) + 1, 1.0);
        CashFlowPolynomial p = polynomial_of(c);
        p.leadingScale = row.leading;
        p.trailingScale = row.trailing;
        EvalPol(row.z, &p);
        EXPECT_EQ(p.underflow, row.expected) << row.z << ' ' << row.degree << ' ' << row.leading << ' ' << row.trailing;
    }
}

// ---- Against 200 bits

struct Exact {
    Precise p;
    Precise p1;
    Precise p2;
    std::array<double, 3> size;  // sums of the absolute terms
};

Exact exact_values(const std::vector<double>& c, double z) {
    Exact exact{};
    exact.size = {0.0, 0.0, 0.0};
    Precise size;
    Precise size1;
    Precise size2;
    const Precise u = std::abs(z);
    for (std::size_t k = c.size(); k-- > 0;) {
        exact.p2 = exact.p2 * z + exact.p1 * 2.0;
        exact.p1 = exact.p1 * z + exact.p;
        exact.p = exact.p * z + c[k];
        size2 = size2 * u + size1 * 2.0;
        size1 = size1 * u + size;
        size = size * u + std::abs(c[k]);
    }
    exact.size = {size.rounded(), size1.rounded(), size2.rounded()};
    return exact;
}

// e^k
Precise power_of_e(int k) {
    Precise e = 1.0;
    for (int i = 60; i >= 1; --i) e = Precise{1.0} + e / static_cast<double>(i);
    return power(e, Precise{static_cast<double>(k)});
}

struct Errors {
    Worst p;
    Worst p1;
    Worst p2;
};

void measure(double lowest_z, double highest_z, std::uint64_t seed, Errors& errors) {
    Draws draw{seed};
    for (int i = 0; i < 2000; ++i) {
        std::vector<double> c(static_cast<std::size_t>(draw.whole(3, 121)));
        for (double& flow : c) flow = draw.between(-100.0, 100.0);
        const double z = draw.log_between(lowest_z, highest_z) * (draw.whole(0, 3) == 0 ? -1.0 : 1.0);
        CashFlowPolynomial p = polynomial_of(c);
        EvalPol(z, &p);
        const Exact exact = exact_values(c, z);
        const Precise scale = power_of_e(p.exponent);
        const double d = p.degree;
        const auto relative = [&](double got, const Precise& value, double size) {
            return magnitude((scale * got - value) / size).rounded() / 0x1p-52 / (d + 1.0);
        };
        errors.p.add(relative(p.p, exact.p, exact.size[0]));
        // outside, a derivative is what is left of d p / z and its like
        const double inverse = std::abs(z) >= 1.0 ? d / std::abs(z) : 0.0;
        errors.p1.add(relative(p.p1, exact.p1, exact.size[1] + inverse * exact.size[0]));
        errors.p2.add(relative(p.p2, exact.p2, exact.size[2] + inverse * (exact.size[1] + inverse * exact.size[0])));
    }
    std::printf("    |z| in [%g, %g]: p %.3g, p' %.3g, p'' %.3g units of 2^-52 of the terms for each coefficient\n",
                lowest_z, highest_z, errors.p.error(), errors.p1.error(), errors.p2.error());
}

TEST(EvalPolPrecision, Inside) {
    Errors errors;
    measure(0.01, 0.9999999, 31, errors);
    EXPECT_EQ(errors.p.count(), 2000);
    EXPECT_LE(errors.p.error(), 0.5);
    EXPECT_LE(errors.p1.error(), 0.5);
    EXPECT_LE(errors.p2.error(), 0.5);
}

TEST(EvalPolPrecision, Outside) {
    Errors errors;
    measure(1.0, 100.0, 32, errors);
    EXPECT_EQ(errors.p.count(), 2000);
    // the power's logarithm, up to 550, is rounded to half a unit in its own last place
    EXPECT_LE(errors.p.error(), 5.0);
    EXPECT_LE(errors.p1.error(), 5.0);
    EXPECT_LE(errors.p2.error(), 5.0);
}

}  // namespace
}  // namespace finance::test
