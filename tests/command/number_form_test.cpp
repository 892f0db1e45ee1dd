// Answers with a number of decimals. A double's exact value is rounded: 0.125 is a tie, and the doubles
// nearest to 1.005, 2.675 and 1.115 lie below them.
#include "command/number_form.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

struct RoundingCase {
    double value;
    int decimals;
    const char* text;
};

const std::vector<RoundingCase> roundings{
    {0.125, 2, "0.12"},
    {0.375, 2, "0.38"},
    {0.5, 0, "0"},
    {1.5, 0, "2"},
    {2.5, 0, "2"},
    {-0.125, 2, "-0.12"},
    {1.005, 2, "1.00"},
    {2.675, 2, "2.67"},
    {1.115, 2, "1.11"},
    {1.115, 3, "1.115"},
    {-1199.1010503055047, 2, "-1199.10"},
    {-1199.1010503055047, 0, "-1199"},
    {1800, 2, "1800.00"},
    {-0.001, 2, "0.00"},
    {-0.0, 1, "0.0"},
    {0.1, 17, "0.10000000000000001"},
    {999999999999999, 2, "999999999999999.00"},
    {1e15, 2, "1000000000000000"},
    {1e300, 2, "1e+300"},
    {std::numeric_limits<double>::infinity(), 2, "inf"},
};

TEST(Digits, AreRoundedAsTheExactValueSays) {
    for (const RoundingCase& row : roundings) {
        EXPECT_EQ(command::rounded_text(row.value, row.decimals), row.text) << row.decimals;
    }
    EXPECT_EQ(roundings.size(), 20U);
    EXPECT_EQ(command::rounded(1199.1010503055047, 2), 1199.1);
}

struct CallCase {
    const char* arguments;
    int exit_status;
    const char* output;
    const char* error;
};

const std::string words = "finance: --digits is a whole number from 0 to 17, not '";

TEST(Digits, StandBeforeACallOrAmongItsArguments) {
    const std::vector<CallCase> calls{
        {"--digits 2 SLN 100 0 3", 0, "33.33\n", ""},
        {"SLN 100 0 3 --digits 2", 0, "33.33\n", ""},
        {"SLN --digits=1 100 0 3", 0, "33.3\n", ""},
        {"SLN 100 0 3 --digits 2 --digits 0", 0, "33\n", ""},
        {"--digits 5 SLN 100 0 3 --digits 1", 0, "33.3\n", ""},
        {"SLN 100 0 4 --digits 3", 0, "25.000\n", ""},
        {"COUPNCD 2008-02-15 2017-11-15 2 --digits 2", 0, "2008-05-15\n", ""},
        {"SLN 100 0 0 --digits 2", 1, "", "finance: SLN: argument 3 (life): 0 is not above 0\n"},
    };
    for (const CallCase& row : calls) {
        const CommandRun run = run_command(row.arguments);
        EXPECT_EQ(run.exit_status, row.exit_status) << row.arguments;
        EXPECT_EQ(run.output, row.output) << row.arguments;
        EXPECT_EQ(run.error, row.error) << row.arguments;
    }
    EXPECT_EQ(run_command("--json SLN 1 0 8 --digits 2").output.find("0.125") == std::string::npos, false);
}

TEST(Digits, AreAWholeNumber) {
    for (const std::string text : {"18", "-1", "two", "2.5", ""}) {
        for (const std::string& call : {"SLN 1 0 4 --digits '" + text + "'", "SLN --digits='" + text + "' 1 0 4"}) {
            const CommandRun run = run_command(call);
            EXPECT_EQ(run.exit_status, 2) << call;
            EXPECT_EQ(run.output, "") << call;
            EXPECT_EQ(run.error, words + text + "'\ntry: finance help\n") << call;
        }
    }
    EXPECT_EQ(run_command("--digits 18 SLN 1 0 4").error, words + "18'\ntry: finance help\n");
    EXPECT_EQ(run_command("SLN 1 0 4 --digits").error, words + "'\ntry: finance help\n");
    const CommandRun map = run_command("map 'SLN(a, 0, 1)' --digits 18 </dev/null");
    EXPECT_EQ(map.exit_status, 2);
    EXPECT_NE(map.error.find("--digits is a whole number from 0 to 17, not '18'"), std::string::npos) << map.error;
}

TEST(Digits, OfTablesAndScripts) {
    const std::string table = "<<'END'\ndeal,a,b\nA,100,3\nA,-200,0\nEND\n";
    EXPECT_EQ(run_command("map 'SLN(a, 0, b) as part' --digits 2 --quiet " + table).output,
              "deal,a,b,part\nA,100,3,33.33\nA,-200,0,\n");
    EXPECT_EQ(run_command("--digits 2 map 'SLN(a, 0, b) as part' --quiet " + table).output,
              "deal,a,b,part\nA,100,3,33.33\nA,-200,0,\n");
    EXPECT_EQ(run_command("fold 'NPV(50%, a) as value' --by deal --digits 3 --quiet " + table).output,
              "deal,value\nA,-22.222\n");
    EXPECT_EQ(
        run_command("map 'SLN(a, 0, b) as part' --digits 2 --decimal comma --delimiter comma --quiet " + table).output,
        "deal,a,b,part\nA,100,3,\"33,33\"\nA,-200,0,\n");
    EXPECT_EQ(run_command("--digits 1 <<'END'\nSLN 100 0 3\nSLN _ 0 1 --digits 4\nEND\n").output, "33.3\n33.3333\n");
}

}  // namespace
}  // namespace finance::test
