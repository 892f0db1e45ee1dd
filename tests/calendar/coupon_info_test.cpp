// The coupon dates around one date, and counts of coupons: single cases.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calendar/coupon_schedule.hpp"
#include "tests/calendar/dates.hpp"

namespace finance::test {
namespace {

struct Found {
    CouponInfo info{};
    CalendarDate settlement;
    CalendarDate maturity;
    CouponTerms terms;
    Found(const CalendarDate& on, const CalendarDate& until, std::int32_t frequency, std::int32_t basis,
          std::uint32_t requests)
        : settlement{on}, maturity{until}, terms{coupon_terms(frequency, basis)} {
        info.settlement = &settlement;
        info.maturity = &maturity;
        info.terms = &terms;
        info.requests = requests;
        FindCouponInfo(&info);
    }
    Found(const Found&) = delete;
    Found& operator=(const Found&) = delete;
};

// ---- Dates

struct Row {
    std::string id;
    CalendarDate settlement;
    CalendarDate maturity;
    std::int32_t frequency;
    std::uint32_t requests;
    CalendarDate previous;
    CalendarDate next;
    bool coincides;
};

const std::vector<Row> rows{
    {"on a coupon date", date_of(2008, 5, 15), date_of(2010, 11, 15), 2, 0, date_of(2008, 5, 15), date_of(2008, 11, 15),
     true},
    {"on a coupon date, days of the period asked", date_of(2008, 5, 15), date_of(2010, 11, 15), 2,
     REQUEST_DAYS_IN_PERIOD, date_of(2007, 11, 15), date_of(2008, 11, 15), true},
    {"on the anniversary", date_of(2008, 11, 15), date_of(2010, 11, 15), 2, 0, date_of(2008, 11, 15),
     date_of(2009, 5, 15), true},
    {"on the anniversary, days of the period asked", date_of(2008, 11, 15), date_of(2010, 11, 15), 2,
     REQUEST_DAYS_IN_PERIOD, date_of(2008, 11, 15), date_of(2009, 5, 15), true},
    {"month ends, June", date_of(2007, 6, 1), date_of(2010, 3, 31), 4, 0, date_of(2007, 3, 31), date_of(2007, 6, 30),
     false},
    {"month ends, September", date_of(2007, 7, 1), date_of(2010, 3, 31), 4, 0, date_of(2007, 6, 30),
     date_of(2007, 9, 30), false},
    {"month ends, December", date_of(2007, 10, 1), date_of(2010, 3, 31), 4, 0, date_of(2007, 9, 30),
     date_of(2007, 12, 31), false},
    {"month ends, March", date_of(2008, 1, 1), date_of(2010, 3, 31), 4, 0, date_of(2007, 12, 31), date_of(2008, 3, 31),
     false},
    {"29 February, before August", date_of(2007, 6, 10), date_of(2008, 2, 29), 2, 0, date_of(2007, 2, 28),
     date_of(2007, 8, 31), false},
    {"29 February, after August", date_of(2007, 10, 10), date_of(2008, 2, 29), 2, 0, date_of(2007, 8, 31),
     date_of(2008, 2, 29), false},
    {"28 February, anchor moved past settlement", date_of(2004, 2, 28), date_of(2007, 2, 28), 2, 0,
     date_of(2003, 8, 31), date_of(2004, 2, 29), false},
    {"28 February, anchor moved onto settlement", date_of(2004, 2, 29), date_of(2007, 2, 28), 2, 0,
     date_of(2004, 2, 29), date_of(2004, 8, 31), true},
    {"30 December keeps aiming for the 30th", date_of(2007, 3, 15), date_of(2010, 12, 30), 12, 0, date_of(2007, 2, 28),
     date_of(2007, 3, 30), false},
    {"settlement on maturity", date_of(2010, 11, 15), date_of(2010, 11, 15), 2, 0, date_of(2010, 11, 15),
     date_of(2011, 5, 15), true},
    {"settlement after maturity", date_of(2012, 6, 1), date_of(2010, 11, 15), 2, 0, date_of(2012, 5, 15),
     date_of(2012, 11, 15), false},
};

TEST(CouponInfo, Dates) {
    for (const Row& row : rows) {
        const Found got{row.settlement, row.maturity, row.frequency, BASIS_30_360, row.requests};
        EXPECT_TRUE(same_date(*got.info.previousCoupon, row.previous)) << row.id << ": " << *got.info.previousCoupon;
        EXPECT_TRUE(same_date(*got.info.nextCoupon, row.next)) << row.id << ": " << *got.info.nextCoupon;
        EXPECT_EQ(got.info.previousCoupon, &got.info.previousCouponSlot) << row.id;
        EXPECT_EQ(got.info.nextCoupon, &got.info.nextCouponSlot) << row.id;
        ASSERT_EQ(got.info.coincidentCoupon, row.coincides ? &got.info.coincidentSlot : nullptr) << row.id;
        if (row.coincides) {
            EXPECT_TRUE(same_date(*got.info.coincidentCoupon, row.settlement)) << row.id;
        }
    }
}

// A coupon date found backwards from an anchor that the month's end moved past settlement. No two real dates do that:
// the month before has ended. The settlement here has the day number of another date.
TEST(CouponInfo, BackwardCoincidence) {
    CalendarDate maturity = date_of(2007, 2, 15);
    maturity.endOfMonth = 1;  // aims for 28 February
    CalendarDate settlement = date_of(2007, 2, 20);
    settlement.julianDay = date_of(2007, 1, 31).julianDay;
    Found got{settlement, maturity, 12, BASIS_30_360, 0};
    EXPECT_TRUE(same_date(*got.info.previousCoupon, date_of(2007, 1, 31))) << *got.info.previousCoupon;
    EXPECT_TRUE(same_date(*got.info.nextCoupon, date_of(2007, 2, 28))) << *got.info.nextCoupon;
    ASSERT_NE(got.info.coincidentCoupon, nullptr);
    Found with{settlement, maturity, 12, BASIS_30_360, REQUEST_DAYS_IN_PERIOD};
    EXPECT_TRUE(same_date(*with.info.previousCoupon, date_of(2006, 12, 31))) << *with.info.previousCoupon;
    EXPECT_TRUE(same_date(*with.info.nextCoupon, date_of(2007, 2, 28))) << *with.info.nextCoupon;
    EXPECT_TRUE(same_date(*with.info.coincidentCoupon, date_of(2007, 1, 31))) << *with.info.coincidentCoupon;
}

// The anchor aims for the maturity's own day, whatever the record aimed for.
TEST(CouponInfo, AnchorAimsForTheMaturitysDay) {
    CalendarDate maturity = date_of(2010, 11, 15);
    maturity.anchorDay = 20;
    const Found got{date_of(2008, 1, 31), maturity, 2, BASIS_30_360, 0};
    EXPECT_TRUE(same_record(*got.info.previousCoupon, date_of(2007, 11, 15))) << *got.info.previousCoupon;
    EXPECT_TRUE(same_record(*got.info.nextCoupon, date_of(2008, 5, 15))) << *got.info.nextCoupon;
}

TEST(CouponInfo, NoMaturityLeavesAllButThePointers) {
    CouponInfo info{};
    const CalendarDate settlement = date_of(2007, 2, 20);
    CouponTerms terms = coupon_terms(2, 0);
    info.settlement = &settlement;
    info.terms = &terms;
    info.requests = 7;
    info.coincidentCoupon = &info.coincidentSlot;
    info.daysSincePrevious = info.daysToNext = info.daysInPeriod = 77.0;
    FindCouponInfo(&info);
    EXPECT_EQ(info.previousCoupon, &info.previousCouponSlot);
    EXPECT_EQ(info.nextCoupon, &info.nextCouponSlot);
    EXPECT_EQ(info.coincidentCoupon, nullptr);
    EXPECT_EQ(info.previousCouponSlot.julianDay, 0);
    EXPECT_EQ(info.nextCouponSlot.julianDay, 0);
    EXPECT_EQ(info.daysSincePrevious, 77.0);
    EXPECT_EQ(info.daysToNext, 77.0);
    EXPECT_EQ(info.daysInPeriod, 77.0);
}

// ---- Days on request

struct Days {
    std::int32_t basis;
    double since;
    double to;
    double in_period;
    double period;  // periodDays of the terms, which the counts may not change
};

TEST(CouponInfo, DaysOnRequest) {
    // 15 November 2007, 31 January 2008, 15 May 2008
    const std::vector<Days> days{{BASIS_30_360, 75, 104, 180, 180},
                                 {BASIS_ACTUAL, 77, 105, 182, 1.7976931348623157e308},
                                 {BASIS_ACT_360, 77, 105, 180, 180},
                                 {BASIS_ACT_365, 77, 105, 182.5, 182.5},
                                 {BASIS_EU30_360, 75, 105, 180, 180}};
    for (const Days& row : days) {
        for (std::uint32_t requests = 0; requests < 8; ++requests) {
            const Found got{date_of(2008, 1, 31), date_of(2010, 11, 15), 2, row.basis, requests};
            EXPECT_EQ(got.info.daysSincePrevious, (requests & 1) != 0 ? row.since : 0.0)
                << row.basis << ' ' << requests;
            EXPECT_EQ(got.info.daysToNext, (requests & 2) != 0 ? row.to : 0.0) << row.basis << ' ' << requests;
            EXPECT_EQ(got.info.daysInPeriod, (requests & 4) != 0 ? row.in_period : 0.0) << row.basis << ' ' << requests;
            EXPECT_EQ(got.terms.periodDays, row.period) << row.basis << ' ' << requests;
        }
    }
}

// Under ACTUAL the period asked for begins at settlement; the days since the previous coupon go back to the one before.
TEST(CouponInfo, DaysOnACouponDate) {
    const Found got{date_of(2008, 5, 15), date_of(2010, 11, 15), 2, BASIS_ACTUAL, 7};
    EXPECT_EQ(got.info.daysSincePrevious, 182.0);
    EXPECT_EQ(got.info.daysToNext, 184.0);
    EXPECT_EQ(got.info.daysInPeriod, 184.0);
    const Found without{date_of(2008, 5, 15), date_of(2010, 11, 15), 2, BASIS_ACTUAL, 3};
    EXPECT_EQ(without.info.daysSincePrevious, 0.0);
    EXPECT_EQ(without.info.daysToNext, 184.0);
}

// ---- Counts

struct Counted {
    std::string id;
    CalendarDate date;
    CalendarDate maturity;
    std::int32_t frequency;
    double coupons;
    double whole;
};

TEST(CouponCounts, SingleCases) {
    const std::vector<Counted> cases{
        {"on a coupon date", date_of(2008, 5, 15), date_of(2010, 11, 15), 2, 5, 5},
        {"a day before one", date_of(2008, 5, 14), date_of(2010, 11, 15), 2, 6, 5},
        {"a day after one", date_of(2008, 5, 16), date_of(2010, 11, 15), 2, 5, 4},
        {"on the anniversary", date_of(2008, 11, 15), date_of(2010, 11, 15), 2, 4, 4},
        {"after the anniversary", date_of(2008, 11, 16), date_of(2010, 11, 15), 2, 4, 3},
        {"on maturity", date_of(2010, 11, 15), date_of(2010, 11, 15), 2, 0, 0},
        {"a day before maturity", date_of(2010, 11, 14), date_of(2010, 11, 15), 12, 1, 0},
        // 28 February stands for its anniversary in the leap year, though the coupon is due on the 29th
        {"28 February of a leap year", date_of(2004, 2, 28), date_of(2007, 2, 28), 2, 6, 6},
        {"27 February of a leap year", date_of(2004, 2, 27), date_of(2007, 2, 28), 2, 7, 6},
        {"29 February, a coupon date", date_of(2004, 2, 29), date_of(2007, 2, 28), 2, 6, 6},
        // 29 February of a common year stands for 1 March, though the coupon was due on the 28th
        {"28 February, a coupon date", date_of(2007, 2, 28), date_of(2008, 2, 29), 2, 3, 2},
        {"1 March after it", date_of(2007, 3, 1), date_of(2008, 2, 29), 2, 2, 2},
        {"2 March", date_of(2007, 3, 2), date_of(2008, 2, 29), 2, 2, 1},
    };
    const CalendarDate spare = date_of(1970, 1, 1);
    for (const Counted& row : cases) {
        const CouponTerms terms = coupon_terms(row.frequency, BASIS_30_360);
        for (const CalendarDate* unread : {&row.maturity, &spare, static_cast<const CalendarDate*>(nullptr)}) {
            EXPECT_EQ(CountTheCoupons(&row.date, &row.maturity, unread, &terms), row.coupons) << row.id;
            EXPECT_EQ(CountWholeCoupons(&row.date, &row.maturity, unread, &terms), row.whole) << row.id;
        }
    }
}

}  // namespace
}  // namespace finance::test
