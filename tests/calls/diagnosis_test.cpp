// The one-line reasons. Each row: a call whose flagged argument breaks the rule that its id names.
#include "calls/diagnosis.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

using catalogue::Calculation;
using host::Argument;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const Argument absent = Argument::absent();

const Calculation& of(const char* name) { return *catalogue::find(name); }

struct ReasonCase {
    const char* id;
    const Calculation& calculation;
    std::vector<Argument> arguments;
    int flagged;
    const char* expected;
};

const std::vector<ReasonCase> cases{
    // no value
    {"absent", of("PMT"), {0.1, absent, 1.0}, 2, "no value given"},
    {"missing", of("PMT"), {nan, 12.0, 1.0}, 1, "a value is missing"},
    {"missing where it depends on another",
     of("FV"),
     {0.1, 12.0, nan, nan},
     4,
     "a value is missing (it must not be missing where pmt is missing too)"},
    {"absent and optional",
     periods,
     {5.0, 1.0, absent, 1.0},
     3,
     "no value given (it must be written out where an argument follows)"},
    {"text for a number", of("PMT"), {std::string_view{"abc"}, 12.0, 1.0}, 1, "'abc' is not a number"},

    // bounds
    {"zero rate", of("PMT"), {0.0, 12.0, 1.0}, 1, "0 is not above 0"},
    {"negative rate", of("PMT"), {-0.05, 12.0, 1.0}, 1, "-0.05 is not above 0"},
    {"rate of PV", of("PV"), {-1.0, 12.0, 1.0}, 1, "-1 is not above -1"},
    {"count of 0", of("PMT"), {0.1, 0.0, 1.0}, 2, "0 is below 1"},
    {"count of -3", of("PMT"), {0.1, -3.0, 1.0}, 2, "-3 is below 1"},
    {"count of -infinity", of("PMT"), {0.1, -infinity, 1.0}, 2, "-inf is below 1"},
    {"start below 0", periods, {5.0, -1.0}, 2, "-1 is below 0"},

    // whole numbers
    {"fraction", of("PMT"), {0.1, 2.5, 1.0}, 2, "2.5 is not a whole number"},
    {"outside the tolerance", of("PMT"), {0.1, 3.00000000001, 1.0}, 2, "3.00000000001 is not a whole number"},
    {"within the tolerance, and below 1", of("PMT"), {0.1, -3.0000000000001, 1.0}, 2, "-3.0000000000001 is below 1"},
    {"above 2^53", of("PMT"), {0.1, 9007199254740994.0, 1.0}, 2, "9007199254740994 is above 2^53"},
    {"infinity", of("PMT"), {0.1, infinity, 1.0}, 2, "inf is above 2^53"},
    {"below -2^63", of("PMT"), {0.1, -1e300, 1.0}, 2, "-1e+300 is below -2^63"},
    {"2^31", of("PMT"), {0.1, 2147483648.0, 1.0}, 2, "2147483648 does not fit a count (1 to 2147483647)"},
    {"2^32", of("PMT"), {0.1, 4294967296.0, 1.0}, 2, "4294967296 does not fit a count (1 to 2147483647)"},
    {"2^31 for a start", periods, {1e10, 2147483648.0}, 2, "2147483648 does not fit a count (0 to 2147483647)"},
    {"frequency", bond, {0.0, 1.0, 0.1, 0.0}, 4, "0 is below 1"},

    // flags
    {"type 0.5", of("PMT"), {0.1, 12.0, 1.0, 0.0, 0.5}, 5, "0.5 is not a whole number"},
    {"type nearly 1", of("PMT"), {0.1, 12.0, 1.0, 0.0, 1.0000000000001}, 5, "1.0000000000001 is not a whole number"},
    {"type 2", of("PMT"), {0.1, 12.0, 1.0, 0.0, 2.0}, 5, "2 is above 1"},
    {"type 2^31", of("PMT"), {0.1, 12.0, 1.0, 0.0, 2147483648.0}, 5, "2147483648 does not fit a flag"},
    {"type infinity", of("PMT"), {0.1, 12.0, 1.0, 0.0, infinity}, 5, "inf is not a whole number"},
    {"flag below 0", periods, {5.0, 1.0, 2.0, -1.0}, 4, "-1 is below 0"},

    // other arguments of the call
    {"one more than the life", one_more, {10.0, 12.0}, 2, "12 is above life + 1 (11)"},
    {"compared in 64 bits", one_more, {10.0, 4294967301.0}, 2, "4294967301 is above life + 1 (11)"},
    {"period beyond the loan", of("IPMT"), {0.1, 13.0, 12.0, 1.0}, 2, "13 is above nper (12)"},
    {"start beyond the loan", of("CUMPRINC"), {0.1, 12.0, 1.0, 13.0, 14.0}, 4, "13 is above nper (12)"},
    {"end beyond the loan", of("CUMPRINC"), {0.1, 12.0, 1.0, 1.0, 14.0}, 5, "14 is above nper (12)"},
    {"start after the end", of("CUMPRINC"), {0.1, 12.0, 1.0, 5.0, 4.0}, 4, "5 is above endPeriod (4)"},
    {"nper counted in 32 bits", of("CUMPRINC"), {0.1, 4294967299.0, 1.0, 4.0, 4.0}, 4, "4 is above nper (4294967299)"},
    {"start above a life that is no whole number", periods, {2.5, 3.0}, 2, "3 is above life (2.5)"},
    {"dates out of order",
     bond,
     {host_date(2008, 2, 15), host_date(2008, 2, 15), 0.1, 1.0},
     2,
     "2008-02-15 is not after settlement (2008-02-15)"},
    {"part days out of order", moments, {10.5, 10.25}, 2, "10.25 is not after settlement (10.5)"},
    {"date not whole", bond, {0.5, host_date(2008, 2, 15), 0.1, 1.0}, 1, "0.5 is not a whole number"},
    {"date at the bound", moments, {0.0, 5.0}, 1, "1960-01-01 is not after 1960-01-01"},

    {"dates out of order, laid at a third argument's door",
     blaming,
     {host_date(2008, 2, 15), host_date(2008, 2, 15), 2.0},
     3,
     "maturity (2008-02-15) is not after settlement (2008-02-15)"},
    {"the same, and the third argument is bad as well",
     blaming,
     {host_date(2008, 2, 15), host_date(2008, 2, 14), 0.0},
     3,
     "maturity (2008-02-14) is not after settlement (2008-02-15)"},
    {"the same, and the third argument has no value",
     blaming,
     {host_date(2008, 2, 15), host_date(2008, 2, 14), absent},
     3,
     "maturity (2008-02-14) is not after settlement (2008-02-15)"},
    {"the third argument itself", blaming, {host_date(2008, 2, 15), host_date(2008, 2, 16), 0.0}, 3, "0 is below 1"},

    // rules of the calculations themselves
    {"end before start",
     of("YEARFRAC"),
     {host_date(2024, 1, 21), host_date(2024, 1, 20)},
     2,
     "2024-01-20 is before startDate (2024-01-21)"},
    {"maturity before settlement",
     of("PRICE"),
     {host_date(2024, 1, 21), host_date(2024, 1, 20), 0.05, 0.06, 100.0, 2.0},
     2,
     "2024-01-20 is before settlement (2024-01-21)"},
    {"maturity equal to settlement",
     of("PRICEMAT"),
     {host_date(2024, 1, 21), host_date(2024, 1, 21), host_date(2024, 1, 15), 0.05, 0.06},
     2,
     "2024-01-21 is not after settlement (2024-01-21)"},
    {"order of COUPDAYBS",
     of("COUPDAYBS"),
     {host_date(2024, 1, 21), host_date(2024, 1, 21), 2.0},
     3,
     "maturity (2024-01-21) is not after settlement (2024-01-21)"},
    {"issue after settlement",
     of("ODDFPRICE"),
     {host_date(2024, 1, 21), host_date(2028, 6, 12), host_date(2024, 1, 22), host_date(2024, 1, 25), 0.05, 0.06, 100.0,
      2.0},
     3,
     "2024-01-22 is after settlement (2024-01-21)"},
    {"first coupon after maturity",
     of("ODDFYIELD"),
     {host_date(2024, 1, 21), host_date(2024, 1, 23), host_date(2024, 1, 15), host_date(2024, 1, 24), 0.05, 95.0, 100.0,
      2.0},
     4,
     "2024-01-24 is after maturity (2024-01-23)"},
    {"first coupon off the schedule",
     of("ODDFPRICE"),
     {host_date(2024, 1, 21), host_date(2028, 6, 12), host_date(2024, 1, 15), host_date(2024, 1, 25), 0.05, 0.06, 100.0,
      2.0},
     4,
     "2024-01-25 is refused: it must be a coupon date: whole periods of 12 / frequency months before maturity"},
    {"salvage above cost", of("AMORLINC"), {100.0, 0.0, 1.0, 101.0, 0.0, 0.2}, 4, "101 is above cost (100)"},
    {"salvage below 0", of("AMORDEGRC"), {100.0, 0.0, 1.0, -1.0, 0.0, 0.2}, 4, "-1 is below 0"},
    {"basis of AMORLINC",
     of("AMORLINC"),
     {100.0, 0.0, 1.0, 10.0, 0.0, 0.2, 2.0},
     7,
     "2 is refused: it must not be ACT/360"},
    {"unknown basis of AMORDEGRC",
     of("AMORDEGRC"),
     {100.0, 0.0, 1.0, 10.0, 0.0, 0.2, 7.0},
     7,
     "7 is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4"},
    {"start beyond the life", of("VDB"), {100.0, 10.0, 5.0, 6.0, 7.0}, 4, "6 is above life (5)"},
    {"end beyond the life", of("VDB"), {100.0, 10.0, 5.5, 0.0, 6.0}, 5, "6 is above life (5.5)"},
    {"end of 0", of("VDB"), {100.0, 10.0, 5.0, 0.0, 0.0}, 5, "0 is below 1"},
    {"flag of 2", of("VDB"), {100.0, 10.0, 5.0, 0.0, 1.0, 2.0, 2.0}, 7, "2 is above 1"},
    {"negative flag", of("VDB"), {100.0, 10.0, 5.0, 0.0, 1.0, 2.0, -1.0}, 7, "-1 is below 0"},
    {"flag of 0.5", of("VDB"), {100.0, 10.0, 5.0, 0.0, 1.0, 2.0, 0.5}, 7, "0.5 is not a whole number"},
    {"factor left out before the flag",
     of("VDB"),
     {100.0, 10.0, 5.0, 0.0, 1.0, absent, 0.0},
     6,
     "no value given (it must not be missing, nor be left out where noSwitch is given)"},
    {"amount left out before the timing",
     of("NPER"),
     {0.01, -10.0, 100.0, absent, 1.0},
     4,
     "no value given (it must not be missing, nor be left out where type is given)"},
    {"period beyond the life", of("DDB"), {100.0, 10.0, 5.0, 6.0}, 4, "6 is above life (5)"},
    {"period beyond the year after the life", of("DB"), {100.0, 10.0, 5.0, 7.0}, 4, "7 is above life + 1 (6)"},
    {"month 0", of("DB"), {100.0, 10.0, 5.0, 1.0, 0.0}, 5, "0 is below 1"},
    {"bill without a term",
     of("TBILLEQ"),
     {host_date(2024, 1, 21), host_date(2024, 1, 21), 0.05},
     2,
     "2024-01-21 is not after settlement (2024-01-21)"},
    {"bill before the calendar", of("TBILLPRICE"), {0.0, 5.0, 0.05}, 1, "1960-01-01 is not after 1960-01-01"},
    {"denominator 0.5", of("DOLLARDE"), {1.02, 0.5}, 2, "0.5 is not a whole number"},
    {"rate 0 of NPV", of("NPV"), {0.0, 100.0}, 1, "0 is not above 0"},
    {"last rate of MIRR", of("MIRR"), {-100.0, 110.0, 0.1, 0.0}, 4, "0 is not above 0"},
    {"guess of XIRR", of("XIRR"), {-100.0, 110.0, 0.0, 365.0, nan}, 5, "a value is missing (it must not be missing)"},

    // bases
    {"keyword",
     bond,
     {0.0, 1.0, 0.1, 1.0, std::string_view{"abc"}},
     5,
     "'abc' is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4"},
    {"code",
     bond,
     {0.0, 1.0, 0.1, 1.0, 5.0},
     5,
     "5 is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4"},
    {"code -1",
     bond,
     {0.0, 1.0, 0.1, 1.0, -1.0},
     5,
     "-1 is not a day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4"},
    {"known but refused, text",
     moments,
     {1.0, 2.0, std::string_view{"act / 360"}},
     3,
     "'act / 360' is refused: it must not be ACT/360"},
    {"known but refused, code", moments, {1.0, 2.0, 2.0}, 3, "2 is refused: it must not be ACT/360"},

    // lists
    {"missing in a list", one_list_before, {-100.0, nan, 60.0, 0.1, 0.1}, 2, "a value is missing"},
    {"date in a list", two_lists_before, {-100.0, 110.0, 0.0, 365.5, 0.1}, 4, "365.5 is not a whole number"},

    // nobody's fault
    {"none flagged", one_list, {1.0, 2.0}, -1, "there is no such rate"},
    {"the name flagged", one_list, {1.0, 2.0}, 0, "there is no such rate"},
    {"beyond the call", one_list, {1.0, 2.0}, 3, "there is no such rate"},
    {"a rule that is not known here", bond, {0.0, 1.0, 0.1, 1.0}, 3, "0.1 is refused: it must be above 0"},
};

TEST(Diagnosis, Reasons) {
    std::set<std::string> ids;
    for (const ReasonCase& row : cases) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.id;
        EXPECT_EQ(calls::reason(row.calculation, row.arguments, row.flagged), row.expected) << row.id;
    }
}

struct FaultCase {
    const char* id;
    const Calculation& calculation;
    std::vector<Argument> arguments;
    int flagged;
    int expected;
};

const std::vector<FaultCase> faults{
    {"the marked one", one_list, {nan, 1.0}, 2, 2},
    {"unmarked, a missing flow", one_list, {-100.0, nan, 60.0}, -1, 2},
    {"unmarked, a flow without a value", one_list, {-100.0, 60.0, absent}, -1, 3},
    {"unmarked, all there", one_list, {100.0, 60.0}, -1, 0},
    {"unmarked, an optional one missing", of("PMT"), {1.0, 1024.0, 1.0, nan}, -1, 0},
    {"unmarked, one that may be missing", of("FV"), {1.0, 1024.0, nan, 1.0}, -1, 0},
    {"unmarked, a value beyond the lists", two_lists_after, {0.1, 1.0, 2.0, nan}, -1, 0},
};

TEST(Diagnosis, ArgumentAtFault) {
    for (const FaultCase& row : faults) {
        EXPECT_EQ(calls::argument_at_fault(row.calculation, row.arguments, row.flagged), row.expected) << row.id;
    }
}

TEST(Diagnosis, Labels) {
    EXPECT_EQ(calls::argument_label(of("PMT"), 2, 3), "argument 2 (nper)");
    EXPECT_EQ(calls::argument_label(one_list_after, 3, 4), "argument 2 (flows, value 2)");
    EXPECT_EQ(calls::argument_label(two_lists_before, 4, 5), "argument 2 (dates, value 2)");
    EXPECT_EQ(calls::argument_label(of("MIRR"), 4, 4), "argument 3 (reinvestRate)");
    EXPECT_EQ(calls::argument_label(of("XNPV"), 5, 5), "argument 3 (dates, value 2)");
    EXPECT_EQ(calls::argument_label(of("FVSCHEDULE"), 3, 3), "argument 2 (rates, value 2)");
    EXPECT_EQ(calls::argument_label(of("PMT"), 9, 9), "argument 9");
}

}  // namespace
}  // namespace finance::test
