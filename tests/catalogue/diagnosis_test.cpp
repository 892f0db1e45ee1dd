// The one-line reasons. Each row: a call whose flagged argument breaks the rule that its id names.
#include "catalogue/diagnosis.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <vector>

#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

using catalogue::Calculation;
using catalogue::Given;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
const Given absent{};

const Calculation& annuity(const char* name) { return *catalogue::find(name); }

struct ReasonCase {
    const char* id;
    const Calculation& calculation;
    std::vector<Given> arguments;
    int flagged;
    const char* expected;
};

const std::vector<ReasonCase> cases{
    // no value
    {"absent", annuity("PMT"), {0.1, absent, 1.0}, 2, "no value given"},
    {"missing", annuity("PMT"), {nan, 12.0, 1.0}, 1, "a value is missing"},
    {"missing where it depends on another",
     annuity("FV"),
     {0.1, 12.0, nan, nan},
     4,
     "a value is missing (it must not be missing where pmt is missing too)"},
    {"absent and optional",
     periods,
     {5.0, 1.0, absent, 1.0},
     3,
     "no value given (it must be written out where an argument follows)"},
    {"text for a number", annuity("PMT"), {std::string_view{"abc"}, 12.0, 1.0}, 1, "'abc' is not a number"},

    // bounds
    {"zero rate", annuity("PMT"), {0.0, 12.0, 1.0}, 1, "0 is not above 0"},
    {"negative rate", annuity("PMT"), {-0.05, 12.0, 1.0}, 1, "-0.05 is not above 0"},
    {"rate of PV", annuity("PV"), {-1.0, 12.0, 1.0}, 1, "-1 is not above -1"},
    {"count of 0", annuity("PMT"), {0.1, 0.0, 1.0}, 2, "0 is below 1"},
    {"count of -3", annuity("PMT"), {0.1, -3.0, 1.0}, 2, "-3 is below 1"},
    {"count of -infinity", annuity("PMT"), {0.1, -infinity, 1.0}, 2, "-inf is below 1"},
    {"start below 0", periods, {5.0, -1.0}, 2, "-1 is below 0"},

    // whole numbers
    {"fraction", annuity("PMT"), {0.1, 2.5, 1.0}, 2, "2.5 is not a whole number"},
    {"outside the tolerance", annuity("PMT"), {0.1, 3.00000000001, 1.0}, 2, "3.00000000001 is not a whole number"},
    {"within the tolerance, and below 1",
     annuity("PMT"),
     {0.1, -3.0000000000001, 1.0},
     2,
     "-3.0000000000001 is below 1"},
    {"above 2^53", annuity("PMT"), {0.1, 9007199254740994.0, 1.0}, 2, "9007199254740994 is above 2^53"},
    {"infinity", annuity("PMT"), {0.1, infinity, 1.0}, 2, "inf is above 2^53"},
    {"below -2^63", annuity("PMT"), {0.1, -1e300, 1.0}, 2, "-1e+300 is below -2^63"},
    {"2^31", annuity("PMT"), {0.1, 2147483648.0, 1.0}, 2, "2147483648 does not fit a count (1 to 2147483647)"},
    {"2^32", annuity("PMT"), {0.1, 4294967296.0, 1.0}, 2, "4294967296 does not fit a count (1 to 2147483647)"},
    {"2^31 for a start", periods, {1e10, 2147483648.0}, 2, "2147483648 does not fit a count (0 to 2147483647)"},
    {"frequency", bond, {0.0, 1.0, 0.1, 0.0}, 4, "0 is below 1"},

    // flags
    {"type 0.5", annuity("PMT"), {0.1, 12.0, 1.0, 0.0, 0.5}, 5, "0.5 is not a whole number"},
    {"type nearly 1",
     annuity("PMT"),
     {0.1, 12.0, 1.0, 0.0, 1.0000000000001},
     5,
     "1.0000000000001 is not a whole number"},
    {"type 2", annuity("PMT"), {0.1, 12.0, 1.0, 0.0, 2.0}, 5, "2 is above 1"},
    {"type 2^31", annuity("PMT"), {0.1, 12.0, 1.0, 0.0, 2147483648.0}, 5, "2147483648 does not fit a flag"},
    {"type infinity", annuity("PMT"), {0.1, 12.0, 1.0, 0.0, infinity}, 5, "inf is not a whole number"},
    {"flag below 0", periods, {5.0, 1.0, 2.0, -1.0}, 4, "-1 is below 0"},

    // other arguments of the call
    {"period beyond the loan", annuity("IPMT"), {0.1, 13.0, 12.0, 1.0}, 2, "13 is above nper (12)"},
    {"start beyond the loan", annuity("CUMPRINC"), {0.1, 12.0, 1.0, 13.0, 14.0}, 4, "13 is above nper (12)"},
    {"end beyond the loan", annuity("CUMPRINC"), {0.1, 12.0, 1.0, 1.0, 14.0}, 5, "14 is above nper (12)"},
    {"start after the end", annuity("CUMPRINC"), {0.1, 12.0, 1.0, 5.0, 4.0}, 4, "5 is above endPeriod (4)"},
    {"nper counted in 32 bits",
     annuity("CUMPRINC"),
     {0.1, 4294967299.0, 1.0, 4.0, 4.0},
     4,
     "4 is above nper (4294967299)"},
    {"start above a life that is no whole number", periods, {2.5, 3.0}, 2, "3 is above life (2.5)"},
    {"dates out of order", bond, {17577.0, 17577.0, 0.1, 1.0}, 2, "2008-02-15 is not after settlement (2008-02-15)"},
    {"part days out of order", moments, {10.5, 10.25}, 2, "10.25 is not after settlement (10.5)"},
    {"date not whole", bond, {0.5, 17577.0, 0.1, 1.0}, 1, "0.5 is not a whole number"},
    {"date at the bound", moments, {0.0, 5.0}, 1, "1960-01-01 is not after 1960-01-01"},

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
    {"known but refused, code", moments, {1.0, 2.0, 2.9}, 3, "2.9 is refused: it must not be ACT/360"},

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
        EXPECT_EQ(catalogue::reason(row.calculation, row.arguments, row.flagged), row.expected) << row.id;
    }
}

TEST(Diagnosis, Labels) {
    EXPECT_EQ(catalogue::argument_label(annuity("PMT"), 2, 3), "argument 2 (nper)");
    EXPECT_EQ(catalogue::argument_label(one_list_after, 3, 4), "argument 3 (flows, value 2)");
    EXPECT_EQ(catalogue::argument_label(two_lists_before, 4, 5), "argument 4 (dates, value 2)");
    EXPECT_EQ(catalogue::argument_label(annuity("PMT"), 9, 9), "argument 9");
}

}  // namespace
}  // namespace finance::test
