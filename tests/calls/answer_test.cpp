// What a call came to, in the words of each kind of front end: the rows are all that an evaluation can be. Sentences are by
// hand from the sample's rules and its failure.
#include "calls/answer.hpp"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "host/batch.hpp"
#include "tests/catalogue/sample_calculations.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using calls::Answer;
using calls::Verdict;
using host::Argument;
using Lines = std::vector<std::string>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

host::Evaluation answered(double value, std::vector<host::Note> notes = {}) {
    return {.status = ZELKOVAN_STATUS_SUCCESS, .value = value, .log{}, .notes = std::move(notes)};
}

host::Evaluation refused(int flagged, Lines log = {}) {
    return {
        .status = ZELKOVAN_STATUS_INVALID_ARGUMENT, .value = nan, .flagged = flagged, .log = std::move(log), .notes{}};
}

struct Case {
    const char* id;
    std::vector<Argument> arguments;  // of BOND: settlement, maturity, rate, frequency, basis
    host::Evaluation evaluation;
    Verdict verdict;
    int position;
    const char* label;
    const char* reason;
    const char* sentence;
    Lines lines;
};

const std::vector<Argument> good{0.0, 1.0, 0.1, 2.0};

const std::vector<Case> cases{
    {"a value", good, answered(0.1), Verdict::answered, 0, "", "", "", {}},
    {"an infinite value",
     good,
     answered(1.0 / 0.0),
     Verdict::too_large,
     0,
     "",
     "the answer is infinite, beyond the largest number or divided by 0",
     "too large: the answer is infinite, beyond the largest number or divided by 0",
     {"BOND: too large: the answer is infinite, beyond the largest number or divided by 0"}},
    {"a value and a note", good, answered(0.1, {{744, 321}}), Verdict::answered, 0, "", "", "", {}},
    {"a missing value", good, answered(nan), Verdict::missing, 0, "", "", "the answer is a missing value", {}},
    {"a missing value with a note",
     good,
     answered(nan, {{744, 321}}),
     Verdict::missing,
     0,
     "",
     "there is no such rate",
     "no answer: there is no such rate",
     {"BOND: no answer: there is no such rate"}},
    {"nobody's fault",
     good,
     refused(-1),
     Verdict::refused,
     0,
     "",
     "there is no such rate",
     "no answer: there is no such rate",
     {"BOND: no answer: there is no such rate"}},
    {"the name's fault",
     good,
     refused(0),
     Verdict::refused,
     0,
     "",
     "there is no such rate",
     "no answer: there is no such rate",
     {"BOND: no answer: there is no such rate"}},
    {"an argument's fault",
     {0.0, 1.0, 0.1, 2.5},
     refused(4),
     Verdict::refused,
     4,
     "argument 4 (frequency)",
     "2.5 is not a whole number",
     "argument 4 (frequency): 2.5 is not a whole number",
     {"BOND: argument 4 (frequency): 2.5 is not a whole number"}},
    {"a missing argument",
     {0.0, nan, 0.1, 2.0},
     refused(2),
     Verdict::missing,
     2,
     "argument 2 (maturity)",
     "a value is missing",
     "argument 2 (maturity): a value is missing",
     {"BOND: argument 2 (maturity): a value is missing"}},
    {"an absent argument that is not flagged",
     {0.0, 1.0, Argument::absent(), 2.0},
     refused(-1),
     Verdict::missing,
     3,
     "argument 3 (rate)",
     "no value given",
     "argument 3 (rate): no value given",
     {"BOND: argument 3 (rate): no value given"}},
    {"an absent text",
     {0.0, 1.0, 0.1, 2.0, Argument::absent_text()},
     refused(5),
     Verdict::missing,
     5,
     "argument 5 (basis)",
     "no value given",
     "argument 5 (basis): no value given",
     {"BOND: argument 5 (basis): no value given"}},
    {"a flag beyond the call",
     good,
     refused(9),
     Verdict::refused,
     9,
     "argument 9",
     "there is no such rate",
     "argument 9: there is no such rate",
     {"BOND: argument 9: there is no such rate"}},
    {"lines that were logged",
     good,
     refused(-1, {"one", "two"}),
     Verdict::refused,
     0,
     "",
     "one\ntwo",
     "one",
     {"BOND: one", "BOND: two"}},
    {"lines that were logged of a call that is answered",
     good,
     {.status = ZELKOVAN_STATUS_SUCCESS, .value = nan, .log = {"one"}, .notes{}},
     Verdict::missing,
     0,
     "",
     "",
     "the answer is a missing value",
     {}},
};

TEST(Answers, InTheWordsOfEachFrontEnd) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.id);
        const Answer answer = calls::answer_of(bond, row.arguments, row.evaluation);
        EXPECT_EQ(answer.verdict(), row.verdict);
        EXPECT_EQ(answer.position(), row.position);
        EXPECT_EQ(answer.label(), row.label);
        EXPECT_EQ(answer.reason(), row.reason);
        EXPECT_EQ(answer.sentence(), row.sentence);
        EXPECT_EQ(answer.named_sentence(), "BOND: " + std::string{row.sentence});
        EXPECT_EQ(calls::lines_of(answer), row.lines);
    }
}

TEST(Answers, VerdictsAreOrderedFromGoodToBad) {
    EXPECT_LT(Verdict::answered, Verdict::missing);
    EXPECT_LT(Verdict::missing, Verdict::does_not_solve);
    EXPECT_LT(Verdict::does_not_solve, Verdict::too_large);
    EXPECT_LT(Verdict::too_large, Verdict::refused);
    EXPECT_EQ(calls::word_of(Verdict::answered), "answered");
    EXPECT_EQ(calls::word_of(Verdict::missing), "missing");
    EXPECT_EQ(calls::word_of(Verdict::does_not_solve), "does not solve");
    EXPECT_EQ(calls::word_of(Verdict::too_large), "too large");
    EXPECT_EQ(calls::word_of(Verdict::refused), "refused");
}

// A batch keeps no log, and the only lines that a call logs are about the number of its arguments: whoever asks a batch
// must have counted.
TEST(Answers, OnlyAWrongCountIsLogged) {
    int refusals = 0;
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const std::size_t least = minimum_count(calculation) - 1;  // without the name
        for (std::size_t count = 0; count <= calculation.parameters.size(); ++count) {
            const std::vector<Argument> arguments(count, Argument::missing());
            const host::Evaluation evaluation = linked_host().evaluate(calculation.name, arguments);
            EXPECT_EQ(!evaluation.log.empty(), count < least) << calculation.name << ' ' << count;
            refusals += evaluation.answered() ? 0 : 1;
        }
    }
    EXPECT_GT(refusals, 54);
}

}  // namespace
}  // namespace finance::test
