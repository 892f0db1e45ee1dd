// Day numbers against a calendar walked day by day, against eras of 400 years, and against the module's own.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>

#include "calendar/calendar_date.hpp"
#include "host/service_work.hpp"

namespace finance::test {
namespace {

using host::days_since_1960;

constexpr std::int32_t first = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t last = std::numeric_limits<std::int32_t>::max();

// Years here are astronomical, with a year 0; historical ones have none.
constexpr std::int32_t historical(std::int64_t year) { return static_cast<std::int32_t>(year < 1 ? year - 1 : year); }

constexpr bool is_leap(std::int64_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

constexpr int month_lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

constexpr int length_of(std::int64_t year, int month) {
    return month_lengths[month - 1] + (month == 2 && is_leap(year) ? 1 : 0);
}

// 1 January of a year: eras of 146097 days, and the years of the last one.
std::int64_t new_year(std::int64_t year) {
    std::int64_t era = year / 400;
    if (year % 400 < 0) --era;
    std::int64_t days = era * 146097;
    for (std::int64_t y = era * 400; y < year; ++y) days += is_leap(y) ? 366 : 365;
    return days;
}

std::int64_t counted(std::int64_t year, int month, int day) {
    std::int64_t days = new_year(year) - new_year(1960) + day - 1;
    for (int m = 1; m < month; ++m) days += length_of(year, m);
    return days;
}

// One day after the other from 1 January of -4800 to 31 December of 9999: each day's number is one more.
TEST(DateService, DayByDay) {
    std::int64_t expected = counted(-4799, 1, 1);
    std::int64_t wrong = 0;
    std::int64_t days = 0;
    for (std::int64_t year = -4799; year <= 9999; ++year) {
        for (int month = 1; month <= 12; ++month) {
            for (int day = 1; day <= length_of(year, month); ++day, ++days) {
                if (days_since_1960(month, day, historical(year)) != expected++) ++wrong;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(days, 5405223) << "37 eras of 146097 days less one leap year";
    EXPECT_EQ(expected, 2936550) << "1 January 10000";
}

struct DayCase {
    std::int32_t month, day, year;
    std::int64_t expected;
    const char* source;
};

TEST(DateService, SingleDays) {
    constexpr const char* python = "the day formula in Python integers, divisions truncating";
    constexpr DayCase cases[] = {
        {1, 1, 1960, 0, "the epoch"},
        {2, 29, 1960, 59, "31 + 28"},
        {12, 31, 1899, -21915, "60 years of 365 days and 15 leap days before the epoch"},
        {1, 1, 1, -715509, "Python datetime, toordinal less that of 1960-01-01"},
        {12, 31, -1, -715510, "the day before"},
        {12, 31, 0, -715510, "a year 0 is the one before 1, too"},
        {1, 1, 0, -715875, "366 days before year 1"},
        {1, 1, -1, -715875, "the same year"},
        {3, 1, -4801, -2468979, "eras, the first day from which the formula and the calendar agree"},

        // parts outside their range carry on
        {2, 30, 2000, 14670, "1 March 2000"},
        {1, 0, 2000, 14609, "31 December 1999"},
        {13, 1, 2000, 14976, "1 January 2001 has 14976"},
        {14, 32, 1999, 14672, "1 February 2000 and 31 days: 3 March 2000"},
        {0, 1, 2000, 14579, "1 December 1999"},

        // extreme parts
        {1, 1, last, 784351580065, python},
        {12, 31, last, 784351580429, python},
        {1, 1, first, -784353011815, python},
        {12, 31, first, -784353011450, python},
        {last, last, last, 851861755009, python},
        {first, first, first, -851863186854, python},
    };
    for (const DayCase& row : cases) {
        EXPECT_EQ(days_since_1960(row.month, row.day, row.year), row.expected)
            << row.month << '/' << row.day << '/' << row.year << ": " << row.source;
    }
}

// Far years, spread by a prime: exact after 1 March of -4801, within two days before it.
TEST(DateService, FarYears) {
    constexpr std::int64_t stride = 1999993;
    int checked = 0;
    for (std::int64_t year = std::int64_t{first} + 1; year <= last; year += stride, ++checked) {
        for (int month = 1; month <= 12; ++month) {
            const std::int64_t got = days_since_1960(month, length_of(year, month), historical(year));
            const std::int64_t off = got - counted(year, month, length_of(year, month));
            EXPECT_LE(std::abs(off), year > -4800 ? 0 : 2) << year << '/' << month;
        }
    }
    EXPECT_EQ(checked, 2148);
}

// A date that the module has split comes back as the day that it was, however early.
TEST(DateService, GivesBackTheModulesDays) {
    constexpr std::int64_t span = 784000000000;  // years of 32 bits hold this many days on either side
    int checked = 0;
    for (std::int64_t days = -span; days <= span; days += 123456791, ++checked) {
        CalendarDate date{};
        date.julianDay = days + HOST_EPOCH_JULIAN_DAY;
        zgetMonthDayYear(&date);
        EXPECT_EQ(days_since_1960(date.month, date.day, date.year), date.julianDay - HOST_EPOCH_JULIAN_DAY) << days;
    }
    EXPECT_EQ(checked, 12701);
}

}  // namespace
}  // namespace finance::test
