// `finance fold`, the built command on groups of rows. Expected values by hand or, for the rates of deal x, the closed
// forms at 60 digits of the same flows (expected_values.py).
#include <gtest/gtest.h>
#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

const std::string flows = std::string{"'"} + TEST_DATA + "/flows.csv'";

CommandRun fold(const std::string& calls, const std::string& rest) {
    return run_command("fold '" + calls + "' " + rest);
}

CommandRun fold_text(const std::string& calls, const std::string& options, const std::string& table) {
    const auto path = std::filesystem::temp_directory_path() / ("finance_fold_" + std::to_string(getpid()));
    std::ofstream{path, std::ios::binary} << table;
    const CommandRun run = fold(calls, options + " < '" + path.string() + "'");
    std::filesystem::remove(path);
    return run;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

double number(const std::string& text) {
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

TEST(Fold, GroupsInTheOrderOfTheirFirstRows) {
    const CommandRun run = fold("NPV(rate, amount) as v", "--by deal,year --status " + flows);
    EXPECT_EQ(run.exit_status, 1);
    const auto lines = lines_of(run.output);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "deal,year,v,v_status");
    EXPECT_EQ(lines[1].substr(0, 4), "x,1,");
    // (-1000 + 600 / 1.1 + 600 / 1.21) / 1.1 = 50000 / 1331
    EXPECT_NEAR(number(lines[1].substr(4)), 50000.0 / 1331.0, 1e-11);
    EXPECT_EQ(lines[2], "y,1,0,") << "-100 / 1.25 + 125 / 1.5625";
    EXPECT_EQ(lines[3].substr(0, 6), "y,2,-9") << "-100 / 1.1";
    EXPECT_EQ(lines[4], "z,1,,line 8: amount: 'abc' is not a number");
    EXPECT_EQ(lines[5], "w,1,,line 11: rate: 0.2 is not the 0.1 of the group's first row");
    EXPECT_EQ(run.error,
              "finance: fold: 5 groups: 3 answered, 0 missing, 2 refused\n"
              "  z, 1: v: line 8: amount: 'abc' is not a number\n"
              "  w, 1: v: line 11: rate: 0.2 is not the 0.1 of the group's first row\n");
}

TEST(Fold, EveryCalculationOfLists) {
    const CommandRun run = fold_text(
        "XIRR(v, d), XIRR(v, d, 0.1) as g, XNPV(0.1, v, d), IRR(v), MIRR(v, 10%, reinvestRate=5%), FVSCHEDULE(100, r), "
        "NPV(10%, flows=v)",
        "", "v,d,r\n-1000,2023-01-01,0.1\n600,2024-01-01,0.2\n600,2025-01-01,0.5\n");
    EXPECT_EQ(run.exit_status, 0) << run.error;
    const auto lines = lines_of(run.output);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "xirr,g,xnpv,irr,mirr,fvschedule,npv");
    std::vector<double> values;
    std::istringstream fields{lines[1]};
    for (std::string field; std::getline(fields, field, ',');) values.push_back(number(field));
    ASSERT_EQ(values.size(), 7U);
    EXPECT_NEAR(values[0], 0.13054099320394236, 1e-12);
    EXPECT_NEAR(values[1], 0.13054099320394236, 1e-12);
    EXPECT_NEAR(values[2], 41.19284808738571, 1e-10);
    EXPECT_NEAR(600 / (1 + values[3]) + 600 / ((1 + values[3]) * (1 + values[3])), 1000, 1e-9);
    EXPECT_NEAR((1 + values[4]) * (1 + values[4]), 600 * 2.05 / 1000, 1e-12) << "600 * 1.05 + 600, over two periods";
    EXPECT_NEAR(values[5], 198, 1e-12) << "100 * 1.1 * 1.2 * 1.5";
    EXPECT_NEAR(values[6], 50000.0 / 1331.0, 1e-11);
}

TEST(Fold, WithoutByAllRowsAreOneGroup) {
    EXPECT_EQ(fold_text("FVSCHEDULE(1000, r)", "--quiet --status", "r\n0.5\n1\n").output,
              "fvschedule,fvschedule_status\n3000,\n");
    EXPECT_EQ(fold_text("FVSCHEDULE(1000, r)", "--quiet", "r\n").output, "fvschedule\n");
    EXPECT_EQ(fold_text("FVSCHEDULE(1000, $1)", "--quiet --no-header", "0.5\n1\n").output, "3000\n");
}

TEST(Fold, QuotedAndWindowsGroups) {
    const CommandRun run =
        fold_text("FVSCHEDULE(p, r)", "--quiet --by '\"my, deal\"'",
                  "\xEF\xBB\xBF\"my, deal\",p,r\r\n\"a,b\",100,0.5\r\nc,1,1\r\n\"a,b\",100,1\r\n\"c\",1,1");
    EXPECT_EQ(run.output, "\xEF\xBB\xBF\"my, deal\",fvschedule\r\n\"a,b\",300\r\nc,4\r\n");
}

TEST(Fold, MissingFlows) {
    const CommandRun run = fold_text("FVSCHEDULE(1000, r), FVSCHEDULE(p, r) as q", "--by g --status",
                                     "g,p,r\na,.,0.5\nb,1000,\nb,1000,1\na,,1\n");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output,
              "g,fvschedule,fvschedule_status,q,q_status\n"
              "a,3000,,,argument 1 (principal): a value is missing\n"
              "b,,\"argument 2 (rates, value 1): a value is missing\",,\"argument 2 (rates, value 1): a value is "
              "missing\"\n");
    EXPECT_EQ(run.error, "finance: fold: 2 groups: 0 answered, 2 missing, 0 refused\n");
}

TEST(Fold, RowsThatDoNotFitRefuseTheirGroup) {
    const CommandRun run = fold_text("FVSCHEDULE(1000, r)", "--by g", "r,g,x\n1,a,1\n1,b\n1,b,1\n1\n1,a,2\n");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.output, "g,fvschedule\na,4000\nb,\n");
    EXPECT_EQ(run.error,
              "finance: fold: 3 groups: 1 answered, 0 missing, 2 refused\n"
              "  line 5: the row has 1 field where the table has 3\n"
              "  b: fvschedule: line 3: the row has 2 fields where the table has 3\n");
}

TEST(Fold, StrictStopsBeforeTheFirstRefusal) {
    const CommandRun run = fold("NPV(rate, amount) as v", "--by deal --strict " + flows);
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(lines_of(run.output).size(), 2U) << "x answers, y has two rates";
}

TEST(Fold, ATableThatIsCutOffGivesNoResults) {
    const CommandRun run = fold_text("FVSCHEDULE(1000, r)", "--quiet", "r\n1\n\"1\n");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.output, "fvschedule\n");
    EXPECT_EQ(run.error, "finance: the input, line 3: the input ends within a quoted field; it may be cut off\n");
}

TEST(Fold, ManyGroupsOfUnsortedRows) {
    std::string table = "g,r\n";
    std::string expected = "g,fvschedule\n";
    constexpr int groups = 5000;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < groups; ++i) table += 'g' + std::to_string((i * 7) % groups) + ",1\n";
    }
    for (int i = 0; i < groups; ++i) expected += 'g' + std::to_string((i * 7) % groups) + ",8\n";
    EXPECT_TRUE(fold_text("FVSCHEDULE(1, r)", "--by g --quiet", table).output == expected);
}

struct UsageCase {
    const char* calls;
    const char* options;
    const char* error;
};

constexpr UsageCase wrong_usages[] = {
    {"PMT(r, r, r)", "", "finance: fold: PMT takes no list; use finance map\ntry: finance help fold\n"},
    {"NPV(0.1, r, r)", "", "finance: fold: NPV: flows must be one column\ntry: finance help fold\n"},
    {"NPV(0.1, 5)", "", "finance: fold: NPV: flows must be one column\ntry: finance help fold\n"},
    {"NPV(0.1, q)", "", "finance: the input has no column 'q' (did you mean r?)\ntry: finance help fold\n"},
    {"NPV(0.1, r)", "--by q", "finance: the input has no column 'q' (did you mean r?)\ntry: finance help fold\n"},
    {"NPV(0.1, r)", "--by", "finance: fold: --by needs a value\ntry: finance help fold\n"},
    {"XIRR(r)", "", "finance: XIRR: too few arguments: no values, dates\ntry: finance help XIRR\n"},
};

// NPV at 1 of 2 and 4: 2/2 + 4/4 = 2.
TEST(Fold, ObjectsForMachines) {
    const CommandRun run = fold_text("NPV(1, flow) as value", "--by fund,deal --json --quiet",
                                     "fund,deal,flow\nF,\"a\"\"b\",2\nF,c,x\nF,\"a\"\"b\",4\n");
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.output,
              R"({"group":{"fund":"F","deal":"a\"b"},"result":"value","calculation":"NPV","status":"answered",)"
              R"("value":2,"argument":null,"rule":null,"message":null,"notes":[]})"
              "\n"
              R"({"group":{"fund":"F","deal":"c"},"result":"value","calculation":"NPV","status":"refused",)"
              R"("value":null,"argument":{"position":2,"name":"flows"},"rule":"number",)"
              R"("message":"line 3: flow: 'x' is not a number","notes":[]})"
              "\n");
}

TEST(Fold, WrongUsage) {
    for (const UsageCase& row : wrong_usages) {
        const CommandRun run =
            run_command("fold '" + std::string{row.calls} + "' - " + row.options + " < '" TEST_DATA "/rates.csv'");
        EXPECT_EQ(run.exit_status, 2) << row.calls;
        EXPECT_EQ(run.output, "") << row.calls;
        EXPECT_EQ(run.error, row.error) << row.calls << ' ' << row.options;
    }
}

TEST(Fold, Help) { EXPECT_NE(run_command("help fold").output.find("--by COLUMN,..."), std::string::npos); }

TEST(Fold, DatedFlowsAreInOrderOfTheirDates) {
    const CommandRun run = run_command(
        "fold 'XIRR(v, d) as rate, XNPV(0.1, v, d) as worth, NPV(0.1, v) as periodic' --quiet <<'END'\n"
        "v,d\n121,2002-12-31\n-100,2000-12-31\n0,2001-12-31\nEND\n");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.error, "");
    const CommandRun sorted = run_command(
        "fold 'XIRR(v, d) as rate, XNPV(0.1, v, d) as worth' --quiet <<'END'\n"
        "v,d\n-100,2000-12-31\n0,2001-12-31\n121,2002-12-31\nEND\n");
    EXPECT_EQ(run.output.substr(0, run.output.find(",periodic")), "rate,worth");
    const std::string rows = run.output.substr(run.output.find('\n') + 1);
    const std::string of_sorted = sorted.output.substr(sorted.output.find('\n') + 1);
    EXPECT_EQ(rows.substr(0, rows.rfind(',')) + '\n', of_sorted);
    EXPECT_NEAR(std::stod(rows.substr(rows.rfind(',') + 1)), 121 / 1.1 - 100 / 1.21, 1e-12) << "rows keep their order";
}

TEST(Fold, AnAnswerThatDoesNotSolveIsCountedApart) {
    const std::string table =
        "--status --by g <<'END'\ng,v,d\na,100,2000-01-01\nb,-100,2000-01-01\nb,110,2001-01-01\nEND\n";
    const CommandRun run = run_command("fold 'XIRR(v, d) as r' " + table);
    EXPECT_EQ(run.exit_status, 1);
    const std::string why =
        "does not solve: the search ended at the lowest rate that it tries; XNPV at this rate is 100, not 0; the "
        "values "
        "do not change sign: a rate needs money paid and money received";
    EXPECT_EQ(run.output.substr(0, run.output.find("\nb,")), "g,r,r_status\na,,\"" + why + '"') << run.output;
    EXPECT_EQ(run.error,
              "finance: fold: 2 groups: 1 answered, 0 missing, 1 does not solve, 0 refused\n  a: r: " + why + '\n');
}

}  // namespace
}  // namespace finance::test
