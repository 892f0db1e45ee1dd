// Dates: both conversions against a walker that turns the pages of the calendar, and single operations.
#include "calendar/calendar_date.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "tests/calendar/dates.hpp"

namespace finance::test {
namespace {

// ---- The walker: one day after the other, from lengths of months

// Years with a 0, as astronomers count: leap years before 1 follow each other without a gap.
class Walker {
public:
    std::int64_t julian_day = -31738;  // twelve times 400 years, of 146097 days each, before 1 January 1: day 1721426
    std::int32_t month = 1;
    std::int32_t day = 1;
    [[nodiscard]] std::int32_t year() const { return astronomical_ < 1 ? astronomical_ - 1 : astronomical_; }
    [[nodiscard]] std::int32_t length() const {
        constexpr std::array<std::int32_t, 13> lengths{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        return lengths[static_cast<std::size_t>(month)] + (month == 2 && leap(astronomical_) ? 1 : 0);
    }
    void next() {
        julian_day += 1;
        day += 1;
        if (day <= length()) return;
        day = 1;
        month += 1;
        if (month <= 12) return;
        month = 1;
        astronomical_ += 1;
    }
    static bool leap(std::int32_t year) {
        if (year % 400 == 0) return true;
        return year % 4 == 0 && year % 100 != 0;
    }

private:
    std::int32_t astronomical_ = -4799;
};

// A month's end is told by the year's own number, also before year 1, where the leap years of the numbers (-4, -8) are
// not those of the calendar (-1, -5).
bool is_called_month_end(const Walker& today) {
    if (today.month != 2 || today.year() > 0) return today.day == today.length();
    return today.day == (Walker::leap(today.year()) ? 29 : 28);
}

TEST(CalendarDate, EveryDayFromYearMinus4800To9999) {
    int days = 0;
    int anchors_seen = 0;
    for (Walker today; today.year() <= 9999; today.next(), ++days) {
        std::int32_t year = 0;
        std::int32_t month = 0;
        std::int32_t day = 0;
        ConvertJulianToDate(&year, &month, &day, today.julian_day);
        CalendarDate back{.day = today.day,
                          .month = today.month,
                          .year = today.year(),
                          .julianDay = 0,
                          .anchorDay = 77,
                          .endOfMonth = 88};
        ConvertDateToJulian(&back);
        const CalendarDate split = date_of_julian(today.julian_day);
        const bool right = year == today.year() && month == today.month && day == today.day &&
                           back.julianDay == today.julian_day && back.day == today.day && back.month == today.month &&
                           back.year == today.year() && back.anchorDay == 77 && back.endOfMonth == 88 &&
                           same_date(split, back) && split.anchorDay == today.day &&
                           split.endOfMonth == (is_called_month_end(today) ? 1 : 0);
        ASSERT_TRUE(right) << today.year() << '-' << today.month << '-' << today.day << ": " << split << ", " << back;
        if (today.month == 1 && today.day == 1 && (today.year() == 1 || today.year() == 1960)) {
            ASSERT_EQ(today.julian_day, today.year() == 1 ? 1721426 : HOST_EPOCH_JULIAN_DAY);
            ++anchors_seen;
        }
    }
    EXPECT_EQ(days, 4800 * 365 + 1164 + 9999 * 365 + 2424);  // leap days: 97 in 400 years, 2424 up to 9999
    EXPECT_EQ(anchors_seen, 2);
}

// ---- Known days

struct KnownDay {
    std::int64_t host_day;
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;
};

TEST(CalendarDate, KnownDays) {
    const std::vector<KnownDay> known{{0, 1960, 1, 1},      {59, 1960, 2, 29},      {60, 1960, 3, 1},
                                      {-1, 1959, 12, 31},   {-21915, 1899, 12, 31}, {-21914, 1900, 1, 1},
                                      {-715509, 1, 1, 1},   {-715510, -1, 12, 31},  {14669, 2000, 2, 29},
                                      {14670, 2000, 3, 1},  {-21856, 1900, 2, 28},  {-21855, 1900, 3, 1},
                                      {51193, 2100, 2, 28}, {51194, 2100, 3, 1},    {2936549, 9999, 12, 31}};
    for (const KnownDay& k : known) {
        const CalendarDate got = date_of_julian(HOST_EPOCH_JULIAN_DAY + k.host_day);
        EXPECT_EQ(got.year, k.year) << k.host_day;
        EXPECT_EQ(got.month, k.month) << k.host_day;
        EXPECT_EQ(got.day, k.day) << k.host_day;
        EXPECT_EQ(got.julianDay, HOST_EPOCH_JULIAN_DAY + k.host_day);
    }
}

TEST(CalendarDate, LengthsOfMonths) {
    constexpr std::array<std::int32_t, 12> common{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (std::int32_t month = 1; month <= 12; ++month) {
        EXPECT_EQ(zlastDay(2001, month), common[static_cast<std::size_t>(month - 1)]) << month;
    }
    for (const std::int32_t leap : {2000, 1600, 2004, 2008, 400, 4, 0, -4, -8, -400, -2000}) {
        EXPECT_EQ(zlastDay(leap, 2), 29) << leap;
        EXPECT_TRUE(is_leap_year(leap)) << leap;
    }
    for (const std::int32_t common_year : {1900, 2100, 2200, 100, 1, 2007, -1, -2, -5, -100, -300}) {
        EXPECT_EQ(zlastDay(common_year, 2), 28) << common_year;
        EXPECT_FALSE(is_leap_year(common_year)) << common_year;
    }
    for (const std::int32_t no_month : {0, 13, -1, -4, 14, 2147483647, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(zlastDay(2001, no_month), 31) << no_month;
    }
}

TEST(CalendarDate, FirstOfTheNextMonth) {
    struct Row {
        std::int32_t day, month, year, next_month, next_year;
    };
    const std::vector<Row> rows{{31, 1, 2001, 2, 2001},
                                {30, 11, 2001, 12, 2001},
                                {31, 12, 2001, 1, 2002},
                                {1, 12, 1999, 1, 2000},
                                {31, 12, -1, 1, 0}};  // a year 0 is not skipped
    for (const Row& row : rows) {
        std::int32_t day = row.day;
        std::int32_t month = row.month;
        std::int32_t year = row.year;
        ToTheFirstOfTheNextMonth(&day, &month, &year);
        EXPECT_EQ(day, 1);
        EXPECT_EQ(month, row.next_month) << row.day << ' ' << row.month << ' ' << row.year;
        EXPECT_EQ(year, row.next_year) << row.day << ' ' << row.month << ' ' << row.year;
    }
}

TEST(CalendarDate, OrderLooksAtTheDayNumberOnly) {
    CalendarDate a = date_of(2000, 2, 29);
    CalendarDate b = date_of(2000, 3, 1);
    EXPECT_EQ(zCompareDates(&a, &a), DATE_EQUAL);
    EXPECT_EQ(zCompareDates(&a, &b), DATE_BEFORE);
    EXPECT_EQ(zCompareDates(&b, &a), DATE_AFTER);
    EXPECT_EQ(int{DATE_BEFORE}, 1);
    EXPECT_EQ(int{DATE_EQUAL}, 2);
    EXPECT_EQ(int{DATE_AFTER}, 3);
    b.julianDay = a.julianDay;  // year, month and day still differ
    EXPECT_EQ(zCompareDates(&a, &b), DATE_EQUAL);
    a.julianDay = std::numeric_limits<std::int64_t>::min();
    b.julianDay = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(zCompareDates(&a, &b), DATE_BEFORE);
    EXPECT_EQ(zCompareDates(&b, &a), DATE_AFTER);
}

}  // namespace
}  // namespace finance::test
