// Dates as text and as days since 1960-01-01.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "catalogue/text.hpp"

namespace finance::test {
namespace {

struct DateCase {
    const char* text;
    double days;
    const char* source;
};

constexpr const char* python = "Python datetime, toordinal less that of 1960-01-01";

constexpr DateCase cases[] = {
    {"1960-01-01", 0, "the epoch"},  {"1959-12-31", -1, "the day before"}, {"1960-02-29", 59, "31 + 28"},
    {"1960-03-01", 60, "31 + 29"},   {"2008-02-15", 17577, python},        {"0001-01-01", -715509, python},
    {"9999-12-31", 2936549, python}, {"1582-10-15", -137774, python},      {"1900-03-01", -21855, python},
    {"2000-02-29", 14669, python},   {"1600-02-29", -131428, python},
};

TEST(HostDate, BothWays) {
    for (const DateCase& row : cases) {
        EXPECT_EQ(catalogue::host_date(row.text), row.days) << row.text << ": " << row.source;
        EXPECT_EQ(catalogue::iso_date(row.days), row.text) << row.days << ": " << row.source;
    }
}

TEST(HostDate, NotADate) {
    for (const char* text : {"", "2008", "2008-2-15", "08-02-15", "2008-02-30", "1900-02-29", "2008-13-01",
                             "2008-00-01", "2008-01-00", "2008-04-31", "0000-01-01", "2008/02/15", "2008-02-15 ",
                             "+008-02-15", "-001-02-15", "20080-02-15", "2008-02-1x"}) {
        EXPECT_FALSE(catalogue::host_date(text)) << '\'' << text << '\'';
    }
}

TEST(HostDate, NoDateToWrite) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double days : {0.5, -715510.0, 2936550.0, 1e300, -1e300, infinity, -infinity, nan}) {
        EXPECT_FALSE(catalogue::iso_date(days)) << days;
    }
}

// A calendar walked day by day: month lengths and the leap rule are all that it knows.
TEST(HostDate, EveryDayOfFiveHundredYears) {
    constexpr int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    double day = 0;
    for (int year = 1960; year < 2460; ++year) {
        const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        for (int month = 1; month <= 12; ++month) {
            const int last = lengths[month - 1] + (leap && month == 2 ? 1 : 0);
            for (int d = 1; d <= last; ++d, ++day) {
                char text[16];
                std::snprintf(text, sizeof text, "%04d-%02d-%02d", year % 10000, month % 100, d % 100);
                ASSERT_EQ(catalogue::host_date(text), day);
                ASSERT_EQ(catalogue::iso_date(day), text);
            }
        }
    }
    EXPECT_EQ(day, 182622) << "500 years of 365 days and 122 leap days: 125 less 2100, 2200 and 2300";
}

}  // namespace
}  // namespace finance::test
