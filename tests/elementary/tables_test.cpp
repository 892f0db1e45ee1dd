// The figures of the tables: what they stand for, to 200 bits and more.
#include <gtest/gtest.h>

#include "elementary/exponential_table.hpp"
#include "elementary/logarithm_table.hpp"
#include "elementary/long_logarithm_table.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

// Upwards from 2^0: the nearest double, and to 2^-53 of itself what that leaves
TEST(ElementaryTables, PowersOfTwo) {
    for (std::size_t j = 0; j < elementary::powers_of_two.size(); ++j) {
        const elementary::PowerOfTwo& row = elementary::powers_of_two[j];
        const Precise exact = power(Precise{2.0}, Precise{static_cast<double>(j)} / Precise{128.0});
        EXPECT_EQ(row.rounded, exact.rounded()) << j;
        EXPECT_NEAR(row.rest, (exact / Precise{row.rounded} - Precise{1.0}).rounded(), 0x1p-106) << j;
    }
}

// ln c for the c whose inverse is stored, to an error that does not count beside 2^-53 of what is added
TEST(ElementaryTables, Logarithms) {
    for (const elementary::LogarithmPart& row : elementary::logarithm_parts) {
        const Precise exact = Precise{0.0} - logarithm(Precise{row.inverse});
        EXPECT_LT(magnitude(exact - Precise{row.logarithm}).rounded(), 0x1p-65) << row.inverse;
        EXPECT_EQ(std::trunc(row.logarithm * 0x1p43), row.logarithm * 0x1p43) << row.inverse;
    }
}

TEST(ElementaryTables, LongLogarithms) {
    for (const elementary::LongLogarithmPart& row : elementary::long_logarithm_parts) {
        const Precise exact = Precise{0.0} - logarithm(Precise{row.inverse});
        EXPECT_LT(magnitude(exact - Precise{row.logarithm} - Precise{row.rest}).rounded(), 0x1p-97) << row.inverse;
        EXPECT_EQ(std::trunc(row.logarithm * 0x1p43), row.logarithm * 0x1p43) << row.inverse;
    }
}

}  // namespace
}  // namespace finance::test
