// Edges of the coupon securities: order of dates, period boundaries, days beyond the period, yields at the limit.
#include <gtest/gtest.h>

#include <limits>

#include "securities/kernels.hpp"
#include "tests/securities/bonds.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr const char* by_hand = "by hand";
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_to_32 = 4294967296.0;

const double may_2008 = host_date(2008, 5, 15);
const double may_2010 = host_date(2010, 5, 15);
const double aug_2010 = host_date(2010, 8, 15);
const double nov_2010 = host_date(2010, 11, 15);
const double may_2011 = host_date(2011, 5, 15);
const double jan_2010 = host_date(2010, 1, 1);
const double mar_2010 = host_date(2010, 3, 1);
const double jan_2011 = host_date(2011, 1, 1);

const std::vector<ValueCase> regular{
    // nothing of the rest is read
    {"PRICE/settlement on maturity", "PRICE", {nov_2010, nov_2010, missing, absent, 0, 0.5, "no"}, 0.0, by_hand},
    {"YIELD/settlement on maturity", "YIELD", {nov_2010, nov_2010, 0, missing, absent, -1, 9}, 0.0, by_hand},
    {"DURATION/settlement on maturity", "DURATION", {nov_2010, nov_2010, missing, absent, 0, 9}, 0.0, by_hand},
    {"MDURATION/settlement on maturity", "MDURATION", {nov_2010, nov_2010, -1, missing, 0.5}, 0.0, by_hand},

    // on a coupon date nothing has accrued: at its own rate a bond is worth 100
    {"PRICE/coupon date, at par", "PRICE", {may_2008, nov_2010, 0.08, 0.08, 100, 2}, 100.0, by_hand, 4},
    {"PRICE/coupon date, at par, ACTUAL", "PRICE", {may_2008, nov_2010, 0.08, 0.08, 100, 2, 1}, 100.0, by_hand, 4},
    {"YIELD/coupon date, at par", "YIELD", {may_2008, nov_2010, 0.08, 100, 100, 2}, 0.08, by_hand, 16},
    {"PRICE/coupon date, one left", "PRICE", {may_2010, nov_2010, 0.08, 0.04, 98, 2}, 100.0, "(98 + 4) / 1.02", 1},

    // one coupon left, half its period gone
    {"PRICE/one coupon left",
     "PRICE",
     {aug_2010, nov_2010, 0.08, 0.08, 100, 2},
     99.96078431372549,
     "104 / 1.02 - 2",
     2},
    {"YIELD/one coupon left",
     "YIELD",
     {aug_2010, nov_2010, 0.08, 99, 100, 2},
     0.1188118811881188,
     "4 (1.04 / 1.01 - 1)",
     32},
    {"DURATION/one coupon left", "DURATION", {aug_2010, nov_2010, 0.08, 0.5, 2}, 0.25, "d / f", 1},
    {"MDURATION/one coupon left", "MDURATION", {aug_2010, nov_2010, 0.08, 0.5, 2}, 0.2, "d / f / 1.25", 1},

    // ACT/360: 180 of 180 days are gone four days before the coupon: no time is left, and then less than none
    {"DURATION/no days left", "DURATION", {host_date(2010, 11, 11), nov_2010, 0.08, 0.08, 2, 2}, 0.0, by_hand},
    {"DURATION/no days left, one more coupon",
     "DURATION",
     {host_date(2010, 11, 11), may_2011, 0.08, 0.08, 2, 2},
     50.0 / 104.0,
     "weights 1 and v: (104 v / 2) / (4 + 104 v)",
     2},
    {"DURATION/less than no days",
     "DURATION",
     {host_date(2010, 11, 13), nov_2010, 0.08, 0.5, 2, 2},
     -2.0 / 360.0,
     by_hand,
     2},
    {"PRICE/no days left", "PRICE", {host_date(2010, 11, 11), nov_2010, 0.08, 0.08, 100, 2, 2}, 100.0, "104 / 1.04", 1},
    {"PRICE/less than no days",
     "PRICE",
     {host_date(2010, 11, 13), nov_2010, 0.08, 0.08, 100, 2, 2},
     100.0,
     "104 / 1.04",
     1},
    {"YIELD/less than no days",
     "YIELD",
     {host_date(2010, 11, 13), nov_2010, 0.08, 102, 100, 2, 2},
     0.0392156862745098,
     "2 (1.04 / 1.02 - 1)",
     32},

    // 1 + y/f at least 2^-26.5
    {"PRICE/lowest yield",
     "PRICE",
     {may_2010, nov_2010, 0.08, -2 + 0x1p-25, 98, 2},
     102.0 * 0x1p26,
     "(98 + 4) / 2^-26"},
    {"DURATION/lowest yield", "DURATION", {may_2010, nov_2010, 0.08, -2 + 0x1p-25, 2}, 0.5, "d / f"},
    {"MDURATION/lowest yield", "MDURATION", {may_2010, nov_2010, 0.08, -2 + 0x1p-25, 2}, 0x1p25, "0.5 / 2^-26"},

    // a price beyond every yield: the search rests at the lowest rate it goes to
    {"YIELD/price out of reach", "YIELD", {may_2008, may_2011, 0.08, 1e300, 100, 2}, -0.9999999, by_hand},

    // texts of the basis
    {"PRICE/basis in lower case with blanks",
     "PRICE",
     {host_date(2010, 11, 13), nov_2010, 0.08, 0.08, 100, 2, "  act / 360 "},
     100.0,
     "104 / 1.04",
     1},

    // 2^32 coupons a year are kept as 0: no coupon, a period without end
    {"PRICE/frequency 2^32", "PRICE", {aug_2010, nov_2010, 0.08, 0.08, 100, two_to_32}, 0.0, by_hand},
};

const std::vector<ValueCase> accrual{
    {"ACCRINT/issue on settlement", "ACCRINT", {jan_2010, 0, jan_2010, missing, 0, absent, "no"}, 0.0, by_hand},
    {"ACCRINTM/issue on settlement", "ACCRINTM", {jan_2010, jan_2010, missing, absent, 17}, 0.0, by_hand},
    {"ACCRINT/inside the first period",
     "ACCRINT",
     {may_2010, nov_2010, aug_2010, 0.1, 1000, 2},
     25.0,
     "90/180 of 50",
     1},
    {"ACCRINT/settlement on a coupon date",
     "ACCRINT",
     {may_2008, nov_2010, nov_2010, 0.1, 1000, 2},
     250.0,
     "five periods of 50"},
    {"ACCRINT/first interest date before issue",
     "ACCRINT",
     {nov_2010, may_2008, may_2011, 0.1, 1000, 2},
     50.0,
     by_hand},
    {"ACCRINT/first interest date after settlement",
     "ACCRINT",
     {may_2008, host_date(2020, 11, 15), aug_2010, 0.1, 1000, 2},
     225.0,
     "four periods and a half"},
    // a first period that ends on settlement counts as the part that issue leaves and as a whole
    {"ACCRINT/settlement ends a part first period",
     "ACCRINT",
     {aug_2010, nov_2010, nov_2010, 0.1, 1000, 2},
     75.0,
     "(90/180 + 1) of 50",
     1},
    {"ACCRINT/settlement ends a whole first period",
     "ACCRINT",
     {may_2010, nov_2010, nov_2010, 0.1, 1000, 2},
     50.0,
     by_hand},
    // 30/360 without the cap: 31 January to 15 February is 14 days
    {"ACCRINT/plain 30/360 days",
     "ACCRINT",
     {host_date(2010, 1, 31), nov_2010, host_date(2010, 2, 15), 0.1, 1800, 2},
     7.0,
     "14/180 of 90",
     2},
    {"ACCRINTM/ACTUAL over a leap year",
     "ACCRINTM",
     {host_date(2000, 1, 1), host_date(2000, 12, 31), 0.5, 732, 1},
     365.0,
     "365/366 of 366",
     2},
};

const std::vector<ValueCase> odd_periods{
    {"ODDFPRICE/settlement on issue",
     "ODDFPRICE",
     {jan_2010, may_2011, jan_2010, nov_2010, 0, missing, 0, 0},
     0.0,
     by_hand},
    {"ODDFYIELD/settlement on issue", "ODDFYIELD", {jan_2010, 0, jan_2010, 0, 0, missing, 0, 0}, 0.0, by_hand},
    {"ODDFPRICE/settlement on first coupon",
     "ODDFPRICE",
     {nov_2010, may_2008, jan_2010, nov_2010, 0, 0, 0, 0},
     0.0,
     by_hand},
    {"ODDFYIELD/settlement on first coupon",
     "ODDFYIELD",
     {nov_2010, may_2011, jan_2010, nov_2010, 0, 0, 0, 0},
     0.0,
     by_hand},
    {"ODDFPRICE/first coupon on maturity",
     "ODDFPRICE",
     {mar_2010, nov_2010, jan_2010, nov_2010, 0, 0, 0, 0},
     0.0,
     by_hand},
    {"ODDFYIELD/first coupon on maturity",
     "ODDFYIELD",
     {mar_2010, nov_2010, jan_2010, nov_2010, 0, 0, 0, 0},
     0.0,
     by_hand},
    {"ODDLPRICE/settlement on maturity", "ODDLPRICE", {nov_2010, nov_2010, may_2011, 0, missing, 0, 0}, 0.0, by_hand},
    {"ODDLYIELD/settlement on maturity", "ODDLYIELD", {nov_2010, nov_2010, may_2011, 0, missing, 0, 0}, 0.0, by_hand},
    {"ODDLPRICE/settlement on last interest",
     "ODDLPRICE",
     {nov_2010, may_2011, nov_2010, 0, absent, 0, 0},
     0.0,
     by_hand},
    {"ODDLYIELD/settlement on last interest",
     "ODDLYIELD",
     {nov_2010, may_2011, nov_2010, 0, absent, 0, 0},
     0.0,
     by_hand},
    // half a period gone, half left, on the schedule of maturity
    {"ODDLPRICE/half a period",
     "ODDLPRICE",
     {aug_2010, nov_2010, may_2010, 0.08, 0.08, 100, 2},
     99.96078431372549,
     "104 / 1.02 - 2",
     2},
    {"ODDLYIELD/half a period",
     "ODDLYIELD",
     {aug_2010, nov_2010, may_2010, 0.08, 99, 100, 2},
     0.1188118811881188,
     "4 (104 / 101 - 1)",
     32},
};

const std::vector<ValueCase> at_maturity{
    {"YIELDMAT/settlement on maturity", "YIELDMAT", {jan_2011, jan_2011, jan_2010, missing, 0, 9}, 0.0, by_hand},
    {"YIELDMAT/settlement on maturity, issue after it", "YIELDMAT", {jan_2010, jan_2010, jan_2011, 0, 0}, 0.0, by_hand},
    {"PRICEMAT/issue on maturity", "PRICEMAT", {jan_2010, jan_2011, jan_2011, missing, absent, 9}, 0.0, by_hand},
    {"YIELDMAT/issue on maturity", "YIELDMAT", {jan_2010, jan_2011, jan_2011, missing, absent, 9}, 0.0, by_hand},
    // issued two months after settlement: -60/360 of a year has accrued
    {"PRICEMAT/issue after settlement",
     "PRICEMAT",
     {jan_2010, jan_2011, mar_2010, 0.06, 0.05, 0},
     101.0,
     "105 / 1.05 + 1",
     1},
    {"YIELDMAT/issue after settlement",
     "YIELDMAT",
     {jan_2010, jan_2011, mar_2010, 0.06, 101, 0},
     0.05,
     "105 / (101 - 1) - 1",
     8},
    // an average over no calendar year is no number
    {"PRICEMAT/issue in a later year, ACTUAL",
     "PRICEMAT",
     {host_date(2009, 7, 1), jan_2011, mar_2010, 0.06, 0.05, 1},
     nan,
     "0/0"},
    // below -1/Bsm the price is negative; only -1/Bsm itself is refused
    {"PRICEMAT/yield below -1/Bsm", "PRICEMAT", {jan_2010, jan_2011, jan_2010, 0.05, -2, 0}, -105.0, "105 / -1"},
};

TEST(SecurityEdges, RegularPeriods) { check_values(regular); }
TEST(SecurityEdges, AccruedInterest) { check_values(accrual); }
TEST(SecurityEdges, OddPeriods) { check_values(odd_periods); }
TEST(SecurityEdges, InterestAtMaturity) { check_values(at_maturity); }

// A frequency without months per period is taken by every calculation; what it means is left open.
TEST(SecurityEdges, FrequencyThreeIsNoFault) {
    struct Row {
        const char* name;
        std::vector<Arg> arguments;
    };
    const std::vector<Row> rows{{"PRICE", {aug_2010, may_2011, 0.08, 0.05, 100, 3}},
                                {"YIELD", {aug_2010, may_2011, 0.08, 99, 100, 3}},
                                {"DURATION", {aug_2010, may_2011, 0.08, 0.05, 3}},
                                {"ACCRINT", {may_2008, may_2010, aug_2010, 0.1, 1000, 3}},
                                {"ODDLPRICE", {aug_2010, nov_2010, may_2010, 0.08, 0.08, 100, 3}}};
    for (const Row& row : rows) {
        const Outcome got = Call{row.name, row.arguments}.through_dispatcher();
        EXPECT_TRUE(got.flagged.empty()) << row.name;
        EXPECT_TRUE(got.written) << row.name;
    }
    EXPECT_EQ(Call("PRICE", {aug_2010, may_2011, 0.08, 0.05, 100, 3}).through_handler().status, STATUS_SUCCESS);
}

// Settlement ends the period of issue: one ratio, 136 of 180 days from 15 October to 1 March.
TEST(SecurityEdges, OddFirstSettlementEndsThePeriodOfIssue) {
    Security bond;
    set_date(bond.issue, host_days(2008, 10, 15));
    set_date(bond.settlement, host_days(2009, 3, 1));
    set_date(bond.first_coupon, host_days(2009, 9, 1));
    set_date(bond.maturity, host_days(2011, 3, 1));
    set_terms(bond, 2, BASIS_30_360);
    bond.record.rate = 0.08;
    bond.record.redemption = 100.0;
    ASSERT_EQ(zComputeODDFPRICE(&bond.record), 0);
    EXPECT_EQ(bond.record.accruedFraction, 136.0 / 180.0);
    EXPECT_EQ(bond.record.firstPeriodLength, 136.0 / 180.0 + 1.0);
    EXPECT_EQ(bond.record.issueToMaturity, 3.0 + 136.0 / 180.0 + 1.0);
    EXPECT_EQ(bond.record.wholeCoupons, 1.0);  // to the first coupon date, not to maturity
    EXPECT_EQ(bond.record.remainingFraction, 0.0);
    EXPECT_EQ(bond.record.couponCount, 3.0);
    EXPECT_DOUBLE_EQ(bond.record.oddFirstPrice, 100.0 + 4.0 * (3.0 + 1.0));  // at yield 0
}

TEST(SecurityEdges, OddLastWholePeriodsAreWholeNumbers) {
    for (const int basis : bases) {
        for (int periods = 1; periods <= 5; ++periods) {
            Security bond;
            set_date(bond.last_interest, host_days(2008, 5, 15));
            const int months = 4 + 3 * periods;
            set_date(bond.settlement, host_days(2008 + months / 12, static_cast<unsigned>(months % 12) + 1, 15));
            set_date(bond.maturity, host_days(2010, 3, 8));
            set_terms(bond, 4, basis);
            ASSERT_EQ(zComputeODDLPRICE(&bond.record), 0);
            if (basis != BASIS_EU30_360 && basis != BASIS_30_360) {
                EXPECT_EQ(bond.terms.basis, BASIS_ACTUAL);
            }
            EXPECT_EQ(bond.record.accruedPeriods, periods) << basis;
        }
    }
}

TEST(SecurityEdges, OddLastCountsActualDaysForAct360AndAct365) {
    for (const char* name : {"ODDLPRICE", "ODDLYIELD"}) {
        const auto value = [&](int basis) {
            return Call{name, {aug_2010, host_date(2012, 2, 3), may_2008, 0.08, 98, 100, 4, basis}}
                .through_dispatcher()
                .value;
        };
        EXPECT_TRUE(same_value(value(1), value(2))) << name;
        EXPECT_TRUE(same_value(value(1), value(3))) << name;
        EXPECT_NE(value(1), value(0)) << name;
    }
}

}  // namespace
}  // namespace finance::test
