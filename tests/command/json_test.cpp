// JSON: the writer's text, and what the command says with --json. Expected texts by hand from RFC 8259.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

#include "catalogue/catalogue.hpp"
#include "command/help.hpp"
#include "command/json_report.hpp"
#include "command/json_text.hpp"
#include "tests/catalogue/sample_calculations.hpp"
#include "tests/command/run_command.hpp"

namespace finance::test {
namespace {

using command::JsonText;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

// ---- The writer

TEST(JsonText, PiecesAreSeparated) {
    JsonText json;
    json.object().member("a", 1).key("b").array().end_array().key("c").array().number(1).text("x").null();
    json.object().end_object().array().end_array().end_array().member("d", "y").end_object();
    EXPECT_EQ(json.str(), R"({"a":1,"b":[],"c":[1,"x",null,{},[]],"d":"y"})");
    json.clear();
    EXPECT_EQ(json.array().null().end_array().str(), "[null]");
}

TEST(JsonText, EmptyTextsAsNull) {
    JsonText json;
    json.object().member_or_null("a", "").member_or_null("b", "x").member("c", "").end_object();
    EXPECT_EQ(json.str(), R"({"a":null,"b":"x","c":""})");
}

struct NumberCase {
    double value;
    const char* expected;
};

constexpr NumberCase numbers[] = {
    {0.0, "0"},
    {-0.0, "0"},
    {0.1, "0.1"},
    {-200.0, "-200"},
    {1e22, "1e+22"},
    {5e-324, "5e-324"},
    {1.7976931348623157e308, "1.7976931348623157e+308"},
    {0.1 + 0.2, "0.30000000000000004"},
    {nan, "null"},
    {infinity, "null"},
    {-infinity, "null"},
};

TEST(JsonText, Numbers) {
    for (const NumberCase& row : numbers) EXPECT_EQ(JsonText{}.number(row.value).str(), row.expected);
}

struct StringCase {
    std::string text;
    std::string expected;  // without the quotes around it
};

const std::string replaced = "\xEF\xBF\xBD";

const StringCase strings[] = {
    {"", ""},
    {"plain / text", "plain / text"},
    {R"("quoted" \ back)", R"(\"quoted\" \\ back)"},
    {"a\nb\rc\td", R"(a\nb\rc\td)"},
    {std::string{"\0\x01\x1f\x7f", 4}, R"(\u0000\u0001\u001f\u007f)"},
    {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"},
    {"\xF4\x8F\xBF\xBF \xED\x9F\xBF \xEE\x80\x80", "\xF4\x8F\xBF\xBF \xED\x9F\xBF \xEE\x80\x80"},
    {"a\xFFz", "a" + replaced + "z"},
    {"\xC0\xAF", replaced + replaced},                                      // overlong /
    {"\xE0\x9F\xBF", replaced + replaced + replaced},                       // overlong U+07FF
    {"\xF0\x8F\xBF\xBF", replaced + replaced + replaced + replaced},        // overlong U+FFFF
    {"\xED\xA0\x80", replaced + replaced + replaced},                       // a surrogate
    {"\xF4\x90\x80\x80", replaced + replaced + replaced + replaced},        // above U+10FFFF
    {"\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0", "\\u0080\\u009b\\u009f\xC2\xA0"},  // a terminal takes U+009B for ESC [
    {"\x80", replaced},
    {"\xE2\x82", replaced + replaced},  // cut off
    {"\xE2\x82\"", replaced + replaced + "\\\""},
};

TEST(JsonText, Strings) {
    int checked = 0;
    for (const StringCase& row : strings) {
        EXPECT_EQ(JsonText{}.text(row.text).str(), '"' + row.expected + '"') << "row " << checked;
        ++checked;
    }
    EXPECT_EQ(checked, 17);
}

TEST(JsonText, KeysAreEscapedToo) {
    EXPECT_EQ(JsonText{}.object().member("a\"b", 1).end_object().str(), R"({"a\"b":1})");
}

// ---- Results of shapes that no call of the command has

host::Evaluation answered(double value) {
    return {.status = ZELKOVAN_STATUS_SUCCESS, .value = value, .log{}, .notes{}};
}

command::Outcome json_told(const catalogue::Calculation& calculation, const host::Evaluation& evaluation) {
    return command::json_report(calls::answer_of(calculation, {}, evaluation));
}

TEST(JsonReport, DatesBeyondFourDigitYearsHaveNoText) {
    catalogue::Calculation dated = bond;
    dated.result = catalogue::ResultKind::date;
    const std::string rest = R"(,"argument":null,"rule":null,"message":null,"notes":[]})"
                             "\n";
    EXPECT_EQ(json_told(dated, answered(4e6)).output,
              R"({"calculation":"BOND","status":"answered","value":4000000,"date":null)" + rest);  // year 12911
    EXPECT_EQ(json_told(dated, answered(nan)).output,
              R"({"calculation":"BOND","status":"missing","value":null,"value_text":".","date":null)" + rest);
    EXPECT_EQ(json_told(bond, answered(-infinity)).output,
              R"({"calculation":"BOND","status":"too large","value":null,"value_text":"-inf","argument":null,)"
              R"("rule":null,"message":"the answer is infinite, beyond the largest number or divided by 0","notes":[]})"
              "\n");
}

TEST(JsonReport, LogLinesAreTheMessage) {
    host::Evaluation evaluation{.value = nan, .log = {"one", "two"}, .notes{}};
    evaluation.status = ZELKOVAN_STATUS_INVALID_ARGUMENT;
    const command::Outcome outcome = json_told(bond, evaluation);
    EXPECT_EQ(outcome.exit_status, 1);
    EXPECT_NE(outcome.output.find(R"("message":"one\ntwo")"), std::string::npos) << outcome.output;
}

// ---- The command

struct RunCase {
    const char* arguments;
    int exit_status;
    const char* output;
};

constexpr RunCase runs[] = {
    {"--json PMT rate=1 nper=1 pv=100", 0,
     R"({"calculation":"PMT","status":"answered","value":-200,"argument":null,"rule":null,"message":null,)"
     R"("notes":[]})"},
    {"pmt 1 1 100 --json", 0,
     R"({"calculation":"PMT","status":"answered","value":-200,"argument":null,"rule":null,"message":null,)"
     R"("notes":[]})"},
    {"--json COUPNCD 2008-02-15 2017-11-15 2", 0,
     R"({"calculation":"COUPNCD","status":"answered","value":17667,"date":"2008-05-15","argument":null,)"
     R"("rule":null,"message":null,"notes":[]})"},
    {"INTRATE --json 2025-01-31 2025-02-01 97 100", 1,
     R"({"calculation":"INTRATE","status":"too large","value":null,"value_text":"inf","argument":null,"rule":null,)"
     R"("message":"the answer is infinite, beyond the largest number or divided by 0","notes":[]})"},
    {"--json XIRR -4,1,-6 1964-12-30,1960-01-01,1961-12-31", 1,
     R"({"calculation":"XIRR","status":"does not solve","value":-0.9999999,"argument":null,"rule":null,)"
     R"("message":"the search ended at the lowest rate that it tries; XNPV at this rate is -4, not 0; )"
     R"(give the earliest flow first",)"
     R"("hint":"finance XIRR values=1,-6,-4 dates=1960-01-01,1961-12-31,1964-12-30","notes":[]})"},
    {"--json EFFECT -13 12", 0,
     R"({"calculation":"EFFECT","status":"missing","value":null,"value_text":".","argument":null,"rule":null,)"
     R"("message":null,"notes":[]})"},
    {"--json XIRR 100 100 0 365", 0,
     R"({"calculation":"XIRR","status":"missing","value":null,"value_text":".","argument":null,"rule":null,)"
     R"("message":"the values do not change sign: a rate needs money paid and money received",)"
     R"("notes":[{"set":744,"number":321}]})"},
    {"--json PMT rate=0.005 nper=2.5 pv=200000", 1,
     R"({"calculation":"PMT","status":"refused","value":null,"argument":{"position":2,"name":"nper"},)"
     R"("rule":"whole number, must be at least 1","message":"2.5 is not a whole number","notes":[]})"},
    {"--json IRR -100 . 60", 1,
     R"({"calculation":"IRR","status":"refused","value":null,"argument":{"position":1,"name":"flows","element":2},)"
     R"("rule":"number","message":"a value is missing","notes":[]})"},
    {"--json MIRR 100 110 0.1 0.1", 1,
     R"({"calculation":"MIRR","status":"refused","value":null,"argument":null,"rule":null,"message":"there is no )"
     R"(negative flow, or no positive one","notes":[]})"},
    {"--json YEARFRAC 2024-01-01 2024-07-01 'x\"y'", 1,
     R"({"calculation":"YEARFRAC","status":"refused","value":null,"argument":{"position":3,"name":"basis"},)"
     R"("rule":"day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4","message":"'x\"y' is not a )"
     R"(day-count basis: 30/360, ACTUAL, ACT/360, ACT/365, EU30/360 or 0 to 4","notes":[]})"},
    {"--json PTM 1 2 3", 2,
     R"({"calculation":null,"status":"usage","value":null,"argument":null,"rule":null,"message":"no calculation )"
     R"j(is called 'PTM' (did you mean PMT?)","hint":"finance list","notes":[]})j"},
    {"PMT 1 2x 3 --json", 2,
     R"({"calculation":"PMT","status":"usage","value":null,"argument":{"position":2,"name":"nper"},"rule":"whole )"
     R"(number, must be at least 1","message":"PMT: argument 2 (nper): '2x' is not a number","hint":"finance help )"
     R"(PMT","notes":[]})"},
    {"--json PMT 1 2", 2,
     R"({"calculation":"PMT","status":"usage","value":null,"argument":null,"rule":null,"message":"PMT: too few )"
     R"(arguments: no pv","hint":"finance help PMT","notes":[]})"},
    {"--json --module /nowhere/zelkovan.so PMT 1 2 3", 1,
     R"({"calculation":null,"status":"failed","value":null,"argument":null,"rule":null,"message":"there is no )"
     R"(module at /nowhere/zelkovan.so","notes":[]})"},
    {"--json help XYZ", 2,
     R"({"calculation":null,"status":"usage","value":null,"argument":null,"rule":null,"message":"no calculation )"
     R"(is called 'XYZ'","hint":"finance list","notes":[]})"},
};

TEST(JsonCommand, OneObjectAResult) {
    for (const RunCase& row : runs) {
        SCOPED_TRACE(row.arguments);
        const CommandRun run = run_command(row.arguments);
        EXPECT_EQ(run.exit_status, row.exit_status);
        EXPECT_EQ(run.output, std::string{row.output} + '\n');
        EXPECT_EQ(run.error, "");
    }
}

int lines(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

TEST(JsonCommand, List) {
    const CommandRun run = run_command("list --json");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(lines(run.output), std::ssize(catalogue::calculations()));
    EXPECT_EQ(run.output.rfind(R"({"calculation":"CUMIPMT","family":"Annuities and loans","answers":"Interest paid in )"
                               R"(a range of periods of a loan repaid by level payments","result":"amount"})",
                               0),
              0U)
        << run.output;
}

TEST(JsonCommand, Help) {
    const CommandRun run = run_command("--json help npv");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.output, run_command("NPV --help --json").output);
    EXPECT_EQ(lines(run.output), 1);
    EXPECT_NE(
        run.output.find(R"("arguments":[{"name":"rate","kind":"number","unit":"fraction per period: 0.1 is 10 %",)"
                        R"("meaning":"discount rate of one period","need":"required","default":null,)"
                        R"("rule":"must be above 0"},{"name":"flows","kind":"numbers")"),
        std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find(R"("example":{"arguments":"rate=0.1 flows=-1000,300,400,500,200","result":)"),
              std::string::npos);
}

TEST(JsonCommand, HelpOnAJob) {
    const CommandRun run = run_command("help fold --json");
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(lines(run.output), 1);
    EXPECT_EQ(run.output.rfind(R"({"word":"fold","usage":)", 0), 0U) << run.output;
    EXPECT_NE(run.output.find(R"(,"help":"fold: )"), std::string::npos) << run.output;
}

TEST(JsonCommand, JobsAndVersion) {
    const CommandRun jobs = run_command("help --json");
    EXPECT_EQ(jobs.exit_status, 0);
    EXPECT_EQ(jobs.output.rfind(R"({"word":"list","usage":"","purpose":"all calculations, by family"})", 0), 0U);
    EXPECT_EQ(run_command("--version --json").output.rfind(R"({"version":")", 0), 0U);
}

}  // namespace
}  // namespace finance::test
