// Dates as tables write them. Days since 1960-01-01 are those of the calendar: 2024-01-15 is 23,390 of them on (64 years
// of 365 days, 16 leap days from 1960 to 2020, 14 days).
#include "command/tables/date_form.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using command::DateForm;

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
        EXPECT_EQ(command::read_date(row.form, row.text), row.day) << row.text << ' ' << static_cast<int>(row.form);
    }
}

TEST(DateForms, Hints) {
    EXPECT_EQ(command::hint_on_dates(DateForm::days, "15.01.2024"), "; --dates dmy reads 2024-01-15");
    EXPECT_EQ(command::hint_on_dates(DateForm::days, "01/02/2024"),
              "; --dates dmy reads 2024-02-01, --dates mdy reads 2024-01-02");
    EXPECT_EQ(command::hint_on_dates(DateForm::dmy, "01/15/2024"), "; --dates mdy reads 2024-01-15");
    EXPECT_EQ(command::hint_on_dates(DateForm::days, "soon"), "");
}

// Half a year of 30/360 is 0.5; 31 January to 31 July 2024 are 182 days.
TEST(DateForms, InTables) {
    struct Table {
        const char* row;
        const char* options;
        const char* output;
        const char* reason;  // in the summary
    };
    const Table tables[] = {
        {"2024-01-01,2024-07-01,", "", ",0.5\n", ""},  // an empty basis
        {"2024-01-31,2024-07-31,ACT/365", "", ",0.4986301369863014\n", ""},
        {"31.01.2024,31/7/2024,ACT/365", "--dates dmy", ",0.4986301369863014\n", ""},
        {"45322,45504,ACT/365", "--dates sheet", ",0.4986301369863014\n", ""},
        {"20240131,2024-07-31,0", "", ",\n", "it looks like 2024-01-31; --dates ymd reads 2024-01-31"},
        {"2024-01-31,2024-07-31,1.5", "", ",\n", "1.5 is no code of a day-count basis"},
        {"2024-01-31,2024-07-31,30E/360", "", ",\n", "write EU30/360"},
        {"45322,45504,0", "--dates mdy", ",\n", "'45322' is not a date as --dates mdy has it"},
    };
    for (const Table& table : tables) {
        const std::string command = "map 'YEARFRAC(s, m, b) as y' " + std::string{table.options};
        const CommandRun run = run_command(command + " <<'END'\ns,m,b\n" + table.row + "\nEND\n");
        EXPECT_TRUE(run.output.ends_with(table.output)) << table.row << run.output << run.error;
        EXPECT_NE(run.error.find(table.reason), std::string::npos) << run.error;
    }
    const CommandRun wrong = run_command("map 'SLN(a, 0, 1)' --dates american /dev/null");
    EXPECT_EQ(wrong.exit_status, 2);
    EXPECT_NE(wrong.error.find("--dates is days, sheet, ymd, dmy or mdy, not 'american'"), std::string::npos);
}

}  // namespace
}  // namespace finance::test
