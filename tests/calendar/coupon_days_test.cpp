// Days inside a coupon period, and stretches as fractions of periods.
#include "calendar/coupon_days.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"

namespace finance::test {
namespace {

constexpr double unset = 12345.5;

CouponTerms unset_terms(std::int32_t frequency, std::int32_t basis) {
    CouponTerms terms = coupon_terms(frequency, basis);
    terms.dayCount = unset;
    terms.cappedDayCount = unset;
    terms.countYearLength = unset;
    return terms;
}

// ---- 30/360 in its month-end variant

struct MonthEnd {
    std::string id;
    CalendarDate start;
    CalendarDate end;
    double variant;  // before the cap of a year's 360 days
    double plain;    // with couponDayRule
};

const std::vector<MonthEnd> month_ends{
    {"31 January to the end of February: both begin a month", date_of(2001, 1, 31), date_of(2001, 2, 28), 30, 29},
    {"30 January is no month end", date_of(2001, 1, 30), date_of(2001, 2, 28), 30, 30},
    {"31 January to 27 February", date_of(2001, 1, 31), date_of(2001, 2, 27), 26, 26},
    {"31 January to 28 February of a leap year", date_of(2000, 1, 31), date_of(2000, 2, 28), 27, 27},
    {"31 March to 30 June: both begin a month", date_of(2001, 3, 31), date_of(2001, 6, 30), 90, 90},
    {"31 March to 30 July: a 30th begins one too", date_of(2001, 3, 31), date_of(2001, 7, 30), 120, 120},
    {"31 March to 29 July", date_of(2001, 3, 31), date_of(2001, 7, 29), 118, 118},
    {"30 April to 31 May", date_of(2001, 4, 30), date_of(2001, 5, 31), 30, 30},
    {"30 April to 15 May: a 30th that ends its month waits", date_of(2001, 4, 30), date_of(2001, 5, 15), 14, 15},
    {"end of February as a start stays", date_of(2001, 2, 28), date_of(2001, 3, 31), 32, 32},
    {"end of February to end of August", date_of(2001, 2, 28), date_of(2001, 8, 31), 182, 182},
    {"end of August to end of February", date_of(2001, 8, 31), date_of(2002, 2, 28), 180, 179},
    {"15 August to end of February", date_of(2001, 8, 15), date_of(2002, 2, 28), 195, 195},
    {"15 January to 31 January: day 31 counts as 30", date_of(2001, 1, 15), date_of(2001, 1, 31), 15, 15},
    {"31 December to 31 January: two years carried", date_of(2001, 12, 31), date_of(2002, 1, 31), 30, 30},
    {"30 November to 31 December", date_of(2001, 11, 30), date_of(2001, 12, 31), 30, 30},
    {"a 30th of a long month is no month end", date_of(2001, 1, 30), date_of(2001, 2, 15), 15, 15},
    {"no days", date_of(2001, 1, 31), date_of(2001, 1, 31), 0, 0},
};

TEST(CouponDays, MonthEndVariant) {
    for (const MonthEnd& row : month_ends) {
        CouponTerms terms = unset_terms(1, BASIS_30_360);
        EXPECT_EQ(CountTheCouponDays(&row.start, &row.end, &terms), row.variant) << row.id;
        EXPECT_EQ(terms.dayCount, row.variant) << row.id;
        EXPECT_EQ(terms.cappedDayCount, row.variant) << row.id;
        EXPECT_EQ(terms.countYearLength, 360.0) << row.id;
    }
}

TEST(CouponDays, MonthEndVariantIsAtMostAPeriod) {
    for (const std::int32_t frequency : {1, 2, 4, 6, 12}) {
        for (const MonthEnd& row : month_ends) {
            CouponTerms terms = unset_terms(frequency, BASIS_30_360);
            const double capped = row.variant < 360.0 / frequency ? row.variant : 360.0 / frequency;
            EXPECT_EQ(CountTheCouponDays(&row.start, &row.end, &terms), capped) << row.id << ' ' << frequency;
            EXPECT_EQ(terms.dayCount, capped) << row.id;
            EXPECT_EQ(terms.cappedDayCount, capped) << row.id;
            EXPECT_EQ(terms.periodDays, 360.0 / frequency) << row.id;
        }
    }
}

TEST(CouponDays, PlainRuleIsNotCappedAndWritesTheCountOnly) {
    for (const MonthEnd& row : month_ends) {
        CouponTerms terms = unset_terms(12, BASIS_30_360);
        terms.couponDayRule = 1;
        EXPECT_EQ(CountTheCouponDays(&row.start, &row.end, &terms), row.plain) << row.id;
        EXPECT_EQ(terms.dayCount, row.plain) << row.id;
        EXPECT_EQ(terms.cappedDayCount, unset) << row.id;
        EXPECT_EQ(terms.countYearLength, unset) << row.id;
    }
}

// ---- The other bases

struct Count {
    std::int32_t basis;
    double days;
    double capped;
    double year;
};

TEST(CouponDays, OtherBases) {
    // 30 April to 31 July 2001, a period of a quarter: 92 days
    const CalendarDate start = date_of(2001, 4, 30);
    const CalendarDate end = date_of(2001, 7, 31);
    for (const Count& row : {Count{BASIS_ACTUAL, 92, 92, 1}, Count{BASIS_ACT_360, 92, 90, 360},
                             Count{BASIS_ACT_365, 92, 91.25, 365}, Count{BASIS_EU30_360, 90, 90, 360}}) {
        CouponTerms terms = unset_terms(4, row.basis);
        EXPECT_EQ(CountTheCouponDays(&start, &end, &terms), row.days) << row.basis;
        EXPECT_EQ(terms.dayCount, row.days) << row.basis;
        EXPECT_EQ(terms.cappedDayCount, row.capped) << row.basis;
        EXPECT_EQ(terms.countYearLength, row.year) << row.basis;
    }
}

TEST(CouponDays, EuropeanCountBesideItsCap) {
    const CalendarDate start = date_of(2001, 2, 28);
    const CalendarDate end = date_of(2001, 3, 31);
    CouponTerms terms = unset_terms(12, BASIS_EU30_360);
    EXPECT_EQ(CountTheCouponDays(&start, &end, &terms), 32.0);
    EXPECT_EQ(terms.dayCount, 32.0);
    EXPECT_EQ(terms.cappedDayCount, 30.0);
}

TEST(CouponDays, UnknownBasisKeepsTheLastCount) {
    const CalendarDate start = date_of(2001, 2, 28);
    const CalendarDate end = date_of(2001, 3, 31);
    CouponTerms terms = unset_terms(4, 5);
    EXPECT_EQ(CountTheCouponDays(&start, &end, &terms), unset);
    EXPECT_EQ(terms.cappedDayCount, unset);
    EXPECT_EQ(terms.countYearLength, unset);
}

// Day 31 is never added here.
TEST(CouponDays, NoDay31Adjustment) {
    const CalendarDate start = date_of(2001, 1, 15);
    const CalendarDate end = date_of(2001, 1, 31);
    for (const std::int32_t rule : {0, 1}) {
        CouponTerms terms = unset_terms(1, BASIS_30_360);
        terms.day31Adjust = 1;
        terms.couponDayRule = rule;
        EXPECT_EQ(CountTheCouponDays(&start, &end, &terms), 15.0);
    }
}

// ---- Fractions of one period

TEST(CouponProportion, DaysOverThePeriod) {
    // 15 May to 15 November 2001: 184 days; 100 of them until 23 August
    const CalendarDate from = date_of(2001, 5, 15);
    const CalendarDate to = date_of(2001, 11, 15);
    const CalendarDate until = date_of(2001, 8, 23);
    const std::vector<std::pair<std::int32_t, double>> rows{{BASIS_30_360, 98 / 180.0},
                                                            {BASIS_ACTUAL, 100 / 184.0},
                                                            {BASIS_ACT_360, 100 / 180.0},
                                                            {BASIS_ACT_365, 100 / 182.5},
                                                            {BASIS_EU30_360, 98 / 180.0}};
    for (const auto& [basis, expected] : rows) {
        CouponTerms terms = coupon_terms(2, basis);
        EXPECT_EQ(Compute1CouponProportion(&from, &until, &from, &to, &terms), expected) << basis;
        terms.proportionFloor = 1;
        EXPECT_EQ(Compute1CouponProportion(&from, &until, &from, &to, &terms), 1.0) << basis;
    }
}

TEST(CouponProportion, TheFloorLeavesLongerOnesAlone) {
    const CalendarDate from = date_of(2001, 5, 15);
    const CalendarDate to = date_of(2001, 11, 15);
    CouponTerms terms = coupon_terms(2, BASIS_ACT_360);
    terms.proportionFloor = 1;
    EXPECT_EQ(Compute1CouponProportion(&from, &to, &from, &to, &terms), 184 / 180.0);
    // nothing over nothing is not below one
    terms = coupon_terms(2, BASIS_ACTUAL);
    terms.proportionFloor = 1;
    EXPECT_TRUE(std::isnan(Compute1CouponProportion(&from, &from, &to, &to, &terms)));
}

// ---- Stretches of several periods

struct Stretch {
    std::string id;
    CalendarDate start;
    CalendarDate end;
    std::int32_t basis;
    double expected;
};

TEST(CouponProportions, Stretches) {
    // coupon dates 15 May and 15 November; periods of 184 and 181 days, 182 with a 29 February
    const CalendarDate maturity = date_of(2010, 11, 15);
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<Stretch> rows{
        {"within one period", date_of(2001, 6, 15), date_of(2001, 9, 15), BASIS_ACTUAL, 92 / 184.0},
        {"up to the coupon date", date_of(2001, 6, 15), date_of(2001, 11, 15), BASIS_ACTUAL, 153 / 184.0},
        {"over one coupon date", date_of(2001, 6, 15), date_of(2001, 12, 15), BASIS_ACTUAL, 153 / 184.0 + 30 / 181.0},
        {"up to the second coupon date", date_of(2001, 6, 15), date_of(2002, 5, 15), BASIS_ACTUAL,
         153 / 184.0 + 181 / 181.0},
        {"one whole period between", date_of(2001, 6, 15), date_of(2002, 6, 15), BASIS_ACTUAL,
         153 / 184.0 + 1.0 + 31 / 184.0},
        {"30/360", date_of(2001, 6, 15), date_of(2002, 6, 15), BASIS_30_360, 150 / 180.0 + 1.0 + 30 / 180.0},
        {"ACT/360", date_of(2001, 6, 15), date_of(2002, 6, 15), BASIS_ACT_360, 153 / 180.0 + 181 / 180.0 + 31 / 180.0},
        {"ACT/365", date_of(2001, 6, 15), date_of(2002, 6, 15), BASIS_ACT_365, 153 / 182.5 + 181 / 182.5 + 31 / 182.5},
        {"EU30/360", date_of(2001, 6, 15), date_of(2002, 6, 15), BASIS_EU30_360, 150 / 180.0 + 1.0 + 30 / 180.0},
        {"from a coupon date over the next", date_of(2001, 5, 15), date_of(2001, 12, 15), BASIS_ACTUAL,
         1.0 + 30 / 181.0},
        {"from a coupon date, within its period, fixed length", date_of(2001, 5, 15), date_of(2001, 8, 15),
         BASIS_30_360, 90 / 180.0},
        {"from a coupon date, within its period: an empty divisor", date_of(2001, 5, 15), date_of(2001, 8, 15),
         BASIS_ACTUAL, inf},
    };
    for (const Stretch& row : rows) {
        CouponTerms terms = coupon_terms(2, row.basis);
        EXPECT_EQ(ComputeCouponProportions(&row.start, &row.end, &maturity, &terms), row.expected) << row.id;
    }
    CouponTerms terms = coupon_terms(2, BASIS_ACTUAL);
    const CalendarDate coupon = date_of(2001, 5, 15);
    EXPECT_TRUE(std::isnan(ComputeCouponProportions(&coupon, &coupon, &maturity, &terms)));
}

// ---- Settlement to the next coupon

TEST(SettlementToNextCoupon, FractionOfThePeriod) {
    const CalendarDate maturity = date_of(2010, 11, 15);
    const CalendarDate settlement = date_of(2001, 8, 15);
    const CalendarDate spare = date_of(1999, 1, 1);
    const std::vector<std::pair<std::int32_t, double>> rows{{BASIS_30_360, 90 / 180.0},
                                                            {BASIS_ACTUAL, 92 / 184.0},
                                                            {BASIS_ACT_360, 92 / 180.0},
                                                            {BASIS_ACT_365, 92 / 182.5},
                                                            {BASIS_EU30_360, 90 / 180.0}};
    for (const auto& [basis, expected] : rows) {
        CouponTerms terms = coupon_terms(2, basis);
        EXPECT_EQ(ComputeFromSettlementToNextCoupon(&settlement, &spare, &maturity, &terms), expected) << basis;
        EXPECT_EQ(ComputeFromSettlementToNextCoupon(&settlement, nullptr, &maturity, &terms), expected) << basis;
        const CalendarDate coupon = date_of(2001, 5, 15);
        EXPECT_EQ(ComputeFromSettlementToNextCoupon(&coupon, &spare, &maturity, &terms), 0.0) << basis;
    }
}

}  // namespace
}  // namespace finance::test
