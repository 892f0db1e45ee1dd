// What reads as a date, and as which: by the days between it and another one.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/adapters/sqlite/database.hpp"

namespace finance::test {

namespace {

struct DateCase {
    const char* sql;
    double days;  // since 1960-01-01
    const char* source;
};

constexpr const char* python = "Python datetime, toordinal less that of 1960-01-01";
constexpr const char* almanac = "Julian day 2440587.5 is 1970-01-01, 3653 days after 1960-01-01";

constexpr DateCase whole_days[] = {
    {"'1960-01-01'", 0, "the epoch"},
    {"'2008-02-15'", 17577, python},
    {"'9999-12-31'", 2936549, python},
    {"'2008-02-15 00:00'", 17577, "midnight"},
    {"'2008-02-15 00:00:00'", 17577, "midnight"},
    {"'2008-02-15T00:00:00.000'", 17577, "midnight"},
    {"date('2008-02-15')", 17577, python},
    {"datetime('2008-02-15')", 17577, python},
    {"17577", 17577, "days as they are"},
    {"17577.0", 17577, "days as they are"},
    {"1999999", 1999999, "the largest number of days"},
    {"2440587.5", 3653, almanac},
    {"julianday('2008-02-15')", 17577, python},
    {"julianday('9999-12-31')", 2936549, python},
};

TEST(SqliteDates, AreTextOrANumber) {
    const Database database;
    for (const DateCase& row : whole_days) {
        const double fraction =
            database.number(std::string{"SELECT fin_yearfrac('1960-01-01', "} + row.sql + ", 'ACT/360')");
        EXPECT_EQ(std::round(fraction * 360.0), row.days) << row.sql << ": " << row.source;
        EXPECT_NEAR(fraction * 360.0, row.days, 1e-6) << row.sql;
    }
}

// Settlement at the start of the day 2025-01-20, which is day 23761; at a discount of 0.36 a day takes 0.1 off the price.
constexpr DateCase days_with_time[] = {
    {"'2025-01-30'", 23771, "10 days"},
    {"'2025-01-30 12:00'", 23771.5, "noon"},
    {"'2025-01-30T06:00:00'", 23771.25, "a quarter of the day"},
    {"'2025-01-30 18:00:43.2'", 23771.7505, "43.2 s are 0.0005 of 86,400"},
    {"23771.5", 23771.5, "days as they are"},
    {"2460706.0", 23771.5, "a whole Julian day begins at noon"},
};

TEST(SqliteDates, HaveATimeOfDayWhereItCounts) {
    const Database database;
    for (const DateCase& row : days_with_time) {
        const double price = database.number(std::string{"SELECT fin_tbillprice('2025-01-20', "} + row.sql + ", 0.36)");
        EXPECT_NEAR((100.0 - price) * 10.0, row.days - 23761.0, 1e-9) << row.sql << ": " << row.source;
    }
}

struct RefusalCase {
    const char* sql;
    const char* reason;
};

constexpr const char* no_date = " is not a date: text as in 2008-02-15, days since 1960-01-01, or a Julian day";

constexpr RefusalCase refusals[] = {
    {"''", "''"},
    {"'17577'", "'17577'"},
    {"'20080215'", "'20080215'"},
    {"'2008-02-30'", "'2008-02-30'"},
    {"'2008-2-15'", "'2008-2-15'"},
    {"'2008-02-15 '", "'2008-02-15 '"},
    {"' 2008-02-15'", "' 2008-02-15'"},
    {"'2008-02-15x'", "'2008-02-15x'"},
    {"'2008-02-15 24:00'", "'2008-02-15 24:00'"},
    {"'2008-02-15 00:60'", "'2008-02-15 00:60'"},
    {"'2008-02-15 00:00:60'", "'2008-02-15 00:00:60'"},
    {"'2008-02-15 00:00:'", "'2008-02-15 00:00:'"},
    {"'2008-02-15 00:00:00.'", "'2008-02-15 00:00:00.'"},
    {"'2008-02-15 00:00Z'", "'2008-02-15 00:00Z'"},
    {"'2008-02-15 0000'", "'2008-02-15 0000'"},
    {"x'3230'", "a blob"},
};

TEST(SqliteDates, NothingElseIs) {
    const Database database;
    for (const RefusalCase& row : refusals) {
        EXPECT_EQ(database.error(std::string{"SELECT fin_yearfrac('1960-01-01', "} + row.sql + ')'),
                  std::string{"YEARFRAC: argument 2 (endDate): "} + row.reason + no_date);
    }
}

TEST(SqliteDates, AreWholeDaysWhereATimeWouldNotCount) {
    const Database database;
    EXPECT_EQ(database.error("SELECT fin_yearfrac('1960-01-01', '2008-02-15 00:00:01')"),
              "YEARFRAC: argument 2 (endDate): '2008-02-15 00:00:01' has a time of day, but whole days are wanted");
    EXPECT_EQ(database.error("SELECT fin_yearfrac('1960-01-01', 2440588)"),
              "YEARFRAC: argument 2 (endDate): 3653.5 is not a whole number");
}

TEST(SqliteDates, AreAnsweredAsTextThatReadsBack) {
    const Database database;
    EXPECT_EQ(database.text("SELECT fin_coupncd('2025-01-20', '2030-11-15', 2)"), "2025-05-15");
    EXPECT_EQ(database.text("SELECT fin_coupncd(fin_coupncd('2025-01-20', '2030-11-15', 2), '2030-11-15', 2)"),
              "2025-11-15");
}

// 2026-05-15 is 8000 years before 10026-05-15, which is 20 times 400 years of 146,097 days: the calendar repeats.
TEST(SqliteDates, BeyondTheYear9999AreNotMeant) {
    const Database database;
    EXPECT_EQ(database.error("SELECT fin_coupncd(julianday('2026-01-20') + 20 * 146097, '2030-11-15', 2)"),
              "COUPNCD: argument 1 (settlement): 2946066 is no day of the years 1 to 9999, counted from 1960-01-01");
}

// 10 September is 113 days before the year 1, whose first day is 715,509 days before 1960-01-01.
TEST(SqliteDates, BeforeTheYear1AreAnsweredAsDays) {
    const Database database;
    EXPECT_EQ(database.number("SELECT fin_couppcd('0001-01-05', '0001-03-10', 2)"), -715509 - 113);
}

}  // namespace

}  // namespace finance::test
