// Calls in brackets, variables and lines that go on, through the built command. Answers by hand, or those of the same
// call in words, whose values other tests pin.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "command/words.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

CommandRun run_script(const std::string& script, const std::string& options = "") {
    return run_command(std::string{options}.append(" <<'END OF SCRIPT'\n").append(script).append("\nEND OF SCRIPT\n"));
}

struct Pair {
    const char* id;
    const char* typed;
    const char* output;
};

constexpr Pair scripts[] = {
    {"a call in brackets", "SLN(1000, 200, 4)", "200\n"},
    {"with blanks and names", "  sln( cost = 500*2,salvage=2*100 , life=max(1, 4) )  ", "200\n"},
    {"with a comment", "SLN(1000, 200, 4) # each year", "200\n"},
    {"with texts", "YEARFRAC(\"2024-01-01\", '2024-07-01', \"ACTUAL\")\nYEARFRAC(2024-01-01, 2024-07-01, 30/360)",
     "0.4972677595628415\n0.5\n"},
    {"with lists", "NPV(100%, 4, 4)\nNPV(100%, flows=4, flows=2*2)\nXNPV(0, 1, 2, 2024-01-01, 2025-01-01)",
     "3\n3\n3\n"},
    {"with arguments left out", "PMT(100%, 1, 1, , 1)\nPMT(100%, 1, 1, type=1)", "-1\n-1\n"},
    {"objects", "--json SLN(10, 0, 4)\nSLN(10, 0, 4) --json",
     "{\"line\":1,\"calculation\":\"SLN\",\"status\":\"answered\",\"value\":2.5,\"argument\":null,\"rule\":null,"
     "\"message\":null,"
     "\"notes\":[]}\n"
     "{\"line\":2,\"calculation\":\"SLN\",\"status\":\"answered\",\"value\":2.5,\"argument\":null,\"rule\":null,"
     "\"message\":null,"
     "\"notes\":[]}\n"},

    {"pasted", "finance SLN 1000 200 4\n$ finance SLN 1000 200 4\n  $ finance 'SLN(1000, 200, 4)'\nfinance",
     "200\n200\n200\n"},
    {"pasted before a job", "$ finance schedule loan rate=100% nper=1 pv=1 --csv",
     "period,payment,interest,principal,balance\n1,-2,-1,-1,0\n"},

    {"variables", "c = 500*2\nlife=4\nSLN c c/5 life\nSLN(C, c/5, LIFE)\nSLN salvage=c/5 cost=c life=life",
     "200\n200\n200\n"},
    {"a variable of variables", "a = 2\nb = a^a^a\na = 3\na*b\nb", "48\n16\n"},
    {"of an answer", "p = SLN(1000, 200, 4)\nq = SLN 500 100 4\np + q\np", "300\n200\n"},
    {"of dates",
     "d = 2024-01-31\ne = d + 30\ne\ne - d\nn = COUPNCD 2025-01-20 2030-11-15 2\nn\nCOUPNCD n+1 2030-11-15 2",
     "2024-03-01\n30\n2025-05-15\n2025-11-15\n"},
    {"of a basis by number", "b = 1\nYEARFRAC 2024-01-01 2024-07-01 b\nYEARFRAC 2024-01-01 2024-07-01 ACTUAL",
     "0.4972677595628415\n0.4972677595628415\n"},
    {"listed", "r = 6%/12\nd = 2024-01-31\nr = 0.01\nSLN 1 0 1\nvariables", "1\nr = 0.01\nd = 2024-01-31\n"},
    {"the last answer in a formula", "SLN 1000 200 4\n_ * 2\nSLN(_, _/2, 4)", "200\n400\n50\n"},
    {"a formula", "6%/12*2\n2^3^2\nmax(1, 2)\n(1+2)*3", "0.01\n512\n2\n9\n"},

    {"a backslash", "SLN 1000 \\\n200 \\\n  4", "200\n"},
    {"a backslash and a carriage return", "SLN 1000 \\\r\n200 4\r", "200\n"},
    {"an open bracket", "SLN(1000,\n  200, # what is left\n  4)\nSLN 10 0 4", "200\n2.5\n"},
    {"a pasted one", "$ finance 'SLN(1000,\n 200, 4)'", "200\n"},
    {"a bracket in a quotation is a letter", "SLN 10 '0' \"4\" # (\nSLN 10 0 4", "2.5\n2.5\n"},
    {"a backslash in a comment", "# nothing \\\nSLN 10 0 4", "2.5\n"},
    {"a backslash at the end of the script", "SLN 10 0 4 \\", "2.5\n"},
};

TEST(Session, Answers) {
    for (const Pair& row : scripts) {
        const CommandRun run = run_script(row.typed);
        EXPECT_EQ(run.exit_status, 0) << row.id << run.error;
        EXPECT_EQ(run.output, row.output) << row.id;
        EXPECT_EQ(run.error, "") << row.id;
    }
}

constexpr Pair refused[] = {
    {"no call", "SLN(1, 2", "finance: line 1: ',' or ')' is expected at the end of the calls (try: help)\n"},
    {"no calculation", "SNL(1, 2)",
     "finance: line 1: no calculation is called 'SNL' (did you mean SLN?) (try: list)\n"},
    {"no variable", "r = 1\n\nSLN rr 2 3",
     "finance: line 3: SLN: argument 1 (cost): 'rr' is not a number (did you mean r?) (try: help SLN)\n"},
    {"no variable in a formula", "rate = 1\nSLN(rat/2, 2, 3)",
     "finance: line 2: SLN: argument 1 (cost): there is no variable 'rat' (did you mean rate?), in 'rat/2' (try: help "
     "SLN)\n"},
    {"a date as a number", "d = 2024-01-31\nSLN d 0 1",
     "finance: line 2: SLN: argument 1 (cost): 'd' is a date, not a number (try: help SLN)\n"},
    {"no value", "x =", "finance: line 1: x = needs a value, as in x = 6%/12 (try: ?)\n"},
    {"no formula", "x = 2*", "finance: line 1: a value is expected at the end of '2*' (try: help)\n"},
    {"a taken name", "inf = 2", "finance: line 1: inf cannot be a variable: it is a value already (try: ?)\n"},
    {"the last answer", "_ = 2", "finance: line 1: _ cannot be a variable: it is a value already (try: ?)\n"},
    {"two calls", "SLN(1,0,1), SLN(1,0,1)",
     "finance: line 1: one call at a time, without a name for its result (try: help)\n"},
    {"a bracket that nobody closes", "SLN(1,\n2\n3",
     "finance: line 1: ',' or ')' is expected at the end of the calls (try: help)\n"},
    {"after a line that goes on",
     "SLN 1 \\\n0 1\nx =", "finance: line 3: x = needs a value, as in x = 6%/12 (try: ?)\n"},
};

TEST(Session, RefusalsNameTheFirstLine) {
    for (const Pair& row : refused) {
        const CommandRun run = run_script(row.typed);
        EXPECT_EQ(run.exit_status, 2) << row.id;
        EXPECT_EQ(run.error, row.output) << row.id;
    }
    const CommandRun infinite = run_script("x = 1/0");
    EXPECT_EQ(infinite.exit_status, 1);
    EXPECT_EQ(infinite.error,
              "finance: line 1: 1/0: too large: the answer is infinite, beyond the largest number or divided by 0\n");
}

TEST(Session, TablesKnowItsVariables) {
    const std::string file = std::string{TEST_DATA}.append("/../../examples/loans.csv");
    const std::string job =
        std::string{"map 'c*2 as x' --where 'loan = \"car\" and nper < 15*c' --quiet "}.append(file);
    EXPECT_EQ(run_script("r = 200%/2\nschedule loan rate=r nper=r pv=1 --csv").output,
              "period,payment,interest,principal,balance\n1,-2,-1,-1,0\n");
    EXPECT_EQ(run_script(std::string{"c = 5\n"}.append(job)).output, "loan,rate,nper,pv,x\ncar,0.45%,60,18500,10\n");
}

// ---- At the command line

constexpr Pair typed[] = {
    {"a call", "'SLN(1000, 200, 4)'", "200\n"},
    {"in two words", "'SLN(1000,' '200, 4)'", "200\n"},
    {"a formula", "'6%/12 + 1'", "1.005\n"},
    {"arithmetic in arguments", "PMT rate=6%/12 nper=30*12 pv=200000", "-1199.1010503055047\n"},
    {"in order", "SLN 500*2 '(100+100)' 'min(4, 5)'", "200\n"},
    {"in lists", "NPV 100% 'max(1,4)' 2*2", "3\n"},
    {"in lists with commas", "NPV 100% 'flows=max(1,4),2*2'", "3\n"},
    {"a basis", "YEARFRAC 2024-01-01 2024-07-01 30/360", "0.5\n"},
    {"dates", "YEARFRAC 2024-01-01+1-1 2024-07-01", "0.5\n"},
    {"schedules", "schedule loan rate=200%/2 nper=2-1 pv=1 --csv",
     "period,payment,interest,principal,balance\n1,-2,-1,-1,0\n"},
};

TEST(CommandLineCalls, Answers) {
    for (const Pair& row : typed) {
        const CommandRun run = run_command(row.typed);
        EXPECT_EQ(run.output, row.output) << row.id << run.error;
        EXPECT_EQ(run.exit_status, 0) << row.id;
    }
}

// A shell takes no argument of a megabyte; a script's line may be any.
CommandRun run_line(const std::string& line) {
    const auto file = std::filesystem::temp_directory_path() / ("finance_session_" + std::to_string(getpid()));
    std::ofstream{file} << line << '\n';
    CommandRun run = run_command(std::string{"< '"}.append(file).append("'"));
    std::filesystem::remove(file);
    return run;
}

TEST(CommandLineCalls, AMegabyteIsReadOrRefused) {
    const std::string brackets(1'000'000, '(');
    const CommandRun run = run_line(std::string{"SLN(1, 0, "}.append(brackets).append("1)"));
    EXPECT_EQ(run.exit_status, 2);
    EXPECT_LT(run.error.size(), 400U);
    std::string ones = "SLN(1";
    for (int i = 0; i < 499'999; ++i) ones += "+1";
    EXPECT_EQ(run_line(ones.append(", 0, 4)")).output, "125000\n");
}

// ---- Lines

struct GoesOn {
    const char* line;
    bool goes_on;
    const char* left;
};

constexpr GoesOn lines[] = {
    {"PMT 1 2 3", false, "PMT 1 2 3"},
    {"PMT 1 \\", true, "PMT 1  "},
    {"PMT(1,", true, "PMT(1,"},
    {"PMT(1)", false, "PMT(1)"},
    {"PMT)1(", true, "PMT)1("},
    {"map 'a(b'", false, "map 'a(b'"},
    {"map 'a(b", true, "map 'a(b"},
    {"map '(' '(", true, "map '(' '("},
    {"it's", false, "it's"},
    {"", false, ""},
    {"\\", true, " "},
    {"'a\"(' x", false, "'a\"(' x"},
};

TEST(Lines, GoOn) {
    for (const GoesOn& row : lines) {
        command::JoinedLine line;
        line.add(row.line);
        EXPECT_EQ(line.goes_on(), row.goes_on) << row.line;
        EXPECT_EQ(line.text(), row.left);
    }
}

// The same of a text as a whole: slow where there are many lines.
bool whole_goes_on(std::string& line) {
    if (line.ends_with('\\')) {
        line.back() = ' ';
        return true;
    }
    int open = 0;
    int before_quotation = 0;
    char mark = '\0';
    for (const char c : line) {
        if (c == '(') ++open;
        if (c == ')' && open > 0) --open;
        if (mark == '\0' && (c == '"' || c == '\'')) {
            mark = c;
            before_quotation = open;
        } else if (c == mark) {
            mark = '\0';
            open = before_quotation;
        }
    }
    return open > 0;
}

TEST(Lines, GoOnAsTheWholeTextDoes) {
    constexpr std::string_view letters = "(()'\"\\a ";
    std::mt19937_64 random{22};
    int joined = 0;
    for (int i = 0; i < 20'000; ++i) {
        command::JoinedLine line;
        std::string whole;
        bool goes_on = true;
        for (bool first = true; goes_on && whole.size() < 60; first = false) {
            std::string piece;
            for (std::size_t size = random() % 5; size > 0; --size) piece += letters[random() % letters.size()];
            line.add(piece);
            whole.append(first ? "" : " ").append(piece);
            goes_on = whole_goes_on(whole);
            ASSERT_EQ(line.goes_on(), goes_on) << whole;
            ASSERT_EQ(line.text(), whole);
            joined += first ? 0 : 1;
        }
    }
    EXPECT_GT(joined, 10'000);
}

TEST(Lines, CommentsAreCutOff) {
    EXPECT_EQ(command::without_comment("PMT 1 # two\r"), "PMT 1 ");
    EXPECT_EQ(command::without_comment("# two"), "");
    EXPECT_EQ(command::without_comment("a#b"), "a#b");
    EXPECT_EQ(command::without_comment("'a # b' # c"), "'a # b' ");
    EXPECT_EQ(command::without_comment("a\r"), "a");
}

}  // namespace
}  // namespace finance::test
