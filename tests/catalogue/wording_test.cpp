// The rules in words.
#include "catalogue/wording.hpp"

#include <gtest/gtest.h>

#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

struct RuleCase {
    const catalogue::Calculation& calculation;
    std::size_t parameter;
    const char* expected;
};

const RuleCase cases[] = {
    {*catalogue::find("PMT"), 0, "must be above 0"},
    {*catalogue::find("PMT"), 1, "must be at least 1"},
    {*catalogue::find("PMT"), 2, ""},
    {*catalogue::find("PMT"), 4, "must be at most 1"},
    {*catalogue::find("PV"), 0, "must be above -1"},
    {*catalogue::find("IPMT"), 1, "must be at least 1 and at most nper"},
    {*catalogue::find("CUMPRINC"), 3, "must be at least 1 and at most nper and at most endPeriod"},
    {*catalogue::find("FV"), 3, "must not be missing where pmt is missing too"},
    {bond, 1, "must be after settlement"},
    {moments, 0, "must be after 1960-01-01"},
    {periods, 2, "must be above 0; must be written out where an argument follows"},
    {periods, 3, "must be at least 0 and at most 1"},
};

TEST(Wording, Rules) {
    for (const RuleCase& row : cases) {
        const catalogue::Parameter& parameter = row.calculation.parameters[row.parameter];
        EXPECT_EQ(catalogue::rule_words(parameter), row.expected) << row.calculation.name << ' ' << parameter.name;
    }
}

TEST(Wording, EveryKindHasWords) {
    using catalogue::Kind;
    for (const Kind kind : {Kind::number, Kind::whole, Kind::date, Kind::date_time, Kind::basis, Kind::flag,
                            Kind::numbers, Kind::dates}) {
        EXPECT_FALSE(catalogue::kind_words(kind).empty());
    }
}

}  // namespace
}  // namespace finance::test
