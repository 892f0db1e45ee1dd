// Prices, yields, durations, accrued interest and interest at maturity on all bases, odd periods among them, against 60
// digits.
#include <gtest/gtest.h>

#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr const char* digits_60 = "60 digits and listed coupon dates, tests/reference/securities.py";

// 2008'02'15_day is 15 February 2008.
constexpr double operator""_day(unsigned long long digits) {
    return host_date(static_cast<int>(digits / 10000), static_cast<unsigned>(digits / 100 % 100),
                     static_cast<unsigned>(digits % 100));
}

const std::vector<ValueCase> values{
#include "tests/securities/reference_values.inc"
};

TEST(ReferenceValues, OfSixtyDigits) {
    EXPECT_EQ(values.size(), 200U);
    check_values(values);
}

}  // namespace
}  // namespace finance::test
