// The built command on the built module: what it prints, where, and its exit status.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

// ---- Values

struct AnswerCase {
    const char* arguments;
    double expected;
    double ulps;  // allowed distance, in units in the last place of the expected value
    const char* source;
};

constexpr const char* closed_form = "closed form at 60 digits, expected_values.py";
constexpr const char* by_hand = "by hand";

constexpr AnswerCase answers[] = {
    {"PMT rate=0.005 nper=360 pv=200000", -1199.1010503055047, 8, closed_form},
    {"PMT 0.005 360 200000", -1199.1010503055047, 8, closed_form},
    {"PMT 0.5% 360 2e5", -1199.1010503055047, 8, closed_form},
    {"pmt 0.005 360 pv=200000", -1199.1010503055047, 8, closed_form},
    {"PMT -- 0.005 360 200000", -1199.1010503055047, 8, closed_form},
    {"PMT 5.75% 10 1000", -134.26326713460793, 8, closed_form},
    {"PMT 0.005 360 100 type=1", -0.5965676867191566, 8, closed_form},
    {"PMT rate=1% nper=24 pv=0 fv=5000 type=1", -183.53204070923124, 8, closed_form},
    {"PMT 0.005 360 200000 fv= type=", -1199.1010503055047, 8, closed_form},
    {"PMT 0.005 360 200000 . .", -1199.1010503055047, 8, closed_form},
    {"FV 0.01 12 -100", 1268.2503013196972, 8, closed_form},
    {"FV rate=0.01 nper=12 pv=-100", 112.68250301319697, 8, closed_form},
    {"PV 0.01 12 -100", 1125.507747348463, 8, closed_form},
    {"IPMT 0.005 1 360 200000", -1000, 0, by_hand},
    {"IPMT 0.005 1 360 200000 0 1", 0, 0, "paid at once, the first payment bears no interest"},
    {"IPMT 0.005 13 360 200000", -987.7198828772329, 16, closed_form},
    {"PPMT 0.005 13 360 200000", -211.38116742827197, 16, closed_form},
    {"CUMIPMT 0.005 360 200000 1 12", -11933.18917911262, 16, closed_form},
    {"CUMIPMT 0.005 360 200000 5 4", 0, 0, "an empty range"},
    {"CUMPRINC 0.005 360 200000 1 12", -2456.0234245534375, 64, closed_form},
    {"ISPMT 0.01 3 12 1200", -9, 0, by_hand},
    {"ISPMT 0.01 3 4294967308 1200", -9, 0, "2^32 + 12 counts as 12"},
};

double number(const std::string& text) {
    double value = std::numeric_limits<double>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

double ulp(double x) { return std::nextafter(std::abs(x), std::numeric_limits<double>::infinity()) - std::abs(x); }

TEST(Command, Answers) {
    for (const AnswerCase& row : answers) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(row.arguments);
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.error, "");
        EXPECT_NEAR(number(run.output), row.expected, row.ulps * ulp(row.expected)) << row.source;
        EXPECT_EQ(run.output.find('\n'), run.output.size() - 1) << "one line";
    }
}

TEST(Command, ExamplesPrintWhatTheCatalogueSays) {
    int checked = 0;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        SCOPED_TRACE(calculation.name);
        const CommandRun run =
            run_command(std::string{calculation.name} + ' ' + std::string{calculation.example.arguments});
        EXPECT_EQ(run.exit_status, 0);
        EXPECT_EQ(run.output, std::string{calculation.example.result} + '\n');
        EXPECT_EQ(run.error, "");
        ++checked;
    }
    EXPECT_GE(checked, 8);
}

TEST(Command, AMissingAnswerIsADot) {
    const CommandRun run = run_command("PV 0 12 -100");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, ".\n");
    EXPECT_EQ(run.error, "");
}

// ---- Refusals and wrong usage: nothing on the output, one sentence on standard error

struct FailureCase {
    const char* arguments;
    int exit_status;
    const char* error;
};

constexpr const char* too_large =
    "no answer: nper * ln(1 + rate) is 709.78 or more, so that the growth factor (1 + rate)^nper is too large";

const FailureCase failures[] = {
    // refused: the argument and its rule
    {"PMT 0.005 2.5 200000", 1, "finance: PMT: argument 2 (nper): 2.5 is not a whole number\n"},
    {"PMT 0 12 1", 1, "finance: PMT: argument 1 (rate): 0 is not above 0\n"},
    {"PMT 0.005 . 200000", 1, "finance: PMT: argument 2 (nper): a value is missing\n"},
    {"PMT rate=0.005 pv=200000", 1, "finance: PMT: argument 2 (nper): no value given\n"},
    {"PMT 0.005 360 pv=", 1, "finance: PMT: argument 3 (pv): no value given\n"},
    {"PMT 0.005 9007199254740994 1", 1, "finance: PMT: argument 2 (nper): 9007199254740994 is above 2^53\n"},
    {"PMT 0.005 2147483648 1", 1,
     "finance: PMT: argument 2 (nper): 2147483648 does not fit a count (1 to 2147483647)\n"},
    {"PMT 0.005 -1e300 1", 1, "finance: PMT: argument 2 (nper): -1e+300 is below -2^63\n"},
    {"PMT 0.005 -inf 1", 1, "finance: PMT: argument 2 (nper): -inf is below 1\n"},
    {"PMT 0.005 12 1 0 2", 1, "finance: PMT: argument 5 (type): 2 is above 1\n"},
    {"PMT 0.005 12 1 type=0.5", 1, "finance: PMT: argument 5 (type): 0.5 is not a whole number\n"},
    {"PV -1 12 1", 1, "finance: PV: argument 1 (rate): -1 is not above -1\n"},
    {"IPMT 0.01 13 12 100", 1, "finance: IPMT: argument 2 (per): 13 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 13 14", 1, "finance: CUMPRINC: argument 4 (startPeriod): 13 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 5 14", 1, "finance: CUMPRINC: argument 5 (endPeriod): 14 is above nper (12)\n"},
    {"CUMPRINC 0.01 12 100 5 4", 1, "finance: CUMPRINC: argument 4 (startPeriod): 5 is above endPeriod (4)\n"},
    {"CUMIPMT 0.01 12 0 1 2", 1, "finance: CUMIPMT: argument 3 (pv): 0 is not above 0\n"},
    {"FV 0.1 3 . .", 1,
     "finance: FV: argument 4 (pv): a value is missing (it must not be missing where pmt is missing too)\n"},

    // refused: no argument is at fault
    {"PMT 1 1024 1", 1, nullptr},
    {"PPMT 1 1 1024 1 0 1", 1, nullptr},
    {"FV 1 1024 1", 1, nullptr},

    // wrong usage
    {"", 2, "finance: nothing to evaluate\ntry: finance help\n"},
    {"PTM 1 2 3", 2, "finance: no calculation is called 'PTM' (did you mean PMT?)\ntry: finance list\n"},
    {"PMTT 1 2 3", 2, "finance: no calculation is called 'PMTT' (did you mean PMT?)\ntry: finance list\n"},
    {"WHATEVER 1", 2, "finance: no calculation is called 'WHATEVER'\ntry: finance list\n"},
    {"-100 1", 2, "finance: no option is called -100\ntry: finance help\n"},
    {"--modul x PMT 1 2 3", 2, "finance: no option is called --modul\ntry: finance help\n"},
    {"PMT 1 2 3 --module x", 2, "finance: options come before the name: --module\ntry: finance help\n"},
    {"PMT 1 2", 2, "finance: PMT: too few arguments: no pv\ntry: finance help PMT\n"},
    {"PMT 1 2 3 4 1 6", 2, "finance: PMT: too many arguments, from '6' on\ntry: finance help PMT\n"},
    {"PMT 1 2 3 typ=1", 2, "finance: PMT: no argument is called 'typ' (did you mean type?)\ntry: finance help PMT\n"},
    {"PMT rate=1 2 3", 2,
     "finance: PMT: '2' follows a named argument and needs a name as well\ntry: finance help PMT\n"},
    {"PMT 1 2x 3", 2, "finance: PMT: argument 2 (nper): '2x' is not a number\ntry: finance help PMT\n"},
    {"PMT 1 2 1,234", 2, "finance: PMT: argument 3 (pv): '1,234' is not a number\ntry: finance help PMT\n"},
    {"list all", 2, "finance: list takes no argument\ntry: finance help all\n"},
    {"help XYZ", 2, "finance: no calculation is called 'XYZ'\ntry: finance list\n"},
    {"help PMT PV", 2, "finance: help takes one name\ntry: finance list\n"},
};

TEST(Command, Failures) {
    std::set<std::string> seen;
    for (const FailureCase& row : failures) {
        SCOPED_TRACE(row.arguments);
        EXPECT_TRUE(seen.insert(row.arguments).second) << "the same row twice";
        const CommandRun run = run_command(row.arguments);
        const std::string arguments = row.arguments;
        const std::string overflow =
            "finance: " + arguments.substr(0, arguments.find(' ')) + ": " + std::string{too_large} + '\n';
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.error, row.error != nullptr ? row.error : overflow);
    }
}

// ---- Other jobs

TEST(Command, List) {
    const CommandRun run = run_command("list");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("Level payments\n  CUMIPMT", 0), 0U);
    EXPECT_EQ(run.error, "");
}

TEST(Command, Help) {
    const CommandRun help = run_command("help pmt");
    EXPECT_EQ(help.exit_status, 0);
    EXPECT_EQ(help.output.rfind("PMT: Level payment", 0), 0U);
    EXPECT_EQ(run_command("PMT --help").output, help.output);
    EXPECT_EQ(run_command("PMT 1 -h").output, help.output);
    const CommandRun general = run_command("help");
    EXPECT_EQ(general.exit_status, 0);
    EXPECT_EQ(general.output.rfind("Usage\n", 0), 0U);
    EXPECT_EQ(run_command("--help").output, general.output);
    EXPECT_EQ(run_command("-h").output, general.output);
}

TEST(Command, Version) {
    const CommandRun run = run_command("--version");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output.rfind("finance ", 0), 0U);
    EXPECT_GT(number(run.output.substr(8)), 0.0);
}

TEST(Command, ToldModule) {
    const CommandRun none = run_command("--module /nowhere/zelkovan.so PMT 1 2 3");
    EXPECT_EQ(none.exit_status, 1);
    EXPECT_EQ(none.output, "");
    EXPECT_EQ(none.error, "finance: there is no module at /nowhere/zelkovan.so\n");
    const CommandRun no_module = run_command("--module /etc/os-release PMT 1 2 3");
    EXPECT_EQ(no_module.exit_status, 1);
    EXPECT_NE(no_module.error.find("/etc/os-release"), std::string::npos) << no_module.error;
    EXPECT_EQ(run_command("--module").exit_status, 2);
}

TEST(Command, AnOutputThatCannotBeWrittenFails) {
    const CommandRun full = run_command("PMT 0.005 360 200000 >/dev/full");
    EXPECT_EQ(full.exit_status, 1);
    EXPECT_EQ(full.error, "finance: the output cannot be written: No space left on device\n");
    const CommandRun closed = run_command("PMT 0.005 360 200000 >&-");
    EXPECT_EQ(closed.exit_status, 1);
    EXPECT_EQ(closed.error, "finance: the output cannot be written: Bad file descriptor\n");
}

}  // namespace
}  // namespace finance::test
