// YEARFRAC: values.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "calendar/kernels.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr const char* exact = "exact fraction, tests/reference/dates.py";
constexpr const char* by_hand = "by hand";

struct Row {
    std::string id;
    double start;
    double end;
    std::array<double, 5> by_basis;
};

const std::vector<Row> rows{
    {"some months",
     host_date(2001, 3, 20),
     host_date(2001, 9, 5),
     {0.4583333333333333, 0.46301369863013697, 0.46944444444444444, 0.46301369863013697, 0.4583333333333333}},
    {"to a 31st",
     host_date(2001, 1, 15),
     host_date(2001, 1, 31),
     {0.044444444444444446, 0.043835616438356165, 0.044444444444444446, 0.043835616438356165, 0.041666666666666664}},
    {"31 to 31",
     host_date(2001, 1, 31),
     host_date(2001, 3, 31),
     {0.16944444444444445, 0.16164383561643836, 0.1638888888888889, 0.16164383561643836, 0.16666666666666666}},
    {"end of February to 31 March",
     host_date(2001, 2, 28),
     host_date(2001, 3, 31),
     {0.09166666666666666, 0.08493150684931507, 0.08611111111111111, 0.08493150684931507, 0.08888888888888889}},
    {"31 January to 15 February",
     host_date(2001, 1, 31),
     host_date(2001, 2, 15),
     {0.03888888888888889, 0.0410958904109589, 0.041666666666666664, 0.0410958904109589, 0.041666666666666664}},
    {"from March of a leap year",
     host_date(2000, 3, 1),
     host_date(2001, 3, 1),
     {1.0, 1.0, 1.0138888888888888, 1.0, 1.0}},
    {"a leap year",
     host_date(2000, 1, 1),
     host_date(2000, 12, 31),
     {1.0, 0.9972677595628415, 1.0138888888888888, 1.0, 0.9972222222222222}},
    {"to 29 February",
     host_date(1999, 7, 1),
     host_date(2000, 2, 29),
     {0.6638888888888889, 0.6657534246575343, 0.675, 0.6657534246575343, 0.6611111111111111}},
    {"decades",
     host_date(1987, 5, 14),
     host_date(2023, 10, 31),
     {36.46388888888889, 36.46610922006808, 36.99722222222222, 36.49041095890411, 36.46111111111111}},
    {"before 1960",
     host_date(1899, 12, 31),
     host_date(1904, 2, 28),
     {4.158333333333333, 4.161643835616438, 4.219444444444444, 4.161643835616438, 4.161111111111111}},
};

TEST(YearFraction, AllBases) {
    std::vector<ValueCase> cases;
    for (const Row& row : rows) {
        for (std::size_t basis = 0; basis < row.by_basis.size(); ++basis) {
            const std::string id = "YEARFRAC/" + row.id + ", basis " + std::to_string(basis);
            const std::vector<Arg> arguments{row.start, row.end, static_cast<double>(basis)};
            cases.push_back({id, "YEARFRAC", arguments, row.by_basis[basis], exact, 1});
        }
    }
    check_values(cases);
}

constexpr double february = host_date(2001, 2, 28);
constexpr double march = host_date(2001, 3, 31);

const std::vector<ValueCase> values{
    {"28 February to 31 March", "YEARFRAC", {february, march}, 33 / 360.0, by_hand},
    {"28 February to 31 March, European", "YEARFRAC", {february, march, 4}, 32 / 360.0, by_hand},
    {"30 January to the end of February", "YEARFRAC", {host_date(2001, 1, 30), february}, 30 / 360.0, by_hand},
    {"31 January to 15 February", "YEARFRAC", {host_date(2001, 1, 31), host_date(2001, 2, 15)}, 14 / 360.0, by_hand},
    {"15 to 31 January", "YEARFRAC", {host_date(2001, 1, 15), host_date(2001, 1, 31)}, 16 / 360.0, by_hand},
    {"31 January to 31 March", "YEARFRAC", {host_date(2001, 1, 31), march}, 61 / 360.0, by_hand},
    {"31 January to 1 February", "YEARFRAC", {host_date(2001, 1, 31), host_date(2001, 2, 1)}, 0, by_hand},
    {"30 to 31 January", "YEARFRAC", {host_date(2001, 1, 30), host_date(2001, 1, 31)}, 1 / 360.0, by_hand},
    {"March of a leap year on", "YEARFRAC", {host_date(2000, 3, 1), host_date(2001, 3, 1), 1}, 1, by_hand},
    {"a whole leap year", "YEARFRAC", {host_date(2000, 1, 1), host_date(2000, 12, 31), 1}, 365 / 366.0, by_hand},

    // the basis
    {"basis omitted", "YEARFRAC", {february, march}, 33 / 360.0, by_hand},
    {"basis missing is ACTUAL", "YEARFRAC", {february, march, missing}, 31 / 365.0, by_hand},
    {"basis absent is ACTUAL", "YEARFRAC", {february, march, absent}, 31 / 365.0, by_hand},
    {"basis 2.9 is ACT/360", "YEARFRAC", {february, march, 2.9}, 31 / 360.0, by_hand},
    {"basis 4.7 is EU30/360", "YEARFRAC", {february, march, 4.7}, 32 / 360.0, by_hand},
    {"basis -0.5 is 30/360", "YEARFRAC", {february, march, -0.5}, 33 / 360.0, by_hand},
    {"basis by name", "YEARFRAC", {february, march, "act / 360"}, 31 / 360.0, by_hand},
    {"basis by name, blanks around", "YEARFRAC", {february, march, "  eu30/360  "}, 32 / 360.0, by_hand},

    // equal dates: nothing else is read
    {"equal dates", "YEARFRAC", {march, march}, 0, by_hand},
    {"equal dates, basis 5", "YEARFRAC", {march, march, 5}, 0, by_hand},
    {"equal dates, no such text", "YEARFRAC", {march, march, "nonsense"}, 0, by_hand},
    {"equal dates, no text", "YEARFRAC", {march, march, absent_text}, 0, by_hand},
    {"equal dates, other type", "YEARFRAC", {march, march, other_type}, 0, by_hand},
    {"dates equal but for their fractions", "YEARFRAC", {10000.0, 10000.000000001, 9}, 0, "both are day 10000"},

    // 32-bit day counts: five million years are 1.8e9 days of 360
    {"five million years", "YEARFRAC", {0, 1826212500, 4}, 5000000, "12500 times 400 years of 146097 days"},
    {"six million years by actual days", "YEARFRAC", {0, 2191455000.0, 3}, 2191455000.0 / 365.0, by_hand},
};

TEST(YearFraction, Values) { check_values(values); }

// Six million years are more days of 360 than 32 bits hold: the count is negative, and no argument is at fault.
TEST(YearFraction, NegativeFractionsFail) {
    check_refusals({{"six million years", "YEARFRAC", {0, 2191455000.0}, STATUS_INVALID_ARGUMENT, {}},
                    {"six million years, European", "YEARFRAC", {0, 2191455000.0, 4}, STATUS_INVALID_ARGUMENT, {}}});
}

// The record is left complete: fraction, days and year length of the kernel.
TEST(YearFraction, Kernel) {
    YearFractionRecord record{};
    record.terms = year_fraction_terms(BASIS_ACTUAL);
    record.start.julianDay = date_of(2000, 3, 1).julianDay;
    record.end.julianDay = date_of(2001, 3, 1).julianDay;
    EXPECT_EQ(zComputeYEARFRAC(&record), 0);
    EXPECT_TRUE(same_record(record.start, date_of(2000, 3, 1)));
    EXPECT_TRUE(same_record(record.end, date_of(2001, 3, 1)));
    EXPECT_EQ(record.fraction, 1.0);
    EXPECT_EQ(record.terms.dayCount, 365.0);
    EXPECT_EQ(record.terms.periodDays, 365.0);
    std::swap(record.start, record.end);
    record.terms.basis = BASIS_ACT_360;
    EXPECT_NE(zComputeYEARFRAC(&record), 0);
}

}  // namespace
}  // namespace finance::test
