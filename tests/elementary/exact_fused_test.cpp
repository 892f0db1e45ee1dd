// The fused multiply-add without the instruction, against 5,000 bits rounded once.
#include "elementary/exact_fused.hpp"

#include <gtest/gtest.h>
#include <mpfr.h>

#include "tests/elementary/doubles.hpp"

namespace finance::test {
namespace {

double precise_fused(double a, double b, double c) {
    mpfr_t x;
    mpfr_t y;
    mpfr_init2(x, 5000);  // a product's and a term's digits from 2^2048 down to 2^-2148
    mpfr_init2(y, 5000);
    mpfr_set_d(x, a, MPFR_RNDN);
    mpfr_mul_d(x, x, b, MPFR_RNDN);
    mpfr_set_d(y, c, MPFR_RNDN);
    mpfr_add(x, x, y, MPFR_RNDN);
    const double result = mpfr_get_d(x, MPFR_RNDN);
    mpfr_clear(x);
    mpfr_clear(y);
    return result;
}

void expect_fused(double a, double b, double c) {
    EXPECT_TRUE(same_answer(elementary::exact_fused(a, b, c), precise_fused(a, b, c)))
        << std::hexfloat << a << ' ' << b << ' ' << c << ": " << elementary::exact_fused(a, b, c) << ", not "
        << precise_fused(a, b, c);
}

TEST(ExactFused, Edges) {
    for (const double a : edge_doubles) {
        for (const double b : edge_doubles) {
            for (const double c : edge_doubles) expect_fused(a, b, c);
        }
    }
}

// Sums of all distances: what cancels, ties, results below the normal ones, products out of range
TEST(ExactFused, Draws) {
    DoubleDraws draws{43};
    for (int i = 0; i < 60'000; ++i) {
        const double a = draws.any();
        const double b =
            i % 3 == 0 ? draws.any() : std::ldexp(draws.between(-2.0, 2.0), static_cast<int>(draws.index(200)) - 100);
        const double near = -a * b * (1.0 + std::ldexp(draws.between(-1.0, 1.0), -static_cast<int>(draws.index(130))));
        const double far = std::ldexp(near, static_cast<int>(draws.index(260)) - 130);
        expect_fused(a, b, i % 2 == 0 ? near : far);
        const double small = std::ldexp(draws.between(-2.0, 2.0), -540 + static_cast<int>(draws.index(20)));
        expect_fused(small, std::ldexp(draws.between(1.0, 2.0), -530),
                     i % 2 == 0 ? draws.subnormal() : -draws.subnormal());
    }
}

// Where doubles hand over to whole numbers: factors of 2^-400 and 2^400, terms of 2^-900 and 2^900, with what cancels.
TEST(ExactFused, EdgesOfRanges) {
    DoubleDraws draws{44};
    const auto near_power = [&](int exponent) {
        const double digits = draws.index(2) == 0 ? 1.0 : draws.between(1.0, 2.0);
        return std::ldexp(draws.index(2) == 0 ? digits : -digits, exponent);
    };
    for (const int a_exponent : {-401, -400, 0, 399, 400}) {
        for (const int b_exponent : {-401, -400, 0, 399, 400}) {
            for (const int c_exponent : {-901, -900, 899, 900, a_exponent + b_exponent, a_exponent + b_exponent - 54}) {
                for (int i = 0; i < 100; ++i) {
                    expect_fused(near_power(a_exponent), near_power(b_exponent), near_power(c_exponent));
                }
            }
        }
    }
}

// Halves go to the even one, by hand: (1 + 2^-52) + 2^-53 -> 1 + 2^-51, 1 + 2^-53 -> 1, and a bit beyond the half upwards.
TEST(ExactFused, Ties) {
    EXPECT_EQ(elementary::exact_fused(1.0, 1.0 + 0x1p-52, 0x1p-53), 1.0 + 0x1p-51);
    EXPECT_EQ(elementary::exact_fused(1.0, 1.0, 0x1p-53), 1.0);
    EXPECT_EQ(elementary::exact_fused(0x1p-500, 0x1p-500, 0x1.0000000000001p0), 0x1.0000000000001p0);
    EXPECT_EQ(elementary::exact_fused(1.0 + 0x1p-30, 1.0 + 0x1p-30, -1.0 - 0x1p-29), 0x1p-60);
    EXPECT_EQ(elementary::exact_fused(0x1p-537, 0x1p-538, 0.0), 0.0);  // half of the smallest
    EXPECT_EQ(elementary::exact_fused(0x1p-537, 0x1.0000000000001p-538, 0.0), 5e-324);
}

}  // namespace
}  // namespace finance::test
