// Too few arguments and too many. Sentences by hand.
#include "calls/counts.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace finance::test {
namespace {

using host::Argument;

struct Case {
    const char* name;
    std::vector<Argument> arguments;
    const char* sentence;
};

const Case cases[] = {
    {"PMT", {}, "too few arguments: no rate, nper, pv"},
    {"PMT", {1}, "too few arguments: no nper, pv"},
    {"PMT", {1, Argument::absent(), Argument::missing()}, ""},
    {"PMT", {1, 2, 3, 4, 5}, ""},
    {"PMT", {1, 2, 3, 4, 5, 6.5}, "too many arguments, from '6.5' on"},
    {"PMT", {1, 2, 3, 4, 5, "more", 7}, "too many arguments, from 'more' on"},
    {"PMT", {1, 2, 3, 4, 5, Argument::missing()}, "too many arguments, from '.' on"},
    {"PMT", {1, 2, 3, 4, 5, Argument::absent()}, "too many arguments, from '' on"},
    {"AMORLINC", {1, 2}, "too few arguments: no firstPeriodEnd, salvage, period, rate"},
    {"IRR", {}, "too few arguments: no flows"},
    {"IRR", {1}, ""},
    {"NPV", {}, "too few arguments: no rate"},
    {"NPV", {1}, ""},
    {"MIRR", {}, "too few arguments: no flows, financeRate, reinvestRate"},
    {"MIRR", {1, 2}, "too few arguments: no financeRate, reinvestRate"},
    {"MIRR", {1, 2, 3}, ""},
    {"XNPV", {}, "too few arguments: no rate, values, dates"},
    {"XNPV", {1}, "too few arguments: no values, dates"},
    {"XNPV", {1, 2}, "values and dates do not pair up"},
    {"XNPV", {1, 2, 3}, ""},
    {"XNPV", {1, 2, 3, 4}, "values and dates do not pair up"},
    {"XIRR", {}, "too few arguments: no values, dates"},
    {"XIRR", {1}, "too few arguments: no values, dates"},
    {"XIRR", {1, 2}, ""},
    {"XIRR", {1, 2, 3}, ""},
};

TEST(Counts, TooFewAndTooMany) {
    for (const Case& row : cases) {
        EXPECT_EQ(calls::count_fault(*catalogue::find(row.name), row.arguments), row.sentence)
            << row.name << " of " << row.arguments.size();
    }
}

int misplaced(const char* name, const std::vector<Argument>& arguments) {
    return calls::misplaced_text(*catalogue::find(name), arguments);
}

TEST(Counts, OnlyABasisIsGivenInLetters) {
    EXPECT_EQ(misplaced("YEARFRAC", {1, 2, "ACT/360"}), 0);
    EXPECT_EQ(misplaced("YEARFRAC", {1, "2", "ACT/360"}), 2);
    EXPECT_EQ(misplaced("YEARFRAC", {1, 2, 3, "4"}), 0);  // nobody's
    EXPECT_EQ(misplaced("XNPV", {0.1, 1, 2, 3, "4"}), 5);
    EXPECT_EQ(misplaced("PMT", {Argument::absent_text(), 2, 3}), 0);
}

}  // namespace
}  // namespace finance::test
