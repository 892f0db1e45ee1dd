// COUPDAYBS, COUPDAYS, COUPDAYSNC, COUPNCD, COUPNUM and COUPPCD: values.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "calendar/kernels.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr const char* listed = "coupon dates listed by month, tests/reference/dates.py";
constexpr const char* by_hand = "by hand";

// All six over one settlement.
struct Row {
    std::string id;
    double settlement;
    double maturity;
    int frequency;
    int basis;
    double COUPDAYBS;
    double COUPDAYS;
    double COUPDAYSNC;
    double COUPNCD;
    double COUPNUM;
    double COUPPCD;
};

const std::vector<Row> rows{
    {"within a half-year", host_date(2008, 2, 15), host_date(2017, 11, 15), 2, 0, 90, 180.0, 90, host_date(2008, 5, 15),
     20, host_date(2007, 11, 15)},
    {"within a half-year", host_date(2008, 2, 15), host_date(2017, 11, 15), 2, 1, 92, 182, 90, host_date(2008, 5, 15),
     20, host_date(2007, 11, 15)},
    {"within a half-year", host_date(2008, 2, 15), host_date(2017, 11, 15), 2, 2, 92, 180.0, 90, host_date(2008, 5, 15),
     20, host_date(2007, 11, 15)},
    {"within a half-year", host_date(2008, 2, 15), host_date(2017, 11, 15), 2, 3, 92, 182.5, 90, host_date(2008, 5, 15),
     20, host_date(2007, 11, 15)},
    {"within a half-year", host_date(2008, 2, 15), host_date(2017, 11, 15), 2, 4, 90, 180.0, 90, host_date(2008, 5, 15),
     20, host_date(2007, 11, 15)},
    {"from a 31st", host_date(2008, 1, 31), host_date(2017, 11, 15), 2, 0, 75, 180.0, 104, host_date(2008, 5, 15), 20,
     host_date(2007, 11, 15)},
    {"from a 31st", host_date(2008, 1, 31), host_date(2017, 11, 15), 2, 1, 77, 182, 105, host_date(2008, 5, 15), 20,
     host_date(2007, 11, 15)},
    {"from a 31st", host_date(2008, 1, 31), host_date(2017, 11, 15), 2, 2, 77, 180.0, 105, host_date(2008, 5, 15), 20,
     host_date(2007, 11, 15)},
    {"from a 31st", host_date(2008, 1, 31), host_date(2017, 11, 15), 2, 3, 77, 182.5, 105, host_date(2008, 5, 15), 20,
     host_date(2007, 11, 15)},
    {"from a 31st", host_date(2008, 1, 31), host_date(2017, 11, 15), 2, 4, 75, 180.0, 105, host_date(2008, 5, 15), 20,
     host_date(2007, 11, 15)},
    {"within a leap quarter at month ends", host_date(2008, 2, 10), host_date(2010, 3, 31), 4, 0, 39, 90.0, 50,
     host_date(2008, 3, 31), 9, host_date(2007, 12, 31)},
    {"within a leap quarter at month ends", host_date(2008, 2, 10), host_date(2010, 3, 31), 4, 1, 41, 91, 50,
     host_date(2008, 3, 31), 9, host_date(2007, 12, 31)},
    {"annual, 29 February", host_date(2007, 6, 10), host_date(2008, 2, 29), 1, 0, 102, 360.0, 260,
     host_date(2008, 2, 29), 1, host_date(2007, 2, 28)},
    {"annual, 29 February", host_date(2007, 6, 10), host_date(2008, 2, 29), 1, 1, 102, 366, 264, host_date(2008, 2, 29),
     1, host_date(2007, 2, 28)},
    {"monthly, aiming for the 30th", host_date(2007, 3, 5), host_date(2010, 12, 30), 12, 0, 7, 30.0, 25,
     host_date(2007, 3, 30), 46, host_date(2007, 2, 28)},
    {"monthly, aiming for the 30th", host_date(2007, 3, 5), host_date(2010, 12, 30), 12, 1, 5, 30, 25,
     host_date(2007, 3, 30), 46, host_date(2007, 2, 28)},
    {"two-monthly over the turn of a century", host_date(1899, 12, 31), host_date(1903, 4, 30), 6, 0, 0, 60.0, 59,
     host_date(1900, 2, 28), 20, host_date(1899, 12, 31)},
    {"two-monthly over the turn of a century", host_date(1899, 12, 31), host_date(1903, 4, 30), 6, 1, 0, 59, 59,
     host_date(1900, 2, 28), 20, host_date(1899, 12, 31)},
    {"on a coupon date", host_date(2008, 5, 15), host_date(2010, 11, 15), 2, 0, 0, 180.0, 180, host_date(2008, 11, 15),
     5, host_date(2008, 5, 15)},
    {"on a coupon date", host_date(2008, 5, 15), host_date(2010, 11, 15), 2, 1, 0, 184, 184, host_date(2008, 11, 15), 5,
     host_date(2008, 5, 15)},
    {"on an anniversary at a month end", host_date(2009, 3, 31), host_date(2010, 3, 31), 4, 0, 0, 90.0, 90,
     host_date(2009, 6, 30), 4, host_date(2009, 3, 31)},
    {"on an anniversary at a month end", host_date(2009, 3, 31), host_date(2010, 3, 31), 4, 1, 0, 91, 91,
     host_date(2009, 6, 30), 4, host_date(2009, 3, 31)},
    {"a day before a coupon date", host_date(2008, 5, 14), host_date(2010, 11, 15), 2, 0, 179, 180.0, 1,
     host_date(2008, 5, 15), 6, host_date(2007, 11, 15)},
    {"a day before a coupon date", host_date(2008, 5, 14), host_date(2010, 11, 15), 2, 1, 181, 182, 1,
     host_date(2008, 5, 15), 6, host_date(2007, 11, 15)},
};

TEST(CouponDates, AllSix) {
    std::vector<ValueCase> cases;
    for (const Row& row : rows) {
        const auto expect = [&](const char* name, double expected) {
            const std::string id = std::string{name} + '/' + row.id + ", basis " + std::to_string(row.basis);
            const std::vector<Arg> arguments{row.settlement, row.maturity, row.frequency, row.basis};
            cases.push_back({id, name, arguments, expected, listed});
        };
        expect("COUPDAYBS", row.COUPDAYBS);
        expect("COUPDAYS", row.COUPDAYS);
        expect("COUPDAYSNC", row.COUPDAYSNC);
        expect("COUPNCD", row.COUPNCD);
        expect("COUPNUM", row.COUPNUM);
        expect("COUPPCD", row.COUPPCD);
    }
    check_values(cases);
}

constexpr double before = host_date(2007, 11, 15);
constexpr double settlement = host_date(2008, 1, 31);  // 75 days of 30/360 later, 77 actual
constexpr double maturity = host_date(2010, 11, 15);

const std::vector<ValueCase> values{
    // month ends
    {"COUPNCD/31 March, to June",
     "COUPNCD",
     {host_date(2007, 6, 1), host_date(2010, 3, 31), 4},
     host_date(2007, 6, 30),
     listed},
    {"COUPNCD/31 March, to September",
     "COUPNCD",
     {host_date(2007, 7, 1), host_date(2010, 3, 31), 4},
     host_date(2007, 9, 30),
     listed},
    {"COUPNCD/31 March, to December",
     "COUPNCD",
     {host_date(2007, 10, 1), host_date(2010, 3, 31), 4},
     host_date(2007, 12, 31),
     listed},
    {"COUPNCD/31 March, to March",
     "COUPNCD",
     {host_date(2008, 1, 1), host_date(2010, 3, 31), 4},
     host_date(2008, 3, 31),
     listed},
    {"COUPNCD/29 February, to August",
     "COUPNCD",
     {host_date(2007, 6, 10), host_date(2008, 2, 29), 2},
     host_date(2007, 8, 31),
     listed},
    {"COUPPCD/29 February, from a 28th",
     "COUPPCD",
     {host_date(2007, 6, 10), host_date(2008, 2, 29), 2},
     host_date(2007, 2, 28),
     listed},
    {"COUPPCD/28 February of a leap year is before the coupon",
     "COUPPCD",
     {host_date(2004, 2, 28), host_date(2007, 2, 28), 2},
     host_date(2003, 8, 31),
     listed},
    {"COUPNUM/28 February of a leap year stands for the coupon",
     "COUPNUM",
     {host_date(2004, 2, 28), host_date(2007, 2, 28), 2},
     6,
     by_hand},
    {"COUPNUM/29 February of a common year stands for 1 March",
     "COUPNUM",
     {host_date(2007, 2, 28), host_date(2008, 2, 29), 2},
     3,
     by_hand},

    // settlement on maturity
    {"COUPNUM/on maturity", "COUPNUM", {maturity, maturity, 2}, 0, by_hand},
    {"COUPDAYSNC/on maturity", "COUPDAYSNC", {maturity, maturity, 2}, 180, "one period beyond"},
    {"COUPDAYSNC/on maturity, ACTUAL", "COUPDAYSNC", {maturity, maturity, 2, 1}, 181, "one period beyond"},
    {"COUPDAYS/on maturity", "COUPDAYS", {maturity, maturity, 2}, 180, by_hand},
    {"COUPDAYS/on maturity, ACTUAL", "COUPDAYS", {maturity, maturity, 2, 1}, 181, "one period beyond"},

    // the basis left out is 30/360, given without a value ACTUAL; texts name it
    {"COUPDAYBS/basis omitted", "COUPDAYBS", {settlement, maturity, 2}, 75, by_hand},
    {"COUPDAYBS/basis missing", "COUPDAYBS", {settlement, maturity, 2, missing}, 77, by_hand},
    {"COUPDAYBS/basis absent", "COUPDAYBS", {settlement, maturity, 2, absent}, 77, by_hand},
    {"COUPDAYBS/basis -0.5", "COUPDAYBS", {settlement, maturity, 2, -0.5}, 75, by_hand},
    {"COUPDAYBS/basis 1.9", "COUPDAYBS", {settlement, maturity, 2, 1.9}, 77, by_hand},
    {"COUPDAYBS/basis Actual", "COUPDAYBS", {settlement, maturity, 2, " Act ual "}, 77, by_hand},
    {"COUPDAYS/basis missing", "COUPDAYS", {settlement, maturity, 2, missing}, 182, by_hand},
    {"COUPDAYS/basis act/365", "COUPDAYS", {settlement, maturity, 2, "act/365"}, 182.5, by_hand},
    {"COUPDAYSNC/basis eu30/360", "COUPDAYSNC", {settlement, maturity, 2, "eu30/360"}, 105, by_hand},
    {"COUPDAYSNC/basis omitted: the 31st waits for the 1st", "COUPDAYSNC", {settlement, maturity, 2}, 104, by_hand},
    {"COUPNUM/basis missing", "COUPNUM", {settlement, maturity, 2, missing}, 6, listed},

    // any whole frequency from 1 on, kept as its low 32 bits
    {"COUPDAYS/frequency 3", "COUPDAYS", {settlement, maturity, 3}, 120, by_hand},
    {"COUPDAYS/frequency 365, ACT/365", "COUPDAYS", {settlement, maturity, 365, 3}, 1, by_hand},
    {"COUPDAYS/frequency within 1e-12 of 2", "COUPDAYS", {settlement, maturity, 2.0000000000001}, 180, by_hand},
    {"COUPDAYS/frequency 2^32 + 2", "COUPDAYS", {settlement, maturity, 4294967298.0}, 180, by_hand},
    {"COUPDAYS/frequency 2^32 counts as 0", "COUPDAYS", {settlement, maturity, 4294967296.0}, inf, by_hand},
    {"COUPDAYS/frequency 2^31 counts as -2^31",
     "COUPDAYS",
     {settlement, maturity, 2147483648.0},
     -360.0 / 2147483648.0,
     by_hand},
    {"COUPDAYS/frequency 2^53", "COUPDAYS", {settlement, maturity, 9007199254740992.0}, inf, by_hand},
    {"COUPNCD/frequency 2^32 + 2", "COUPNCD", {settlement, maturity, 4294967298.0}, host_date(2008, 5, 15), listed},

    // dates are whole to one part in 10^12
    {"COUPPCD/a date beside a whole number", "COUPPCD", {settlement * (1 + 5e-13), maturity, 2}, before, listed},
};

TEST(CouponDates, Values) { check_values(values); }

TEST(CouponDates, UnknownBasisHasNoPeriod) {
    CouponDateRecord record{};
    record.terms = coupon_terms(2, 5);
    EXPECT_EQ(bits(zComputeCOUPDAYS(&record)), bits(MISSING_VALUE));
}

// Days before and after make the period under ACTUAL; the two coupon dates lie around settlement.
TEST(CouponDates, PartsMakeThePeriod) {
    const auto value = [](const char* name, double on, double until, int frequency) {
        return Call{name, {on, until, frequency, 1}}.through_handler().value;
    };
    int checked = 0;
    for (const int frequency : {1, 2, 4, 6, 12}) {
        for (double on = host_date(1899, 1, 1); on < host_date(2101, 1, 1); on += 97, ++checked) {
            const double until = on + 1 + 13.0 * (checked % 300);
            const double since = value("COUPDAYBS", on, until, frequency);
            const double to = value("COUPDAYSNC", on, until, frequency);
            ASSERT_EQ(since + to, value("COUPDAYS", on, until, frequency)) << on << ' ' << until << ' ' << frequency;
            ASSERT_EQ(on - since, value("COUPPCD", on, until, frequency)) << on << ' ' << until << ' ' << frequency;
            ASSERT_EQ(on + to, value("COUPNCD", on, until, frequency)) << on << ' ' << until << ' ' << frequency;
        }
    }
    EXPECT_EQ(checked, 3805);
}

}  // namespace
}  // namespace finance::test
