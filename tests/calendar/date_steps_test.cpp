// Stepping dates by months and years.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "tests/calendar/dates.hpp"

namespace finance::test {
namespace {

CouponTerms stepping(std::int32_t unit, std::int64_t months) {
    CouponTerms terms{};
    terms.stepUnit = unit;
    terms.monthsPerPeriod = months;
    return terms;
}

CalendarDate moved(const CalendarDate& date, std::int64_t count, const CouponTerms& terms) {
    CalendarDate result{};
    EXPECT_EQ(zAdvanceDate(&result, &date, count, &terms), &result);
    return result;
}

// ---- The obvious rule: turn pages one by one, then put the finger on the day

int month_length(int year, int month) {
    constexpr std::array<int, 13> lengths{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : lengths[static_cast<std::size_t>(month)];
}

CalendarDate obviously_moved(const CalendarDate& from, int months) {
    int year = from.year;
    int month = from.month;
    for (; months > 0; --months) {
        if (++month == 13) {
            month = 1;
            ++year;
        }
    }
    for (; months < 0; ++months) {
        if (--month == 0) {
            month = 12;
            --year;
        }
    }
    int day = month_length(year, month);
    if (from.day != month_length(from.year, from.month) && from.day < day) day = from.day;
    CalendarDate there = date_of(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
    there.anchorDay = from.day;
    there.endOfMonth = from.day == month_length(from.year, from.month) ? 1 : 0;
    return there;
}

// Four years from 1 January; 1900 is no leap year, 2000 is one.
void step_from_every_day(int first_year) {
    const CouponTerms months = stepping(STEP_MONTHS, 1);
    int checked = 0;
    const std::int64_t end = host_days(first_year + 4, 1, 1);
    for (std::int64_t today = host_days(first_year, 1, 1); today < end; ++today) {
        const CalendarDate from = date_of_julian(HOST_EPOCH_JULIAN_DAY + today);
        for (int k = -30; k <= 30; ++k, ++checked) {
            const CalendarDate there = moved(from, k, months);
            ASSERT_TRUE(same_record(there, obviously_moved(from, k)))
                << from << " by " << k << ": " << there << ", expected " << obviously_moved(from, k);
            // steps add up: what is aimed for is kept
            const CalendarDate further = moved(there, 7 - k, months);
            ASSERT_TRUE(same_record(further, obviously_moved(from, 7)))
                << from << " by " << k << " and on: " << further;
        }
    }
    EXPECT_EQ(checked, (end - host_days(first_year, 1, 1)) * 61);
}

TEST(DateSteps, EveryDayOfALeapCycle) { step_from_every_day(2005); }
TEST(DateSteps, EveryDayAroundTheYear1900) { step_from_every_day(1898); }
TEST(DateSteps, EveryDayAroundTheYear2000) { step_from_every_day(1998); }

// ---- Single steps

struct Step {
    CalendarDate from;
    std::int64_t count;
    CalendarDate to;
};

void check(const std::vector<Step>& steps, const CouponTerms& terms) {
    for (const Step& step : steps) {
        const CalendarDate got = moved(step.from, step.count, terms);
        EXPECT_TRUE(same_date(got, step.to)) << step.from << " by " << step.count << ": " << got;
        EXPECT_EQ(got.anchorDay, step.from.anchorDay);
        EXPECT_EQ(got.endOfMonth, step.from.endOfMonth);
    }
}

TEST(DateSteps, MonthEnds) {
    check({{date_of(2001, 4, 30), 1, date_of(2001, 5, 31)},
           {date_of(2001, 3, 30), 1, date_of(2001, 4, 30)},
           {date_of(2001, 8, 31), 1, date_of(2001, 9, 30)},
           {date_of(2001, 8, 31), 2, date_of(2001, 10, 31)},
           {date_of(2001, 1, 30), 1, date_of(2001, 2, 28)},
           {date_of(2001, 1, 31), 1, date_of(2001, 2, 28)},
           {date_of(2000, 1, 31), 1, date_of(2000, 2, 29)},
           {date_of(2001, 2, 28), 12, date_of(2002, 2, 28)},
           {date_of(2003, 2, 28), 12, date_of(2004, 2, 29)},
           {date_of(2004, 2, 28), 12, date_of(2005, 2, 28)},
           {date_of(2004, 2, 28), 13, date_of(2005, 3, 28)},
           {date_of(2000, 1, 15), -1, date_of(1999, 12, 15)},
           {date_of(2000, 1, 15), -13, date_of(1998, 12, 15)},
           {date_of(2000, 12, 15), -12, date_of(1999, 12, 15)},
           {date_of(2000, 12, 15), -24, date_of(1998, 12, 15)},
           {date_of(2000, 12, 15), 0, date_of(2000, 12, 15)}},
          stepping(STEP_MONTHS, 1));
}

TEST(DateSteps, TheDayAimedForIsKept) {
    const CouponTerms months = stepping(STEP_MONTHS, 1);
    const CalendarDate february = moved(date_of(2001, 1, 30), 1, months);
    EXPECT_TRUE(same_date(february, date_of(2001, 2, 28))) << february;
    EXPECT_EQ(february.endOfMonth, 0);  // not asked again
    const CalendarDate march = moved(february, 1, months);
    EXPECT_TRUE(same_date(march, date_of(2001, 3, 30))) << march;
}

TEST(DateSteps, AnAimBelowOneIsTheDayItself) {
    CalendarDate from = date_of(2001, 3, 15);
    for (const std::int32_t none : {0, -1, -31}) {
        from.anchorDay = none;
        const CalendarDate got = moved(from, 1, stepping(STEP_MONTHS, 1));
        EXPECT_TRUE(same_date(got, date_of(2001, 4, 15))) << got;
        EXPECT_EQ(got.anchorDay, none);
    }
    from.anchorDay = 31;  // beyond what the month has
    EXPECT_TRUE(same_date(moved(from, 1, stepping(STEP_MONTHS, 1)), date_of(2001, 4, 30)));
}

TEST(DateSteps, YearsOfThePeriodsLength) {
    check({{date_of(2000, 2, 29), 1, date_of(2003, 2, 28)},
           {date_of(2001, 2, 28), -3, date_of(1992, 2, 29)},
           {date_of(2001, 7, 31), 2, date_of(2007, 7, 31)}},
          stepping(STEP_YEARS, 3));
}

TEST(DateSteps, PeriodsOfSeveralMonths) {
    check({{date_of(2010, 11, 15), -5, date_of(2008, 5, 15)}, {date_of(2010, 11, 30), -1, date_of(2010, 5, 31)}},
          stepping(STEP_MONTHS, 6));
}

TEST(DateSteps, MovesKeepTheLow32BitsOfTheirMonths) {
    check({{date_of(2001, 3, 15), 4294967296 + 1, date_of(2001, 4, 15)},
           {date_of(2001, 3, 15), 4294967296 * 7 - 1, date_of(2001, 2, 15)}},
          stepping(STEP_MONTHS, 1));
    check({{date_of(2001, 3, 15), 2, date_of(2001, 5, 15)},  // twice -(2^31 - 1) is 2 in 32 bits
           {date_of(2001, 3, 15), -12, date_of(2000, 3, 15)}},
          stepping(STEP_MONTHS, no_months_per_period));
}

TEST(DateSteps, AResultMayBeTheDateItself) {
    const CouponTerms months = stepping(STEP_MONTHS, 1);
    CalendarDate date = date_of(2001, 1, 30);
    zAdvanceDate(&date, &date, 1, &months);
    zAdvanceDate(&date, &date, 1, &months);
    EXPECT_TRUE(same_date(date, date_of(2001, 3, 30))) << date;
}

}  // namespace
}  // namespace finance::test
