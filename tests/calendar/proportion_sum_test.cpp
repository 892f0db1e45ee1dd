// Sums over many periods: against the literal loop, and beyond its reach against exact sums.
#include "calendar/proportion_sum.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/calendar/literal_schedule.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr std::array<std::int32_t, 5> frequencies{1, 2, 4, 6, 12};

CouponTerms terms_of(std::int32_t frequency, std::int32_t basis, bool plain_360, bool floor) {
    CouponTerms terms = coupon_terms(frequency, basis);
    terms.couponDayRule = plain_360 ? 1 : 0;
    terms.proportionFloor = floor ? 1 : 0;
    return terms;
}

void compare(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
             const CouponTerms& terms) {
    CouponTerms got_terms = terms;
    CouponTerms expected_terms = terms;
    const double got = sum_of_proportions(total, origin, end, until, &got_terms);
    const double expected = literal::sum_of_proportions(total, origin, end, until, &expected_terms);
    ASSERT_TRUE(same_value(got, expected)) << origin << " to " << end << ", frequency " << terms.frequency << ", basis "
                                           << terms.basis << ": " << got << ", expected " << expected;
    ASSERT_TRUE(same_terms(got_terms, expected_terms)) << origin << " to " << end;
}

// One end of three lies on a coupon date.
void compare_draws(std::int64_t middle, std::int64_t around, std::int64_t longest, int draws) {
    std::mt19937_64 random{19720229};
    const auto below = [&](std::int64_t bound) {
        return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(bound));
    };
    for (int i = 0; i < drawn(draws) && !testing::Test::HasFatalFailure(); ++i) {
        const CalendarDate origin = date_of_julian(middle - around + below(2 * around));
        const CouponTerms terms = terms_of(frequencies[static_cast<std::size_t>(below(5))],
                                           static_cast<std::int32_t>(below(5)), below(2) == 0, below(2) == 0);
        CalendarDate end = date_of_julian(origin.julianDay + 1 + below(longest));
        if (below(3) == 0) {
            CalendarDate coupon{};
            zAdvanceDate(&coupon, &origin, (end.julianDay - origin.julianDay) * terms.frequency / 365, &terms);
            if (coupon.julianDay > origin.julianDay) end = coupon;
        }
        compare(static_cast<double>(below(1000)) / 999.0, origin, end,
                below(2) == 0 ? WalkEnd::after : WalkEnd::on_or_after, terms);
    }
}

TEST(ProportionSum, ShortSumsLikeALoop) { compare_draws(2453000, 20000, 4000, 300'000); }
TEST(ProportionSum, LongSumsLikeALoop) { compare_draws(2453000, 20000, 2000 * 365, 500); }
TEST(ProportionSum, SumsOverTheYearZeroLikeALoop) { compare_draws(1721426 - 1000, 3000, 4000, 300'000); }
TEST(ProportionSum, AMillionPeriodsLikeALoop) {
    for (const std::int32_t basis : {0, 3}) {
        compare(0.3, date_of(2001, 1, 31), date_of_julian(2453000 + 31'000'000), WalkEnd::on_or_after,
                terms_of(12, basis, false, false));
    }
}

TEST(ProportionSum, TwelveMillionPeriodsLikeALoop) {
    compare(0.25, date_of(2001, 1, 31), date_of_julian(2453000 + 365'000'000), WalkEnd::after,
            terms_of(12, BASIS_EU30_360, false, false));
}

// Two million months: the far cycles are added without being walked. By the month's end too, where February
// makes the proportions of EU30/360 differ.
TEST(ProportionSum, TwoMillionPeriodsLikeALoop) {
    for (const std::int32_t basis : {0, 1, 4}) {
        for (const unsigned day : {15U, 30U, 31U}) {
            compare(0.3, date_of(2001, 1, day), date_of_julian(2453000 + 61'000'000), WalkEnd::after,
                    terms_of(12, basis, false, false));
        }
    }
    compare(0.0, date_of_julian(1721426 - 60'000'000), date_of_julian(1721426 + 500'000), WalkEnd::on_or_after,
            terms_of(12, 4, false, false));
    compare(0.7, date_of_julian(1721426 - 60'000'000), date_of_julian(1721426 - 100'000), WalkEnd::on_or_after,
            terms_of(12, 4, false, false));
}

// Without months per period the walk is the literal one as long as it ends.
TEST(ProportionSum, WithoutMonthsPerPeriodLikeALoop) {
    std::mt19937_64 random{19680229};
    for (int i = 0; i < drawn(2000) && !HasFatalFailure(); ++i) {
        const std::int32_t frequency = std::array{3, 5, 24, 2147483647}[random() % 4];
        const CalendarDate origin = date_of_julian(2453000 + static_cast<std::int64_t>(random() % 40'000));
        const CalendarDate end = date_of_julian(origin.julianDay + 1 + static_cast<std::int64_t>(random() % 60'000));
        compare(0.25, origin, end, random() % 2 == 0 ? WalkEnd::after : WalkEnd::on_or_after,
                terms_of(frequency, static_cast<std::int32_t>(random() % 5), false, false));
    }
}

// ---- More than ten million periods
//
// The sums are those of the loop, so each addition may round: n of them move a sum by at most n 2^-53 of itself. Where
// all proportions are 1 none does.

constexpr double drift(double n) { return n * 0x1p-53; }

CalendarDate far_date(std::int32_t year, std::int32_t month, std::int32_t day) {
    CalendarDate made{};
    made.year = year;
    made.month = month;
    made.day = day;
    ConvertDateToJulian(&made);
    return date_of_julian(made.julianDay);
}

struct Long {
    std::string id;
    CalendarDate origin;
    CalendarDate end;
    CouponTerms terms;
    double total;
    WalkEnd until;
    double expected;
};

// Proportions by actual days over periods of a fixed length add up to all days over that length.
double all_days(const CalendarDate& origin, const CalendarDate& end, const CouponTerms& terms) {
    return static_cast<double>(end.julianDay - origin.julianDay) / terms.periodDays;
}

// Month ends counted by zdays360 make 361 days of a common year (29 + 32 + 10 times 30) and 360 of a leap year.
constexpr double million_years_of_month_ends = 2500.0 * (303 * 361 + 97 * 360) / 30.0;

TEST(ProportionSum, ExactBeyondTenMillionPeriods) {
    const CalendarDate origin = far_date(2001, 5, 15);
    const CalendarDate end = far_date(1002001, 5, 20);
    const CalendarDate on_coupon = far_date(1002001, 5, 15);
    const CalendarDate month_end = far_date(2001, 1, 31);
    const CalendarDate last_month_end = far_date(1002001, 1, 31);
    const CouponTerms european = terms_of(12, BASIS_EU30_360, false, false);
    const CouponTerms variant = terms_of(12, BASIS_30_360, false, false);
    const CouponTerms plain = terms_of(12, BASIS_30_360, true, false);
    const CouponTerms actual = terms_of(12, BASIS_ACTUAL, false, false);
    const CouponTerms act_360 = terms_of(12, BASIS_ACT_360, false, false);
    const CouponTerms act_365 = terms_of(12, BASIS_ACT_365, false, false);
    const CouponTerms annual = terms_of(1, BASIS_ACT_365, false, false);
    const CalendarDate far_end = far_date(12002001, 5, 20);
    const std::vector<Long> rows{
        {"EU30/360", origin, end, european, 0.25, WalkEnd::on_or_after, 0.25 + 12e6 + 5 / 30.0},
        {"30/360", origin, end, variant, 0.25, WalkEnd::after, 0.25 + 12e6 + 5 / 30.0},
        {"EU30/360, before the year 1", far_date(-1010000, 5, 15), far_date(-10000, 5, 20), european, 0.25,
         WalkEnd::on_or_after, 0.25 + 12e6 + 5 / 30.0},
        {"30/360, month ends", month_end, last_month_end, variant, 0, WalkEnd::after, 12e6},
        {"30/360 by zdays360, month ends", month_end, last_month_end, plain, 0, WalkEnd::after,
         million_years_of_month_ends},
        {"30/360 by zdays360, month ends, cut", month_end, last_month_end, plain, 0, WalkEnd::on_or_after,
         million_years_of_month_ends},
        {"ACTUAL", origin, end, actual, 0.5, WalkEnd::on_or_after, 0.5 + 12e6 + 5 / 31.0},
        {"ACTUAL to a coupon date", origin, on_coupon, actual, 0.5, WalkEnd::on_or_after, 0.5 + 12e6},
        {"ACTUAL to a coupon date and an empty period", origin, on_coupon, actual, 0.5, WalkEnd::after, 0.5 + 12e6},
        {"ACT/360", origin, end, act_360, 0, WalkEnd::after, all_days(origin, end, act_360)},
        {"ACT/365", origin, end, act_365, 0, WalkEnd::after, all_days(origin, end, act_365)},
        {"ACT/365, annual", origin, far_end, annual, 0, WalkEnd::on_or_after, all_days(origin, far_end, annual)},
    };
    for (const Long& row : rows) {
        CouponTerms terms = row.terms;
        const double got = sum_of_proportions(row.total, row.origin, row.end, row.until, &terms);
        EXPECT_LE(std::abs(got / row.expected - 1.0), drift(row.expected))
            << row.id << ": " << got << ", expected " << row.expected;
        EXPECT_EQ(terms.periodDays, row.terms.periodDays) << row.id;
    }
}

// The floor raises the short periods alone: of a common year's months February's 28 of 365/12 days and the four of 30
// days, of a leap year's February's 29.
TEST(ProportionSum, TheFloorBeyondTenMillionPeriods) {
    const CalendarDate origin = far_date(2001, 5, 15);
    const CalendarDate end = far_date(1002001, 5, 15);
    CouponTerms terms = terms_of(12, BASIS_ACT_365, false, true);
    const double expected = 1e6 * (5.0 + 7.0 * 31.0 / (365.0 / 12.0)) + 1.0;  // and the empty period, raised
    EXPECT_LE(std::abs(sum_of_proportions(0.0, origin, end, WalkEnd::after, &terms) / expected - 1.0), drift(expected));
}

// Years before 1 have numbers that jump over 0, and dates of a year 0 are those of the year -1: such a sum takes that
// year twice, so that it still adds up to all days.
TEST(ProportionSum, BeyondTenMillionPeriodsOverTheYearZero) {
    for (const std::int32_t first_year : {-1, -7, -100, -399, -401, -1000, -3000, -6000, -900000}) {
        for (const std::int32_t basis : {2, 3}) {
            const CalendarDate origin = far_date(first_year, 5, 15);
            const CalendarDate end = far_date(1000000, 5, 20);
            CouponTerms terms = terms_of(12, basis, false, false);
            const double expected = all_days(origin, end, terms);
            const double got = sum_of_proportions(0.0, origin, end, WalkEnd::on_or_after, &terms);
            EXPECT_LE(std::abs(got / expected - 1.0), drift(expected))
                << "from the year " << first_year << ", basis " << basis << ": " << got << ", expected " << expected;
        }
    }
}

// A first step over the end of the years leads to their other end. Where the end of the sum lies beyond it too, the walk goes
// on to it, from the far past; from below the first year it has come beyond any end.
TEST(ProportionSum, OverAnEndOfTheYearsLikeALoop) {
    for (const std::int32_t basis : {0, 1, 2, 3, 4}) {
        for (const WalkEnd until : {WalkEnd::after, WalkEnd::on_or_after}) {
            const CouponTerms semiannual = terms_of(2, basis, false, false);
            const CalendarDate last = far_date(2147483647, 10, 15);
            compare(0.25, last, far_date(-2147483607, 3, 13), until, semiannual);
            compare(0.25, last, far_date(-2147400000, 4, 15), until, semiannual);
            const CalendarDate below = date_of_julian(-784350575013);  // month -3 of the first year
            ASSERT_LT(below.month, 1);
            compare(0.25, below, date_of_julian(-784347916127), until, terms_of(6, basis, false, false));
        }
    }
}

// 2^31 months are 178,956,970 years and 8 months. A walk over more comes round: from years so early that a year goes
// below those of 32 bits, to the far future, where it ends; from others, to the far past, and ends there too.
TEST(ProportionSum, WhereMonthsLeaveTheir32Bits) {
    const CouponTerms annual = terms_of(1, BASIS_30_360, false, false);
    CouponTerms terms = annual;
    const CalendarDate early = far_date(-2135604066, 5, 15);
    const CalendarDate late = far_date(1905, 3, 30);
    EXPECT_EQ(sum_of_proportions(0.0, early, late, WalkEnd::after, &terms), 178956970.0 + 1.0)
        << "whole years, and a last one from there, capped";
    terms = annual;
    const CalendarDate middle = far_date(-273793073, 5, 15);
    EXPECT_EQ(sum_of_proportions(0.0, middle, far_date(27379305, 3, 30), WalkEnd::after, &terms), 178956970.0 + 1.0);
}

}  // namespace
}  // namespace finance::test
