// The length of a year under ACTUAL: single spans, and closed forms against loops over the years.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

CouponTerms actual_terms(bool all_leap_years, bool start_year) {
    CouponTerms terms = year_fraction_terms(BASIS_ACTUAL);
    terms.allLeapYears = all_leap_years ? 1 : 0;
    terms.startYearLength = start_year ? 1 : 0;
    return terms;
}

double ratio_year(const CalendarDate& start, const CalendarDate& end, CouponTerms terms) {
    const double ratio = ComputeTheAnnualRatio(&start, &end, &terms);
    EXPECT_TRUE(same_value(ratio, terms.dayCount / terms.periodDays));
    EXPECT_EQ(terms.dayCount, static_cast<double>(end.julianDay - start.julianDay));
    return terms.periodDays;
}

double counted_year(const CalendarDate& start, const CalendarDate& end) {
    CouponTerms terms = actual_terms(false, false);
    CountTheDays(&start, &end, &terms);
    return terms.periodDays;
}

// ---- Single spans, averages by hand

struct Row {
    std::string id;
    CalendarDate start;
    CalendarDate end;
    double year;            // leap years at the ends cut short
    double all_leap_years;  // every leap year 366; CountTheDays counts so too
    double start_year;
};

const std::vector<Row> spans{
    {"1 March of a leap year on", date_of(2000, 3, 1), date_of(2001, 3, 1), 365, 365.5, 366},
    {"29 February of a leap year on", date_of(2000, 2, 29), date_of(2001, 3, 1), 365.5, 365.5, 366},
    {"a whole leap year", date_of(2000, 1, 1), date_of(2000, 12, 31), 366, 366, 366},
    {"within one leap year, after February", date_of(2000, 5, 1), date_of(2000, 6, 1), 366, 366, 366},
    {"within one leap year, before its February ends", date_of(2000, 1, 1), date_of(2000, 2, 1), 366, 366, 366},
    {"until 29 February", date_of(1999, 7, 1), date_of(2000, 2, 29), 365, 365.5, 365},
    {"until 1 March", date_of(1999, 7, 1), date_of(2000, 3, 1), 365.5, 365.5, 365},
    {"both ends cut", date_of(2000, 3, 1), date_of(2004, 2, 29), 365, (365 * 3 + 366 * 2) / 5.0, 366},
    {"neither end cut", date_of(2000, 2, 1), date_of(2004, 3, 1), (365 * 3 + 366 * 2) / 5.0, (365 * 3 + 366 * 2) / 5.0,
     366},
    {"a leap year between", date_of(1999, 12, 31), date_of(2001, 1, 1), (365 * 2 + 366) / 3.0, (365 * 2 + 366) / 3.0,
     365},
    {"1900 is common", date_of(1900, 1, 1), date_of(1901, 1, 1), 365, 365, 365},
};

TEST(YearLength, Spans) {
    for (const Row& row : spans) {
        EXPECT_EQ(ratio_year(row.start, row.end, actual_terms(false, false)), row.year) << row.id;
        EXPECT_EQ(ratio_year(row.start, row.end, actual_terms(true, false)), row.all_leap_years) << row.id;
        EXPECT_EQ(ratio_year(row.start, row.end, actual_terms(false, true)), row.start_year) << row.id;
        EXPECT_EQ(ratio_year(row.start, row.end, actual_terms(true, true)), row.start_year) << row.id;
        EXPECT_EQ(counted_year(row.start, row.end), row.all_leap_years) << row.id;
    }
}

// Only 1 is the flag that counts all leap years; any value but 0 takes the start year.
TEST(YearLength, ValuesOfTheFlags) {
    const CalendarDate start = date_of(2000, 3, 1);
    const CalendarDate end = date_of(2001, 3, 1);
    CouponTerms terms = actual_terms(false, false);
    terms.allLeapYears = 2;
    EXPECT_EQ(ratio_year(start, end, terms), 365.0);
    terms.startYearLength = 2;
    EXPECT_EQ(ratio_year(start, end, terms), 366.0);
}

TEST(YearLength, StartYearAfterEndYearHasNoAverage) {
    const CalendarDate start = date_of(2001, 3, 1);
    const CalendarDate end = date_of(1999, 3, 1);
    EXPECT_TRUE(std::isnan(counted_year(start, end)));
    EXPECT_TRUE(std::isnan(ratio_year(start, end, actual_terms(false, false))));
    EXPECT_TRUE(std::isnan(ratio_year(start, end, actual_terms(true, false))));
    EXPECT_EQ(ratio_year(start, end, actual_terms(false, true)), 365.0);
    // within one year there is one, though the start is later
    EXPECT_EQ(ratio_year(date_of(2000, 5, 1), date_of(2000, 2, 1), actual_terms(false, false)), 365.0);
    EXPECT_EQ(ratio_year(date_of(2000, 5, 1), date_of(2000, 2, 1), actual_terms(true, false)), 366.0);
}

// ---- Year by year

bool leap(std::int64_t year) { return year % 4 == 0 && (year % 400 == 0 || year % 100 != 0); }

double literal_year(const CalendarDate& start, const CalendarDate& end, bool cut_at_the_ends) {
    double common_years = 0.0;
    double leap_years = 0.0;
    for (std::int64_t y = start.year; y <= end.year; ++y) {
        const bool within_start = y != start.year || start.month >= 3;
        const bool within_end = y != end.year || end.month == 1 || end.month == 2;
        const bool at_an_end = y == start.year || y == end.year;
        const bool cut = cut_at_the_ends && at_an_end && within_start && within_end;
        (leap(y) && !cut ? leap_years : common_years) += 1.0;
    }
    return (365.0 * common_years + 366.0 * leap_years) / (common_years + leap_years);
}

class Spans {
public:
    explicit Spans(std::int32_t longest) : years_{0, longest} {}
    CalendarDate start() {
        CalendarDate date{};
        date.year = first_(random_);
        date.month = month_(random_);
        date.day = 15;
        ConvertDateToJulian(&date);
        return date;
    }
    // Years later; in one of twelve draws a year before.
    CalendarDate end(const CalendarDate& start) {
        CalendarDate date = start;
        date.year += month_(random_) == 1 ? -1 : years_(random_);
        date.month = month_(random_);
        ConvertDateToJulian(&date);
        return date;
    }

private:
    std::mt19937_64 random_{20000301};
    std::uniform_int_distribution<std::int32_t> first_{-3000, 3000};  // a year 0 is met as a start, an end and between
    std::uniform_int_distribution<std::int32_t> years_;
    std::uniform_int_distribution<std::int32_t> month_{1, 12};
};

void compare(std::int32_t longest, int draws) {
    Spans spans_of{longest};
    int backwards = 0;
    for (int i = 0; i < draws; ++i) {
        const CalendarDate start = spans_of.start();
        const CalendarDate end = spans_of.end(start);
        if (start.year > end.year) ++backwards;
        const double all = literal_year(start, end, false);
        const double first = leap(start.year) ? 366.0 : 365.0;
        ASSERT_TRUE(same_value(counted_year(start, end), all)) << start << ' ' << end;
        ASSERT_TRUE(same_value(ratio_year(start, end, actual_terms(true, false)), all)) << start << ' ' << end;
        ASSERT_TRUE(same_value(ratio_year(start, end, actual_terms(false, false)), literal_year(start, end, true)))
            << start << ' ' << end;
        ASSERT_EQ(ratio_year(start, end, actual_terms(false, true)), first) << start << ' ' << end;
    }
    EXPECT_GT(backwards, 0);
    EXPECT_LT(backwards, draws / 4);
}

TEST(YearLength, ShortSpansLikeALoop) { compare(12, drawn(1'000'000)); }
TEST(YearLength, LongSpansLikeALoop) { compare(5000, drawn(10'000)); }

// Each span of years from -9..9 to -9..9, each pair of months: the year 0 as start, end and between.
TEST(YearLength, SpansAroundTheYearZeroLikeALoop) {
    int checked = 0;
    CalendarDate start{.day = 1, .month = 1, .year = -9, .julianDay = 0, .anchorDay = 1, .endOfMonth = 0};
    CalendarDate end = start;
    for (start.year = -9; start.year <= 9; ++start.year) {
        for (end.year = -9; end.year <= 9; ++end.year) {
            for (start.month = 1; start.month <= 12; ++start.month) {
                for (end.month = 1; end.month <= 12; ++end.month, ++checked) {
                    ASSERT_TRUE(same_value(counted_year(start, end), literal_year(start, end, false)));
                    ASSERT_TRUE(
                        same_value(ratio_year(start, end, actual_terms(false, false)), literal_year(start, end, true)));
                }
            }
        }
    }
    EXPECT_EQ(checked, 19 * 19 * 144);
}

}  // namespace
}  // namespace finance::test
