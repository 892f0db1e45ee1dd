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
    {*catalogue::find("COUPDAYBS"), 1, ""},
    {*catalogue::find("COUPDAYBS"), 2, "must be at least 1; maturity must be after settlement"},
    {*catalogue::find("COUPDAYS"), 1, "must be not before settlement"},
    {*catalogue::find("COUPNCD"), 1, "must be after settlement"},
    {*catalogue::find("PRICEMAT"), 1, "must be after settlement"},
    {*catalogue::find("YIELDMAT"), 1, "must be not before settlement"},
    {*catalogue::find("YIELDMAT"), 2, "must be not after maturity"},
    {*catalogue::find("ODDFPRICE"), 3,
     "must be not before settlement and not after maturity; "
     "must be a coupon date: whole periods of 12 / frequency months before maturity"},
    {*catalogue::find("AMORLINC"), 3, "must be at least 0 and at most cost"},
    {*catalogue::find("AMORDEGRC"), 3, "must be at least 0"},
    {*catalogue::find("AMORLINC"), 6, "must not be ACT/360"},
    {*catalogue::find("DB"), 3, "must be at least 1 and at most life + 1"},
    {*catalogue::find("VDB"), 4, "must be at least 1 and at most life"},
    {*catalogue::find("VDB"), 5, "must be above 0; must not be missing, nor be left out where noSwitch is given"},
    {*catalogue::find("VDB"), 6, "must be at least 0 and at most 1"},
    {*catalogue::find("DDB"), 4, ""},
    {*catalogue::find("NPER"), 4, ""},
    {*catalogue::find("TBILLPRICE"), 1, "must be after 1960-01-01"},
    {*catalogue::find("TBILLYIELD"), 1, "must be after 1960-01-01 and after settlement"},
    {*catalogue::find("NPV"), 0, "must be above 0"},
    {*catalogue::find("XNPV"), 0, ""},
    {bond, 1, "must be after settlement"},
    {blaming, 2, "must be at least 1; maturity must be after settlement"},
    {one_more, 1, "must be at least 1 and at most life + 1"},
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
