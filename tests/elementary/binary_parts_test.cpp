// Doubles taken apart, against frexp and ldexp of the C library.
#include "elementary/binary_parts.hpp"

#include <gtest/gtest.h>

#include "tests/elementary/doubles.hpp"

namespace finance::test {
namespace {

using elementary::binary_parts;
using elementary::BinaryParts;
using elementary::joined;

void expect_parts(double x) {
    const BinaryParts parts = binary_parts(x);
    if (x == 0.0 || !std::isfinite(x)) {
        EXPECT_TRUE(same_answer(parts.mantissa, x));
        EXPECT_EQ(parts.exponent, 0);
        return;
    }
    int exponent = 0;
    const double half = std::frexp(x, &exponent);  // of a size in [0.5, 1)
    EXPECT_EQ(parts.mantissa, 2.0 * half) << x;
    EXPECT_EQ(parts.exponent, exponent - 1) << x;
    EXPECT_EQ(joined(parts.mantissa, parts.exponent), x);
}

TEST(BinaryParts, OfEdgesAndDraws) {
    for (const double x : edge_doubles) expect_parts(x);
    DoubleDraws draws{41};
    for (int i = 0; i < 20'000; ++i) expect_parts(draws.any());
}

TEST(BinaryParts, JoinedRoundsOnce) {
    DoubleDraws draws{42};
    for (int i = 0; i < 100'000; ++i) {
        const double mantissa = std::ldexp(draws.between(-2.0, 2.0), -static_cast<int>(draws.index(52)));
        const int exponent = static_cast<int>(draws.whole(-6000, 6000)) / (i % 2 == 0 ? 1 : 5);
        EXPECT_TRUE(same_answer(joined(mantissa, exponent), std::ldexp(mantissa, exponent)))
            << mantissa << ' ' << exponent;
    }
}

}  // namespace
}  // namespace finance::test
