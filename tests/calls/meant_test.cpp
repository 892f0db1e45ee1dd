// Values that nobody means. Days since 1960-01-01: 0001-01-01 is -715509, 9999-12-31 is 2936549, by the calendar of Python's
// datetime; 2024-01-15 is 23390.
#include "calls/meant.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "catalogue/wording.hpp"

namespace finance::test {
namespace {

using catalogue::Kind;
using host::Argument;

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct ValueRow {
    Kind kind;
    double x;
    bool meant;
};

const ValueRow values[] = {
    {Kind::date, -715509.0, true},
    {Kind::date, -715510.0, false},
    {Kind::date, 2936549.0, true},
    {Kind::date, 2936550.0, false},
    {Kind::date, 23390.5, true},
    {Kind::date, nan, true},
    {Kind::date, inf, false},
    {Kind::date, -inf, false},
    {Kind::date, 20240115.0, false},
    {Kind::dates, 2936550.0, false},
    {Kind::date_time, 2936549.9, true},
    {Kind::date_time, 2936550.0, false},
    {Kind::date_time, -715509.5, false},
    {Kind::basis, 0.0, true},
    {Kind::basis, 4.0, true},
    {Kind::basis, 1.5, false},
    {Kind::basis, -0.5, false},
    {Kind::basis, 7.0, true},  // refused by its rule
    {Kind::basis, nan, true},
    {Kind::number, 1e300, true},
    {Kind::whole, 2.5, true},
};

TEST(Meant, Values) {
    for (const ValueRow& row : values) {
        EXPECT_EQ(calls::is_meant(row.kind, row.x), row.meant) << static_cast<int>(row.kind) << ' ' << row.x;
    }
}

TEST(Meant, Words) {
    EXPECT_EQ(calls::unmeant_words(Kind::date, 20240115.0),
              "20240115 is no day of the years 1 to 9999, counted from 1960-01-01: it looks like 2024-01-15");
    EXPECT_EQ(calls::unmeant_words(Kind::date, 20241315.0),
              "20241315 is no day of the years 1 to 9999, counted from 1960-01-01");
    for (const char* no_eight_digits : {"2936550", "123456789"}) {
        EXPECT_EQ(calls::unmeant_words(Kind::date, std::stod(no_eight_digits)),
                  std::string{no_eight_digits} + " is no day of the years 1 to 9999, counted from 1960-01-01");
    }
    EXPECT_EQ(calls::unmeant_words(Kind::basis, 1.5),
              "1.5 is no code of a day-count basis: " + std::string{catalogue::basis_words});
}

struct CallRow {
    const char* name;
    std::vector<Argument> arguments;
    int unmeant;
};

const std::vector<CallRow> call_rows{
    {"YEARFRAC", {23390.0, 23756.0, "ACTUAL"}, 0},
    {"YEARFRAC", {23390.0, 20250115.0, 1.5}, 2},
    {"YEARFRAC", {23390.0, 23756.0, 1.5}, 3},
    {"YEARFRAC", {Argument::absent(), Argument::missing(), "x"}, 0},
    {"YEARFRAC", {23390.0, 23756.0, 1.0, 20250115.0}, 0},  // beyond its parameters
    {"XIRR", {-100.0, 110.0, 23390.0, 20250115.0}, 4},
    {"XIRR", {-100.0, 20250115.0, 23390.0, 23756.0}, 0},         // an amount
    {"XIRR", {-100.0, 110.0, 23390.0, 23756.0, 20250115.0}, 0},  // a guess
    {"PMT", {20250115.0, 1.5, 1e300}, 0},
};

TEST(Meant, Calls) {
    for (const CallRow& row : call_rows) {
        EXPECT_EQ(calls::unmeant_argument(*catalogue::find(row.name), row.arguments), row.unmeant) << row.name;
    }
}

TEST(Meant, Columns) {
    const catalogue::Calculation& calculation = *catalogue::find("YEARFRAC");
    const std::vector<double> good{23390.0, nan, 23756.0};
    const std::vector<double> bad{23390.0, 23756.0, 20250115.0};
    const auto all_meant = [&](const host::Column& start, const host::Column& end, const host::Column& basis) {
        const std::vector<host::Column> columns{start, end, basis};
        return calls::all_meant(calculation, columns, good.size());
    };
    const host::Column in_order = host::Column::numbers(good.data());
    const host::Column with_one = host::Column::numbers(bad.data());
    EXPECT_TRUE(all_meant(in_order, in_order, Argument{"ACTUAL"}));
    EXPECT_FALSE(all_meant(in_order, with_one, Argument{"ACTUAL"}));
    EXPECT_FALSE(all_meant(in_order, in_order, Argument{1.5}));
    EXPECT_FALSE(all_meant(Argument{2936550.0}, in_order, Argument{1.0}));
}

TEST(Meant, BasesByOtherNames) {
    struct Name {
        const char* text;
        const char* keyword;
    };
    for (const Name& row :
         {Name{"30E/360", "EU30/360"}, Name{"act / act", "ACTUAL"}, Name{"Actual/360", "ACT/360"},
          Name{"ACT/365F", "ACT/365"}, Name{"30/360 US", "30/360"}, Name{"30/361", ""}, Name{"", ""}}) {
        EXPECT_EQ(catalogue::basis_meant_by(row.text), row.keyword) << row.text;
    }
}

}  // namespace
}  // namespace finance::test
