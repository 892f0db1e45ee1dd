// How many steps calls make, in a build of the module that counts them: never more than they may, whatever their
// arguments, and each loop whose length an argument decides is among those that count.
#include "tests/support/steps.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/embedded_host.hpp"
#include "hostile/call_draws.hpp"
#include "module/financial_list.hpp"
#include "tests/model/draws.hpp"

namespace finance::test {
namespace {

std::int64_t steps_of(std::string_view name, const std::vector<Arg>& arguments) {
    Call call{name, arguments};
    ensure_host();
    steps_made = 0;
    call.through_dispatcher();
    return steps_made;
}

std::size_t characters_of(std::string_view name, const std::vector<Arg>& arguments) {
    std::size_t all = name.size();
    for (const Arg& argument : arguments) all += argument.text().size();
    return all;
}

// ---- The bound

class Steps : public testing::TestWithParam<std::string> {};

TEST_P(Steps, CallsOfTheCorpusAreBounded) {
    const auto draws = read_draws("xz --decompress --stdout '" ZELKOVAN_CORPUS "/" + GetParam() + ".tsv.xz'");
    ASSERT_GT(draws.size(), 3000U);
    for (const Draw& draw : draws) {
        ASSERT_LE(steps_of(draw.name, draw.arguments),
                  most_steps(1 + draw.arguments.size(), characters_of(draw.name, draw.arguments)))
            << draw.name;
    }
}

// A few of the 100,000 of hostile_calls, which asks the same: in a release build also some that go as far as they can.
TEST_P(Steps, HostileCallsAreBounded) {
    const auto& calculation = *catalogue::find(GetParam());
    const auto no_answer = [](const hostile::Call&) { return std::nan(""); };
#ifdef NDEBUG
    constexpr std::uint64_t far = 3;
#else
    constexpr std::uint64_t far = 0;
#endif
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        hostile::Random random{seed};
        const hostile::Reach reach = seed < far ? hostile::Reach{} : hostile::Reach{.periods = 1e5, .list = 300};
        const hostile::Call call = hostile::drawn(calculation, {random, reach, no_answer});
        const std::vector<host::Argument> arguments = call.arguments();
        steps_made = 0;
        const host::Evaluation evaluation = linked_host().evaluate(calculation.name, arguments);
        EXPECT_TRUE(evaluation.answered() || evaluation.status == STATUS_INVALID_ARGUMENT) << call.text(false);
        EXPECT_LE(steps_made, most_steps(1 + arguments.size(), calculation.name.size())) << call.text(false);
    }
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, Steps, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

// ---- Every loop counts

// A call, and the same with a loop that is so many steps longer; a search repeats them.
struct Longer {
    const char* id;
    const char* name;
    std::vector<Arg> shorter;
    std::vector<Arg> longer;
    std::int64_t steps;
};

std::vector<Arg> with(std::vector<Arg> arguments, std::size_t n, double value) {
    arguments.insert(arguments.end(), n, value);
    return arguments;
}

// n flows, a year apart, the first one paid.
std::vector<Arg> dated_flows(std::vector<Arg> arguments, int n) {
    for (int i = 0; i < n; ++i) arguments.emplace_back(i == 0 ? -100.0 : 20.0);
    for (int i = 0; i < n; ++i) arguments.emplace_back(365.0 * i);
    return arguments;
}

// Days of some anniversaries of 2000-01-15; and the first month end of a year.
constexpr double day_2000 = 14'624.0;
constexpr double day_2100 = 51'149.0;
constexpr double day_2200 = 87'673.0;

const std::vector<Longer>& loops() {
    static const std::vector<Longer> all{
        {"basis-text", "YEARFRAC", {0.0, 400.0, "ACTUAL"}, {0.0, 400.0, "A C T U A L"}, 5},
        {"coupons/PRICE",
         "PRICE",
         {day_2000, day_2100, 0.05, 0.06, 100, 1},
         {day_2000, day_2200, 0.05, 0.06, 100, 1},
         100},
        {"coupons/DURATION", "DURATION", {day_2000, day_2100, 0.05, 0.06, 1}, {day_2000, day_2200, 0.05, 0.06, 1}, 100},
        {"coupons/YIELD", "YIELD", {day_2000, day_2100, 0.05, 90, 100, 1}, {day_2000, day_2200, 0.05, 90, 100, 1}, 200},
        {"coupons/ODDFPRICE",
         "ODDFPRICE",
         {day_2000 - 300, day_2100, day_2000 - 350, day_2000, 0.05, 0.06, 100, 1},
         {day_2000 - 300, day_2200, day_2000 - 350, day_2000, 0.05, 0.06, 100, 1},
         100},
        {"coupons/ODDFYIELD",
         "ODDFYIELD",
         {day_2000 - 300, day_2100, day_2000 - 350, day_2000, 0.05, 90, 100, 1},
         {day_2000 - 300, day_2200, day_2000 - 350, day_2000, 0.05, 90, 100, 1},
         200},
        {"odd-last/periods",
         "ODDLPRICE",
         {day_2000 + 10, day_2100, day_2000, 0.05, 0.06, 100, 1},
         {day_2000 + 10, day_2200, day_2000, 0.05, 0.06, 100, 1},
         100},
        {"odd-last/cycles",
         "ODDLPRICE",
         {day_2000 + 10, day_2100, day_2000, 0.05, 0.06, 100, 1},
         {day_2000 + 10, day_2000 + 1e6, day_2000, 0.05, 0.06, 100, 1},
         400},
        {"loan/interest", "CUMIPMT", {0.005, 360, 1e5, 1, 12, 0}, {0.005, 360, 1e5, 1, 24, 0}, 12},
        {"loan/principal", "CUMPRINC", {0.005, 360, 1e5, 1, 12, 0}, {0.005, 360, 1e5, 1, 24, 0}, 12},
        {"flows/NPV", "NPV", with({0.1}, 10, 5.0), with({0.1}, 30, 5.0), 20},
        {"flows/MIRR", "MIRR", with({-100.0}, 12, 5.0), with({-100.0}, 32, 5.0), 20},
        {"flows/FVSCHEDULE", "FVSCHEDULE", with({1.0}, 10, 0.1), with({1.0}, 30, 0.1), 20},
        {"flows/XNPV", "XNPV", dated_flows({0.1}, 10), dated_flows({0.1}, 30), 60},
        {"flows/XIRR", "XIRR", dated_flows({}, 10), dated_flows({}, 30), 80},
        {"flows/IRR-one-change", "IRR", with({-100.0}, 10, 15.0), with({-100.0}, 30, 15.0), 80},
        {"flows/IRR-more", "IRR", with({-100.0, 230.0}, 10, -13.0), with({-100.0, 230.0}, 30, -13.0), 80},
        {"search/RATE", "RATE", {48, -200.0, 9600.0}, {48, -200.0, 8000.0}, 1},
        {"periods/DB", "DB", {1e6, 1e5, 60, 10}, {1e6, 1e5, 60, 30}, 20},
        {"periods/DDB", "DDB", {1e6, 1e5, 60, 10}, {1e6, 1e5, 60, 30}, 20},
        {"periods/VDB", "VDB", {1e6, 0.0, 60, 0, 10}, {1e6, 0.0, 60, 0, 30}, 20},
        {"periods/VDB-switch", "VDB", {1e6, 0.0, 90, 0, 10, 2, 0}, {1e6, 0.0, 90, 0, 30, 2, 0}, 20},
        {"jumps/VDB", "VDB", {1e6, 0.0, 1e9, 0, 10, 1, 0}, {1e6, 0.0, 1e9, 0, 999'999, 1, 0}, 30},
        {"runs/AMORDEGRC",
         "AMORDEGRC",
         {1e6, day_2000, day_2000 + 90, 0, 5, 0.01, 1},
         {1e6, day_2000, day_2000 + 90, 0, 25, 0.01, 1},
         20},
        {"closed/DDB", "DDB", {1e6, 1.0, 2e9, 10, 1e-9}, {1e6, 1.0, 2e9, 1'999'999'999, 1e-9}, 1000},
        {"closed/VDB", "VDB", {1e6, 1.0, 2e9, 0, 10, 2}, {1e6, 1.0, 2e9, 5, 1'999'999'999, 2}, 1000},
    };
    return all;
}

TEST(StepCounter, EveryLoopCounts) {
    for (const Longer& loop : loops()) {
        const std::int64_t grown = steps_of(loop.name, loop.longer) - steps_of(loop.name, loop.shorter);
        EXPECT_GE(grown, loop.steps) << loop.id;
    }
    const std::vector<Arg> payment{0.1, 12, 100.0};
    EXPECT_EQ(steps_of("PMT" + std::string(1000, ' '), payment) - steps_of("PMT", payment), 1000);
    EXPECT_GE(steps_of("pmt" + std::string(1000, 'x'), payment), 3);
}

TEST(StepCounter, CountersOfMissingValuesCountArguments) {
    Call call{"PMT", std::vector<Arg>(40, Arg{1.0})};
    ensure_host();
    double missing_values = 0.0;
    steps_made = 0;
    fncnmis(call.context(), &missing_values);
    EXPECT_EQ(steps_made, 41);
    fnccmis(call.context(), &missing_values);
    EXPECT_GE(steps_made, 2 * 41 + 1);  // the name's characters are looked at up to the first that is no blank
}

}  // namespace
}  // namespace finance::test
