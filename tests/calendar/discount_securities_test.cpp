// DISC, INTRATE, PRICEDISC, RECEIVED and YIELDDISC: values and failures.
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
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
constexpr const char* exact = "exact fraction, tests/reference/dates.py";
constexpr const char* by_hand = "by hand";

// ---- Over ordinary spans: amounts of each calculation in the order of the columns

struct Amounts {
    const char* name;
    double first;
    double second;
};
constexpr std::array<Amounts, 5> columns{{{"DISC", 97.5, 100},
                                          {"INTRATE", 1000000, 1014420},
                                          {"PRICEDISC", 0.0525, 100},
                                          {"RECEIVED", 1000000, 0.0575},
                                          {"YIELDDISC", 99.795, 100}}};

struct Row {
    std::string id;
    double settlement;
    double maturity;
    int basis;
    std::array<double, columns.size()> expected;
};

const std::vector<Row> rows{
    {"half a year",
     host_date(2007, 2, 15),
     host_date(2007, 8, 1),
     0,
     {0.05421686746987952, 0.031272289156626505, 97.57916666666667, 1027236.0217431624, 0.00445491570973504}},
    {"half a year",
     host_date(2007, 2, 15),
     host_date(2007, 8, 1),
     1,
     {0.05464071856287425, 0.03151676646706587, 97.59794520547945, 1027019.04205854, 0.004489742895090587}},
    {"half a year",
     host_date(2007, 2, 15),
     host_date(2007, 8, 1),
     2,
     {0.05389221556886228, 0.03108502994011976, 97.56458333333333, 1027404.5905007884, 0.004428239567760579}},
    {"half a year",
     host_date(2007, 2, 15),
     host_date(2007, 8, 1),
     3,
     {0.05464071856287425, 0.03151676646706587, 97.59794520547945, 1027019.04205854, 0.004489742895090587}},
    {"half a year",
     host_date(2007, 2, 15),
     host_date(2007, 8, 1),
     4,
     {0.05421686746987952, 0.031272289156626505, 97.57916666666667, 1027236.0217431624, 0.00445491570973504}},
    {"to a 31st",
     host_date(2007, 1, 15),
     host_date(2007, 1, 31),
     0,
     {0.6, 0.32445, 99.76666666666667, 1002562.1031525008, 0.04621975048850104}},
    {"to a 31st",
     host_date(2007, 1, 15),
     host_date(2007, 1, 31),
     1,
     {0.5703125, 0.32895625, 99.76986301369863, 1002526.9171610635, 0.046861691467508}},
    {"from March of a leap year",
     host_date(2000, 3, 1),
     host_date(2001, 3, 1),
     0,
     {0.025, 0.01442, 94.75, 1061007.9575596817, 0.0020542111328222686}},
    {"from March of a leap year",
     host_date(2000, 3, 1),
     host_date(2001, 3, 1),
     1,
     {0.025, 0.01442, 94.75, 1060919.4151155618, 0.0020542111328222686}},
    {"years",
     host_date(1999, 5, 31),
     host_date(2004, 2, 10),
     0,
     {0.0053285968028419185, 0.0030735346358792184, 75.36875, 1369433.111751448, 0.0004378425149887606}},
    {"years",
     host_date(1999, 5, 31),
     host_date(2004, 2, 10),
     1,
     {0.005320027195027195, 0.003068591686091686, 75.32907348242811, 1370017.1252140652, 0.0004371383636376836}},
};

TEST(DiscountSecurities, AllFive) {
    std::vector<ValueCase> cases;
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const Amounts& of = columns[i];
            const std::string id = std::string{of.name} + '/' + row.id + ", basis " + std::to_string(row.basis);
            const std::vector<Arg> arguments{row.settlement, row.maturity, of.first, of.second, row.basis};
            cases.push_back({id, of.name, arguments, row.expected[i], exact, 4});
        }
    }
    check_values(cases);
}

// ---- Days and years that differ between the calculations

constexpr double january_15 = host_date(2001, 1, 15);
constexpr double january_30 = host_date(2001, 1, 30);
constexpr double january_31 = host_date(2001, 1, 31);
constexpr double february_1 = host_date(2001, 2, 1);
constexpr double march_2000 = host_date(2000, 3, 1);
constexpr double march_2001 = host_date(2001, 3, 1);
constexpr double march_2002 = host_date(2002, 3, 1);

const std::vector<ValueCase> values{
    // day 31: DISC counts 15 days, the others 16
    {"DISC/15 to 31 January", "DISC", {january_15, january_31, 50, 100}, 0.5 / (15 / 360.0), by_hand},
    {"INTRATE/15 to 31 January", "INTRATE", {january_15, january_31, 50, 100}, 1 / (16 / 360.0), by_hand},
    {"PRICEDISC/15 to 31 January", "PRICEDISC", {january_15, january_31, 1, 100}, (1 - 16 / 360.0) * 100, by_hand},
    {"RECEIVED/15 to 31 January", "RECEIVED", {january_15, january_31, 100, 1}, 100 / (1 - 16 / 360.0), by_hand},
    {"YIELDDISC/15 to 31 January", "YIELDDISC", {january_15, january_31, 50, 100}, 1 / (16 / 360.0), by_hand},
    {"INTRATE/30 to 31 January", "INTRATE", {january_30, january_31, 50, 100}, 1 / (1 / 360.0), by_hand},

    // no days between different dates
    {"INTRATE/no days", "INTRATE", {january_31, february_1, 50, 100}, inf, "1 / 0"},
    {"INTRATE/no days, at a loss", "INTRATE", {january_31, february_1, 100, 50}, -inf, "-0.5 / 0"},
    {"INTRATE/no days, no gain", "INTRATE", {january_31, february_1, 100, 100}, not_a_number, "0 / 0"},
    {"YIELDDISC/no days", "YIELDDISC", {january_31, february_1, 50, 100}, inf, "1 / 0"},
    {"YIELDDISC/no days, no gain", "YIELDDISC", {january_31, february_1, 100, 100}, not_a_number, "0 / 0"},
    {"PRICEDISC/no days", "PRICEDISC", {january_31, february_1, 0.5, 100}, 100, by_hand},
    {"RECEIVED/no days", "RECEIVED", {january_31, february_1, 100, 0.5}, 100, by_hand},

    // March of a leap year on: a year of 365 days; for RECEIVED the average of 366 and 365
    {"PRICEDISC/March of a leap year", "PRICEDISC", {march_2000, march_2001, 0.5, 100, 1}, 50, by_hand},
    {"RECEIVED/March of a leap year",
     "RECEIVED",
     {march_2000, march_2001, 100, 0.5, 1},
     100 / (1 - 0.5 * (365 / 365.5)),
     by_hand},
    {"DISC/March of a leap year", "DISC", {march_2000, march_2001, 50, 100, 1}, 0.5, by_hand},

    // nothing bounds the amounts from above
    {"PRICEDISC/a rate above 1", "PRICEDISC", {march_2001, march_2002, 3, 100, 1}, -200, by_hand},
    {"DISC/price above redemption", "DISC", {march_2001, march_2002, 150, 100, 1}, -0.5, by_hand},
    {"YIELDDISC/price above redemption", "YIELDDISC", {march_2001, march_2002, 200, 100, 1}, -0.5, by_hand},
    {"INTRATE/redemption below investment", "INTRATE", {march_2001, march_2002, 200, 100, 1}, -0.5, by_hand},
    {"RECEIVED/a rate above 1", "RECEIVED", {march_2001, march_2002, 100, 3, 1}, -50, by_hand},
    {"DISC/infinite redemption", "DISC", {march_2001, march_2002, 50, inf, 1}, not_a_number, "inf / inf"},
    {"INTRATE/infinite redemption", "INTRATE", {march_2001, march_2002, 50, inf, 1}, inf, by_hand},
    {"DISC/smallest amounts", "DISC", {march_2001, march_2002, 5e-324, 5e-324, 1}, 0, by_hand},

    // RECEIVED fails only where a divisor below 1 takes the quotient beyond the largest double
    {"RECEIVED/largest quotient", "RECEIVED", {march_2001, march_2002, largest / 2, 0.5, 1}, largest, by_hand},
    {"RECEIVED/divisor of 1 and more", "RECEIVED", {march_2001, march_2002, largest, 2, 1}, -largest, by_hand},
    {"RECEIVED/infinite over 1", "RECEIVED", {march_2001, march_2002, inf, 2, 1}, -inf, by_hand},
    {"RECEIVED/infinite over more than 1", "RECEIVED", {march_2001, march_2002, inf, 3, 1}, -inf, by_hand},

    // six million years are fewer than no days in 32 bits: negative, and answered by three of the five
    {"PRICEDISC/negative time",
     "PRICEDISC",
     {0, 2191455000.0, 1, 1},
     1 - (2160000000.0 - 4294967296.0) / 360.0,
     by_hand},
    {"YIELDDISC/negative time",
     "YIELDDISC",
     {0, 2191455000.0, 1, 2},
     1 / ((2160000000.0 - 4294967296.0) / 360.0),
     by_hand},
    {"RECEIVED/negative time",
     "RECEIVED",
     {0, 2191455000.0, 1, 1},
     1 / (1 - (2160000000.0 - 4294967296.0) / 360.0),
     by_hand},

    // the basis
    {"INTRATE/basis omitted", "INTRATE", {march_2001, march_2002, 1, 2}, 1, by_hand},
    {"INTRATE/basis missing is ACTUAL",
     "INTRATE",
     {host_date(2001, 5, 1), host_date(2001, 7, 13), 1, 2, missing},
     5,
     "73 of 365 days"},
    {"INTRATE/basis absent is ACTUAL",
     "INTRATE",
     {host_date(2001, 5, 1), host_date(2001, 7, 13), 1, 2, absent},
     5,
     "73 of 365 days"},
    {"INTRATE/basis by name",
     "INTRATE",
     {host_date(2001, 5, 1), host_date(2001, 7, 12), 1, 2, "Act/360"},
     5,
     "72 of 360 days"},
};

TEST(DiscountSecurities, Values) { check_values(values); }

TEST(DiscountSecurities, EqualDatesAreAnsweredBeforeAllElse) {
    std::vector<ValueCase> cases;
    for (const Amounts& of : columns) {
        for (const Arg& bad : {Arg{0}, Arg{-1}, Arg{missing}, absent}) {
            const std::string id = std::string{of.name} + "/equal dates, bad ";
            const double day = january_31;
            cases.push_back({id + '3', of.name, {day, day, bad, 100, 0}, 0, by_hand});
            cases.push_back({id + '4', of.name, {day, day, 100, bad, 0}, 0, by_hand});
            cases.push_back({id + "3 and 4, no basis", of.name, {day, day, bad, bad}, 0, by_hand});
        }
        for (const Arg& bad : {Arg{5}, Arg{-1}, Arg{"nonsense"}, absent_text, other_type}) {
            cases.push_back({std::string{of.name} + "/equal dates, bad 5",
                             of.name,
                             {january_31, january_31, 100, 100, bad},
                             0,
                             by_hand});
        }
    }
    check_values(cases);
    EXPECT_EQ(cases.size(), 5U * 17U);
}

// No argument is at fault.
TEST(DiscountSecurities, Failures) {
    check_refusals({
        {"DISC/no days", "DISC", {january_31, february_1, 50, 100}, STATUS_INVALID_ARGUMENT, {}},
        {"DISC/30 to 31 January", "DISC", {january_30, january_31, 50, 100}, STATUS_INVALID_ARGUMENT, {}},
        {"DISC/negative time", "DISC", {0, 2191455000.0, 50, 100}, STATUS_INVALID_ARGUMENT, {}},
        {"INTRATE/negative time", "INTRATE", {0, 2191455000.0, 50, 100}, STATUS_INVALID_ARGUMENT, {}},
        {"RECEIVED/divisor 0", "RECEIVED", {march_2001, march_2002, 100, 1, 1}, STATUS_INVALID_ARGUMENT, {}},
        {"RECEIVED/overflow", "RECEIVED", {march_2001, march_2002, largest, 0.5, 1}, STATUS_INVALID_ARGUMENT, {}},
        {"RECEIVED/overflow, negative divisor",
         "RECEIVED",
         {march_2001, march_2002, largest, 1.5, 1},
         STATUS_INVALID_ARGUMENT,
         {}},
        {"RECEIVED/infinite investment",
         "RECEIVED",
         {march_2001, march_2002, inf, 0.5, 1},
         STATUS_INVALID_ARGUMENT,
         {}},
    });
}

// An argument cannot be 0; a record can. Ninety days of a year that has 360, nothing redeemed: a rate would be 0 / 0.
TEST(DiscountSecurities, NothingRedeemedHasNoRate) {
    DiscountRecord record{};
    record.settlement = date_of(2001, 1, 1);
    record.maturity = date_of(2001, 4, 1);
    record.terms = year_fraction_terms(BASIS_30_360);
    record.answer = 7.0;
    EXPECT_EQ(zComputeDISC(&record), 1);
    EXPECT_EQ(record.answer, 7.0);
    record.first = 99.0;
    record.second = 100.0;
    EXPECT_EQ(zComputeDISC(&record), 0);
    EXPECT_EQ(record.answer, 1.0 / 100.0 / 0.25) << by_hand;
}

}  // namespace
}  // namespace finance::test
