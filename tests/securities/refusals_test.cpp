// What the coupon securities refuse: every argument, two faults at once, the order of dates, yields without an answer.
#include <gtest/gtest.h>

#include <limits>

#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_53 = 9007199254740992.0;

const double early = host_date(2008, 5, 15);
const double middle = host_date(2010, 8, 15);
const double coupon = host_date(2010, 11, 15);
const double late = host_date(2012, 11, 15);

const ArgumentRules a_date{true, {0.5, middle + 0.25, two_to_53 + 2, 1e300, inf, -1e300}};
const ArgumentRules above_0{true, {0, -0.0, -1, -inf}};
const ArgumentRules any_number{true, {}};
const ArgumentRules a_frequency{true, {0, -0.0, -1, -two_to_53, 0.5, 2.5, two_to_53 + 2, inf, -inf}};
const ArgumentRules a_basis{false,
                            {5, -1, 6, inf, "", "ACT", "30/361", std::string(256, ' '), absent_text, other_type}};

TEST(SecurityRefusals, EveryArgumentAbsentMissingOutOfRule) {
    int calls = 0;
    calls += check_argument_rules("ACCRINT", {early, coupon, middle, 0.1, 1000, 2, 0},
                                  {a_date, a_date, a_date, above_0, above_0, a_frequency, a_basis});
    calls +=
        check_argument_rules("ACCRINTM", {early, middle, 0.1, 1000, 0}, {a_date, a_date, above_0, above_0, a_basis});
    calls += check_argument_rules("PRICE", {middle, late, 0.1, 0.05, 100, 2, 0},
                                  {a_date, a_date, above_0, any_number, above_0, a_frequency, a_basis});
    calls += check_argument_rules("YIELD", {middle, late, 0.1, 95, 100, 2, 0},
                                  {a_date, a_date, above_0, above_0, above_0, a_frequency, a_basis});
    for (const char* name : {"DURATION", "MDURATION"}) {
        calls += check_argument_rules(name, {middle, late, 0.1, 0.05, 2, 0},
                                      {a_date, a_date, above_0, any_number, a_frequency, a_basis});
    }
    for (const char* name : {"ODDFPRICE", "ODDFYIELD"}) {
        const double given = std::string{name} == "ODDFPRICE" ? 0.05 : 95.0;
        calls +=
            check_argument_rules(name, {middle, late, early, coupon, 0.1, given, 100, 2, 0},
                                 {a_date, a_date, a_date, a_date, above_0, any_number, above_0, a_frequency, a_basis});
    }
    for (const char* name : {"ODDLPRICE", "ODDLYIELD"}) {
        calls += check_argument_rules(name, {middle, late, early, 0.1, 95, 100, 2, 0},
                                      {a_date, a_date, a_date, above_0, any_number, above_0, a_frequency, a_basis});
    }
    calls += check_argument_rules("PRICEMAT", {middle, late, early, 0.1, 0.05, 0},
                                  {a_date, a_date, a_date, above_0, any_number, a_basis});
    calls += check_argument_rules("YIELDMAT", {middle, late, early, 0.1, 95, 0},
                                  {a_date, a_date, a_date, above_0, above_0, a_basis});
    EXPECT_EQ(calls, 631);
}

const std::vector<RefusalCase> order_of_dates{
    {"PRICE/maturity a day before settlement",
     "PRICE",
     {middle, middle - 1, 0.1, 0.1, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"YIELD/maturity a day before settlement",
     "YIELD",
     {middle, middle - 1, 0.1, 90, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"DURATION/maturity a day before settlement",
     "DURATION",
     {middle, middle - 1, 0.1, 0.1, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"MDURATION/maturity a day before settlement",
     "MDURATION",
     {middle, middle - 1, 0.1, 0.1, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"ACCRINT/settlement a day before issue",
     "ACCRINT",
     {middle, coupon, middle - 1, 0.1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ACCRINTM/settlement a day before issue", "ACCRINTM", {middle, middle - 1, 0.1, 1}, STATUS_INVALID_ARGUMENT, {2}},
    {"ODDFPRICE/settlement before issue",
     "ODDFPRICE",
     {middle, late, middle + 1, coupon, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ODDFYIELD/settlement before issue",
     "ODDFYIELD",
     {middle, late, middle + 1, coupon, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ODDFPRICE/first coupon before settlement",
     "ODDFPRICE",
     {middle, late, early, middle - 1, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDFYIELD/first coupon before settlement",
     "ODDFYIELD",
     {middle, late, early, middle - 1, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDFPRICE/maturity before first coupon",
     "ODDFPRICE",
     {middle, coupon, early, late, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDFYIELD/maturity before settlement",
     "ODDFYIELD",
     {middle, early, early - 1, late, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDLPRICE/maturity before settlement",
     "ODDLPRICE",
     {middle, early, early, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"ODDLYIELD/maturity before settlement",
     "ODDLYIELD",
     {middle, early, early, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"ODDLPRICE/settlement before last interest",
     "ODDLPRICE",
     {middle, late, middle + 1, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ODDLYIELD/settlement before last interest",
     "ODDLYIELD",
     {middle, late, late + 9, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"PRICEMAT/settlement on maturity", "PRICEMAT", {middle, middle, early, 1, 1}, STATUS_INVALID_ARGUMENT, {2}},
    {"PRICEMAT/maturity before settlement", "PRICEMAT", {middle, early, early, 1, 1}, STATUS_INVALID_ARGUMENT, {2}},
    {"PRICEMAT/issue after maturity", "PRICEMAT", {middle, late, late + 1, 1, 1}, STATUS_INVALID_ARGUMENT, {3}},
    {"YIELDMAT/maturity before settlement", "YIELDMAT", {middle, early, early, 1, 1}, STATUS_INVALID_ARGUMENT, {2}},
    {"YIELDMAT/issue after maturity", "YIELDMAT", {middle, late, late + 1, 1, 1}, STATUS_INVALID_ARGUMENT, {3}},
};

const std::vector<RefusalCase> two_faults{
    {"PRICE/order before rate", "PRICE", {middle, early, 0, missing, 100, 2}, STATUS_INVALID_ARGUMENT, {2}},
    {"PRICE/settlement missing, maturity bad", "PRICE", {missing, 0.5, 1, 1, 1, 2}, STATUS_MISSING_RESULT, {1}},
    {"PRICE/rate bad, yield missing", "PRICE", {middle, late, 0, missing, 100, 2}, STATUS_INVALID_ARGUMENT, {3}},
    {"PRICE/yield missing, redemption absent",
     "PRICE",
     {middle, late, 1, missing, absent, 2},
     STATUS_MISSING_RESULT,
     {4}},
    {"PRICE/frequency bad, basis bad", "PRICE", {middle, late, 1, 1, 100, 0.5, 5}, STATUS_INVALID_ARGUMENT, {6}},
    {"YIELD/price bad, redemption missing", "YIELD", {middle, late, 1, 0, missing, 2}, STATUS_INVALID_ARGUMENT, {4}},
    {"DURATION/rate missing, frequency bad", "DURATION", {middle, late, missing, 1, 0}, STATUS_MISSING_RESULT, {3}},
    {"MDURATION/yield too low, frequency bad", "MDURATION", {middle, late, 1, -9, 0.5}, STATUS_INVALID_ARGUMENT, {5}},
    {"ACCRINT/settlement bad before order",
     "ACCRINT",
     {middle, coupon, early + 0.5, 0, 0, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ACCRINT/first interest missing before order",
     "ACCRINT",
     {middle, missing, early, 1, 1, 2},
     STATUS_MISSING_RESULT,
     {2}},
    {"ACCRINTM/rate bad, par missing", "ACCRINTM", {early, late, -1, missing}, STATUS_INVALID_ARGUMENT, {3}},
    {"ODDFPRICE/first coupon missing before issue after settlement",
     "ODDFPRICE",
     {middle, late, late, missing, 1, 1, 1, 2},
     STATUS_MISSING_RESULT,
     {4}},
    {"ODDFPRICE/off schedule, but the rate is bad",
     "ODDFPRICE",
     {middle, late, early, coupon + 1, 0, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {5}},
    {"ODDFYIELD/issue before first coupon",
     "ODDFYIELD",
     {middle, late, late, early, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ODDLPRICE/last interest absent before order",
     "ODDLPRICE",
     {middle, early, absent, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"ODDLYIELD/maturity before last interest",
     "ODDLYIELD",
     {middle, early, late, 1, 1, 1, 2},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"PRICEMAT/maturity order before issue missing",
     "PRICEMAT",
     {middle, early, missing, 1, 1},
     STATUS_INVALID_ARGUMENT,
     {2}},
    {"YIELDMAT/issue missing before maturity order",
     "YIELDMAT",
     {middle, early, missing, 1, 1},
     STATUS_MISSING_RESULT,
     {3}},
    {"YIELDMAT/issue missing, settlement on maturity",
     "YIELDMAT",
     {late, late, missing, 1, 1},
     STATUS_MISSING_RESULT,
     {3}},
};

// No argument is at fault, but for a first coupon date off the schedule.
const std::vector<RefusalCase> no_answer{
    {"PRICE/yield -f", "PRICE", {middle, late, 0.1, -2, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"PRICE/growth below 2^-26.5", "PRICE", {middle, late, 0.1, -2 + 0x1p-26, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"PRICE/yield beyond 2^53", "PRICE", {middle, late, 0.1, 1e18, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    // hundreds of steps away
    {"YIELD/price next to nothing", "YIELD", {early, late, 0.1, 1e-300, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"DURATION/yield -f", "DURATION", {middle, late, 0.1, -2, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"DURATION/yield beyond 2^53", "DURATION", {middle, late, 0.1, 1e18, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"MDURATION/yield -f", "MDURATION", {middle, late, 0.1, -2, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"MDURATION/yield beyond 2^53", "MDURATION", {middle, late, 0.1, 1e18, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"ODDFPRICE/yield -f", "ODDFPRICE", {middle, late, early, coupon, 0.1, -2, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"ODDFPRICE/yield below -f",
     "ODDFPRICE",
     {middle, late, early, coupon, 0.1, -5, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {}},
    {"ODDFYIELD/price out of reach",
     "ODDFYIELD",
     {middle, late, early, coupon, 0.1, -1e300, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {}},
    {"ODDFPRICE/first coupon off schedule",
     "ODDFPRICE",
     {middle, late, early, coupon + 1, 0.1, 0.1, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDFYIELD/first coupon off schedule",
     "ODDFYIELD",
     {middle, late, early, coupon - 1, 0.1, 90, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"ODDFPRICE/off schedule and yield -f",
     "ODDFPRICE",
     {middle, late, early, coupon + 1, 0.1, -2, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {4}},
    // half a period is left: -f / DSC' is -4
    {"ODDLPRICE/yield -f / DSC'", "ODDLPRICE", {middle, coupon, early, 0.1, -4, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"ODDLPRICE/yield below it", "ODDLPRICE", {middle, coupon, early, 0.1, -5, 100, 2}, STATUS_INVALID_ARGUMENT, {}},
    // accrued interest and price cancel: 1/2 of 50 less 25
    {"ODDLYIELD/nothing paid",
     "ODDLYIELD",
     {middle, coupon, host_date(2010, 5, 15), 1, -25, 100, 2},
     STATUS_INVALID_ARGUMENT,
     {}},
    // 30/360 counts no day from the 30th to the 31st
    {"ODDLYIELD/no time left",
     "ODDLYIELD",
     {host_date(2010, 5, 30), host_date(2010, 5, 31), host_date(2010, 4, 2), 1, 99, 100, 2, 4},
     STATUS_INVALID_ARGUMENT,
     {}},
    {"PRICEMAT/yield -1/Bsm",
     "PRICEMAT",
     {host_date(2010, 1, 1), host_date(2011, 1, 1), early, 0.1, -1},
     STATUS_INVALID_ARGUMENT,
     {}},
    // issued half a year after settlement: -1/2 of 50 and a price of 25
    {"YIELDMAT/nothing paid",
     "YIELDMAT",
     {host_date(2010, 1, 1), host_date(2011, 1, 1), host_date(2010, 7, 1), 0.5, 25},
     STATUS_INVALID_ARGUMENT,
     {}},
};

TEST(SecurityRefusals, OrderOfDates) { check_refusals(order_of_dates); }
TEST(SecurityRefusals, TheFirstOfTwoFaultsIsNamed) { check_refusals(two_faults); }
TEST(SecurityRefusals, CalculationsWithoutAnAnswer) { check_refusals(no_answer); }

}  // namespace
}  // namespace finance::test
