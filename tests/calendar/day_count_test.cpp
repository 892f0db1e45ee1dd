// Days between two dates, lengths of periods and years: the rules of the bases one by one.
#include "calendar/day_count.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/calendar/day_rules.hpp"

namespace finance::test {
namespace {

struct Row {
    std::string id;
    CalendarDate start;
    CalendarDate end;
    std::int64_t us;
    std::int64_t european;
};

const std::vector<Row> days_of_360{
    {"31 January to 15 February", date_of(2001, 1, 31), date_of(2001, 2, 15), 14, 15},
    {"30 January to 15 February", date_of(2001, 1, 30), date_of(2001, 2, 15), 15, 15},
    {"30 January to the end of February", date_of(2001, 1, 30), date_of(2001, 2, 28), 30, 28},
    {"31 January to the end of February", date_of(2001, 1, 31), date_of(2001, 2, 28), 29, 28},
    {"31 January to 28 February of a leap year", date_of(2000, 1, 31), date_of(2000, 2, 28), 27, 28},
    {"31 January to 29 February", date_of(2000, 1, 31), date_of(2000, 2, 29), 29, 29},
    {"end of February to 31 March", date_of(2001, 2, 28), date_of(2001, 3, 31), 32, 32},
    {"end of February to end of February", date_of(2000, 2, 29), date_of(2001, 2, 28), 361, 359},
    {"end of February is not 30 as a start", date_of(2001, 2, 28), date_of(2001, 3, 1), 3, 3},
    {"31 to 31", date_of(2001, 1, 31), date_of(2001, 3, 31), 60, 60},
    {"31 to 30", date_of(2001, 1, 31), date_of(2001, 4, 30), 90, 90},
    {"31 to 29: the first day below 30", date_of(2001, 1, 31), date_of(2001, 4, 29), 88, 89},
    {"31 January to 1 February", date_of(2001, 1, 31), date_of(2001, 2, 1), 0, 1},
    {"31 December to 1 January: the year is carried", date_of(2001, 12, 31), date_of(2002, 1, 1), 0, 1},
    {"15 to 31 of one month", date_of(2001, 1, 15), date_of(2001, 1, 31), 15, 15},
    {"same day, a 31st", date_of(2001, 1, 31), date_of(2001, 1, 31), 0, 0},
    {"same day, an end of February", date_of(2001, 2, 28), date_of(2001, 2, 28), 0, 0},
    {"backwards", date_of(2001, 3, 15), date_of(2001, 1, 10), -65, -65},
};

TEST(DayCount, ThirtyDayMonths) {
    for (const Row& row : days_of_360) {
        EXPECT_EQ(zdays360(&row.start, &row.end, 0), row.us) << row.id;
        EXPECT_EQ(zdays360(&row.start, &row.end, 4), row.european) << row.id;
        for (const std::int32_t no_method : {1, 2, 3, 5, -1}) {
            EXPECT_EQ(zdays360(&row.start, &row.end, no_method), 9007199254740992) << row.id;
        }
    }
}

TEST(DayCount, ThirtyDayMonthsForAllPairsOfTwoYears) {
    int checked = 0;
    const std::int64_t first = host_days(2003, 12, 1) + HOST_EPOCH_JULIAN_DAY;
    for (std::int64_t a = first; a < first + 730; ++a) {
        const CalendarDate start = date_of_julian(a);
        for (std::int64_t b = first; b < first + 730; ++b, ++checked) {
            const CalendarDate end = date_of_julian(b);
            ASSERT_EQ(zdays360(&start, &end, 0), us_days(start, end)) << start << ' ' << end;
            ASSERT_EQ(zdays360(&start, &end, 4), european_days(start, end)) << start << ' ' << end;
        }
    }
    EXPECT_EQ(checked, 730 * 730);
}

// Equal day numbers are equal dates, whatever the other fields say.
TEST(DayCount, EqualDayNumbersAreNoDaysApart) {
    CalendarDate a = date_of(2001, 1, 31);
    CalendarDate b = date_of(2005, 7, 1);
    b.julianDay = a.julianDay;
    EXPECT_EQ(zdays360(&a, &b, 0), 0);
    EXPECT_EQ(zdays360(&a, &b, 4), 360 * 4 + 30 * 6 + 1 - 30);
}

// The count is one of 32 bits: six million years are 2,160,000,000 days, 2^31 is 2,147,483,648.
TEST(DayCount, ThirtyDayMonthsWrapAt32Bits) {
    CalendarDate start = date_of(2001, 1, 1);
    CalendarDate end = date_of(2001, 1, 1);
    end.year = 6002001;
    ConvertDateToJulian(&end);
    EXPECT_EQ(zdays360(&start, &end, 0), 2160000000LL - 4294967296LL);
    EXPECT_EQ(zdays360(&start, &end, 4), 2160000000LL - 4294967296LL);
}

// ---- The three counts over one span

struct Count {
    std::int32_t basis;
    double days;
    double year;
};

TEST(DayCount, ByBasis) {
    // 31 January 2004 to 31 March 2005: 425 days; of the years 2004 and 2005 one has 366
    const CalendarDate start = date_of(2004, 1, 31);
    const CalendarDate end = date_of(2005, 3, 31);
    for (const Count& row :
         {Count{0, 421, 360}, Count{1, 425, 365.5}, Count{2, 425, 360}, Count{3, 425, 365}, Count{4, 420, 360}}) {
        CouponTerms terms = year_fraction_terms(row.basis);
        CountTheDays(&start, &end, &terms);
        EXPECT_EQ(terms.dayCount, row.days) << row.basis;
        EXPECT_EQ(terms.periodDays, row.year) << row.basis;
        CouponTerms ratio_terms = year_fraction_terms(row.basis);
        EXPECT_EQ(ComputeTheAnnualRatio(&start, &end, &ratio_terms), row.days / row.year) << row.basis;
        EXPECT_EQ(ratio_terms.dayCount, row.days) << row.basis;
        EXPECT_EQ(ratio_terms.periodDays, row.year) << row.basis;
    }
}

TEST(DayCount, Day31IsAddedToTheUsCountOnly) {
    const CalendarDate start = date_of(2001, 1, 15);
    const CalendarDate end = date_of(2001, 1, 31);
    for (std::int32_t basis = 0; basis <= 4; ++basis) {
        const double plain = basis == 0 || basis == 4 ? 15.0 : 16.0;
        for (const bool adjust : {false, true}) {
            for (const bool suppressed : {false, true}) {
                CouponTerms terms = year_fraction_terms(basis);
                terms.day31Adjust = adjust ? 1 : 0;
                terms.noDay31Adjust = suppressed ? 1 : 0;
                CountTheDays(&start, &end, &terms);  // does not know the suppression
                EXPECT_EQ(terms.dayCount, plain + (basis == 0 && adjust ? 1 : 0)) << basis;
                (void)ComputeTheAnnualRatio(&start, &end, &terms);
                EXPECT_EQ(terms.dayCount, plain + (basis == 0 && adjust && !suppressed ? 1 : 0)) << basis;
            }
        }
    }
}

// From the 15th to the 30th are fifteen days of 30/360, whoever asks for the 31st.
TEST(DayCount, NoDay31IsAddedToAnotherDay) {
    const CalendarDate start = date_of(2001, 1, 15);
    const CalendarDate end = date_of(2001, 1, 30);
    CouponTerms terms = year_fraction_terms(BASIS_30_360);
    ASSERT_EQ(terms.day31Adjust, 1);
    CountTheDays(&start, &end, &terms);
    EXPECT_EQ(terms.dayCount, 15.0);
    EXPECT_EQ(days_between(start, end, terms), 15.0);
}

TEST(DayCount, UnknownBasis) {
    const CalendarDate start = date_of(2001, 1, 15);
    const CalendarDate end = date_of(2002, 1, 31);
    for (const std::int32_t basis : {5, -1, 77}) {
        CouponTerms terms = year_fraction_terms(basis);
        EXPECT_EQ(terms.periodDays, std::numeric_limits<double>::max());
        terms.dayCount = 12.5;
        terms.periodDays = 7.5;
        CountTheDays(&start, &end, &terms);
        EXPECT_EQ(ComputeTheAnnualRatio(&start, &end, &terms), std::numeric_limits<double>::max());
        EXPECT_EQ(terms.dayCount, 12.5);
        EXPECT_EQ(terms.periodDays, 7.5);
    }
}

TEST(DayCount, PeriodsOfTheFrequencies) {
    const std::vector<std::pair<std::int32_t, std::int64_t>> months{{1, 12}, {2, 6}, {4, 3}, {6, 2}, {12, 1}};
    for (const auto& [frequency, expected] : months) EXPECT_EQ(coupon_terms(frequency, 0).monthsPerPeriod, expected);
    for (const std::int32_t frequency : {0, 3, 5, 7, 8, 24, -1, -2, 2147483647}) {
        EXPECT_EQ(coupon_terms(frequency, 0).monthsPerPeriod, -2147483647) << frequency;
    }
    for (const std::int32_t frequency : {1, 2, 3, 4, 6, 12, 7, 365}) {
        for (const std::int32_t basis : {0, 2, 4})
            EXPECT_EQ(coupon_terms(frequency, basis).periodDays, 360.0 / frequency);
        EXPECT_EQ(coupon_terms(frequency, 3).periodDays, 365.0 / frequency);
        EXPECT_EQ(coupon_terms(frequency, 1).periodDays, 1.7976931348623157e308);
    }
}

}  // namespace
}  // namespace finance::test
