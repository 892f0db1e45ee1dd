// What is printed of an evaluation.
#include <gtest/gtest.h>

#include <limits>

#include "command/evaluate.hpp"
#include "tests/catalogue/sample_calculations.hpp"

namespace finance::test {
namespace {

using command::Outcome;
using host::Argument;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr catalogue::Calculation dated_result() {
    catalogue::Calculation calculation = bond;
    calculation.result = catalogue::ResultKind::date;
    return calculation;
}

host::Evaluation answered(double value) {
    return {.status = ZELKOVAN_STATUS_SUCCESS, .value = value, .log{}, .notes{}};
}

host::Evaluation refused(int flagged) {
    return {.status = ZELKOVAN_STATUS_INVALID_ARGUMENT, .value = nan, .flagged = flagged, .log{}, .notes{}};
}

Outcome told(const catalogue::Calculation& calculation, const std::vector<Argument>& arguments,
             const host::Evaluation& evaluation) {
    return command::report(calls::answer_of(calculation, arguments, evaluation));
}

void expect(const Outcome& outcome, int status, const char* output, const char* error) {
    EXPECT_EQ(outcome.exit_status, status);
    EXPECT_EQ(outcome.output, output);
    EXPECT_EQ(outcome.error, error);
}

TEST(Report, Answers) {
    expect(told(bond, {}, answered(0.1)), 0, "0.1\n", "");
    expect(told(bond, {}, answered(200000.0)), 0, "200000\n", "");
    expect(told(bond, {}, answered(nan)), 0, ".\n", "");
    expect(told(bond, {}, answered(std::numeric_limits<double>::infinity())), 1, "",
           "finance: BOND: too large: the answer is infinite, beyond the largest number or divided by 0\n");
}

TEST(Report, DatesAreWrittenAsDates) {
    static constexpr catalogue::Calculation calculation = dated_result();
    expect(told(calculation, {}, answered(17577.0)), 0, "2008-02-15\n", "");
    expect(told(calculation, {}, answered(nan)), 0, ".\n", "");
    expect(told(calculation, {}, answered(4e6)), 0, "4000000\n", "");  // year 12911
}

TEST(Report, Refusals) {
    const std::vector<Argument> arguments{0.0, 1.0, 0.1, 2.5};
    expect(told(bond, arguments, refused(4)), 1, "",
           "finance: BOND: argument 4 (frequency): 2.5 is not a whole number\n");
    expect(told(bond, arguments, refused(-1)), 1, "", "finance: BOND: no answer: there is no such rate\n");
    const std::vector<Argument> flows{-100.0, nan, 60.0};
    expect(told(one_list, flows, refused(2)), 1, "",
           "finance: INTERNAL: argument 1 (flows, value 2): a value is missing\n");
}

TEST(Report, AMissingFlowIsNamedThoughTheModuleMarksNone) {
    const std::vector<Argument> flows{-100.0, nan, 60.0};
    expect(told(one_list, flows, refused(-1)), 1, "",
           "finance: INTERNAL: argument 1 (flows, value 2): a value is missing\n");
}

TEST(Report, LogLinesStandInWhereNothingIsFlagged) {
    host::Evaluation evaluation = refused(-1);
    evaluation.log = {"Too many arguments for BOND "};
    expect(told(bond, {}, evaluation), 1, "", "finance: BOND: Too many arguments for BOND \n");
}

TEST(Report, ANotedSearchSaysWhyItAnswersNothing) {
    host::Evaluation evaluation = answered(nan);
    evaluation.notes = {{744, 321}};
    expect(told(two_lists_before, {}, evaluation), 0, ".\n", "finance: SEARCH: no answer: there is no such rate\n");
}

}  // namespace
}  // namespace finance::test
