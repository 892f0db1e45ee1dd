// Fields of tables through the command: options that say how they are read.
#include "command/tables/field_options.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

TEST(FieldOptions, TextsThatAreMissingValues) {
    reading::FieldForm form;
    command::add_missing(form, "NA, #N/A,,NULL");
    command::add_missing(form, "-");
    EXPECT_EQ(form.missing, (std::vector<std::string_view>{"NA", "#N/A", "NULL", "-"}));
}

const std::string dirty =
    "<<'END'\ndeal;amount;n\nA;-1.000,00 EUR;4\nA;\"1.100,00 EUR\";#N/A\nB;(200);4\nB;300 EUR;4\nEND\n";

// -1000 over 4 periods is -250; NPV at 100 % of -200, 300 is -100 + 75, of -1000, 1100 -500 + 275.
TEST(FieldOptions, MapAndFoldReadByOptions) {
    const std::string options = " --quiet --decimal comma --numbers loose --missing '#N/A' ";
    const CommandRun map = run_command("map 'SLN(amount, 0, n) as part'" + options + dirty);
    EXPECT_EQ(map.output,
              "deal;amount;n;part\nA;-1.000,00 EUR;4;-250\nA;\"1.100,00 EUR\";#N/A;\nB;(200);4;-50\nB;300 EUR;4;75\n");
    EXPECT_EQ(map.exit_status, 0);
    const CommandRun fold = run_command("fold 'NPV(100%, amount) as value' --by deal" + options + dirty);
    EXPECT_EQ(fold.output, "deal;value\nA;-225\nB;-25\n");
    const CommandRun refused_rows = run_command("fold 'NPV(100%, amount) as value' --by deal " + dirty);
    EXPECT_EQ(refused_rows.exit_status, 1);
    EXPECT_NE(refused_rows.error.find("'-1.000,00 EUR' is not a number; --decimal comma --numbers loose reads -1000"),
              std::string::npos)
        << refused_rows.error;
}

TEST(FieldOptions, ResultsHaveTheDecimalSignOfTheTable) {
    const std::string table = "<<'END'\na;b\n1,5;4\nEND\n";
    EXPECT_EQ(run_command("map 'SLN(a, 0, b)' --quiet --decimal comma " + table).output, "a;b;sln\n1,5;4;0,375\n");
    const std::string commas = "<<'END'\na,b\n\"1,5\",4\nEND\n";
    EXPECT_EQ(run_command("map 'SLN(a, 0, b)' --quiet --decimal comma " + commas).output,
              "a,b,sln\n\"1,5\",4,\"0,375\"\n");
    const CommandRun json = run_command("map 'SLN(a, 0, b)' --quiet --json --decimal comma " + table);
    EXPECT_NE(json.output.find("\"value\":0.375"), std::string::npos) << json.output;
    const CommandRun date = run_command(
        "map 'COUPNCD(a, b, 2)' --quiet --decimal comma <<'END'\n"
        "a;b\n2008-02-15;2017-11-15\nEND\n");
    EXPECT_EQ(date.output, "a;b;coupncd\n2008-02-15;2017-11-15;2008-05-15\n");
}

TEST(FieldOptions, OptionsHaveTwoWordsEach) {
    const CommandRun decimal = run_command("map 'SLN(a, 0, b)' --decimal semicolon </dev/null");
    EXPECT_EQ(decimal.exit_status, 2);
    EXPECT_EQ(decimal.error, "finance: --decimal is comma or point, not 'semicolon'\ntry: finance help map\n");
    const CommandRun numbers_option = run_command("map 'SLN(a, 0, b)' --numbers strict </dev/null");
    EXPECT_EQ(numbers_option.exit_status, 2);
    EXPECT_EQ(numbers_option.error, "finance: --numbers is loose or plain, not 'strict'\ntry: finance help map\n");
}

// Half a year of 30/360 is 0.5; 31 January to 31 July 2024 are 182 days.
TEST(FieldOptions, Dates) {
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
