// Dates as tables write them. Days since 1960-01-01 are those of the calendar: 2024-01-15 is 23,390 of them on (64 years
// of 365 days, 16 leap days from 1960 to 2020, 14 days).
#include "reading/date_form.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace finance::test {
namespace {

using reading::DateForm;

constexpr double january_15 = 64 * 365 + 16 + 14;

struct Row {
    DateForm form;
    const char* text;
    std::optional<double> day;
};

const Row rows[] = {
    {DateForm::days, "2024-01-15", january_15},
    {DateForm::days, "23390", january_15},
    {DateForm::days, "15.01.2024", {}},
    {DateForm::ymd, "2024-01-15", january_15},
    {DateForm::ymd, "2024/1/15", january_15},
    {DateForm::ymd, "2024.01.15", january_15},
    {DateForm::ymd, "20240115", january_15},
    {DateForm::ymd, "20241301", {}},
    {DateForm::ymd, "23390", {}},
    {DateForm::ymd, "24-01-15", {}},
    {DateForm::ymd, "2024-01/15", {}},
    {DateForm::ymd, "2024-001-15", {}},
    {DateForm::ymd, "2024-01-015", {}},
    {DateForm::ymd, "2O24-01-15", {}},  // letters O
    {DateForm::ymd, "2024-O1-15", {}},
    {DateForm::dmy, "15.01.2024", january_15},
    {DateForm::dmy, "15/1/2024", january_15},
    {DateForm::dmy, "2024-01-15", january_15},
    {DateForm::dmy, "01/15/2024", {}},
    {DateForm::dmy, "15.01.24", {}},
    {DateForm::dmy, "15.01.", {}},
    {DateForm::dmy, "+5.01.2024", {}},
    {DateForm::mdy, "01/15/2024", january_15},
    {DateForm::mdy, "1-15-2024", january_15},
    {DateForm::mdy, "15.01.2024", {}},
    {DateForm::mdy, "02/30/2024", {}},
    {DateForm::sheet, "45306", january_15},  // 2024-01-15 in every sheet
    {DateForm::sheet, "45306.5", january_15 + 0.5},
    {DateForm::sheet, "61", 61.0 - 21916.0},  // 1900-03-01: 21,855 days before 1960
    {DateForm::sheet, "60", {}},              // the day that never was
    {DateForm::sheet, "nan", {}},
    {DateForm::sheet, "2024-01-15", january_15},
    {DateForm::sheet, "15.01.2024", {}},
};

TEST(DateForms, Rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(reading::read_date(row.form, row.text), row.day) << row.text << ' ' << static_cast<int>(row.form);
    }
}

TEST(DateForms, Hints) {
    EXPECT_EQ(reading::hint_on_dates(DateForm::days, "15.01.2024"), "; --dates dmy reads 2024-01-15");
    EXPECT_EQ(reading::hint_on_dates(DateForm::days, "01/02/2024"),
              "; --dates dmy reads 2024-02-01, --dates mdy reads 2024-01-02");
    EXPECT_EQ(reading::hint_on_dates(DateForm::dmy, "01/15/2024"), "; --dates mdy reads 2024-01-15");
    EXPECT_EQ(reading::hint_on_dates(DateForm::days, "soon"), "");
}

}  // namespace
}  // namespace finance::test
