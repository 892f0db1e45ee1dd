// NPV and MIRR: values, refusals, which of several faults is named, identities.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
constexpr const char* digits_60 = "60 digits, tests/reference/cash_flows.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"NPV/project", "NPV", {0.07, -640, 130, 155, 410}, -45.27059858841042, digits_60, 64},
    {"NPV/changing signs", "NPV", {0.045, 310, -95.5, 120, 77.25, -260, 505}, 558.2830393796406, digits_60, 8},
    {"NPV/tiny rate", "NPV", {1e-12, 7, -3, 11}, 14.999999999966, digits_60, 2},
    {"NPV/rate 1", "NPV", {1, 4, 8, -16}, 2.0, "2 + 2 - 2"},
    {"NPV/one flow", "NPV", {0.25, 10}, 8.0, by_hand},
    {"NPV/no flows", "NPV", {0.1}, 0.0, by_hand},
    {"NPV/smallest rate adds the flows up", "NPV", {smallest, 1, 2, 3}, 6.0, by_hand},
    {"NPV/infinite rate", "NPV", {inf, 5, 7}, 0.0, "a discount factor of 0"},
    {"NPV/infinite flow", "NPV", {1, 5, inf}, inf, by_hand},

    {"MIRR/project", "MIRR", {-2500, 610, 745, 0, 880, 1230, 0.08, 0.11}, 0.10676995082625347, digits_60, 32},
    {"MIRR/rates swapped", "MIRR", {-2500, 610, 745, 0, 880, 1230, 0.11, 0.08}, 0.09573281338460479, digits_60, 32},
    {"MIRR/two negative flows", "MIRR", {-100, 50, -40, 0, 130, 0.07, 0.03}, 0.08154874346701088, digits_60, 32},
    {"MIRR/last flow negative", "MIRR", {20, -100, 90, -5, 0.07, 0.03}, 0.05506048848424673, digits_60, 32},
    {"MIRR/two flows", "MIRR", {-100, 110, 0.3, 0.4}, 0.1, "110/100 - 1 whatever the rates", 32},
    {"MIRR/gain at the end", "MIRR", {-100, 0, 121, 0.3, 0.4}, 0.1, "the root of 121/100, less 1", 32},
    {"MIRR/half is lost", "MIRR", {-100, 0, 25, 0.3, 0.4}, -0.5, "the root of 25/100, less 1", 32},
    {"MIRR/negative zero is no outlay",
     "MIRR",
     {-0.0, -100, 110, 0.5, 1},
     std::sqrt(1.1 / 1 * 1.5) - 1.0,
     "110 at the end for 100/1.5 at the start, two periods",
     32},
};

TEST(PeriodicFlows, Values) { check_values(values); }

const std::vector<RefusalCase> refusals{
    // no answer: no argument is at fault
    {"MIRR/no negative flow", "MIRR", {100, 0, 110, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/no positive flow", "MIRR", {-100, 0, -110, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/zeros", "MIRR", {0, 0, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/negative zero alone", "MIRR", {-0.0, 5, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/one flow", "MIRR", {-100, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/one positive flow", "MIRR", {100, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/no flows", "MIRR", {0.1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/one rate only", "MIRR", {0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/outlay discounted to nothing", "MIRR", {-smallest, 5, 1, 0.1}, STATUS_INVALID_ARGUMENT, {}},
    {"MIRR/infinite finance rate", "MIRR", {-1, 5, inf, 0.1}, STATUS_INVALID_ARGUMENT, {}},

    // one argument only
    {"NPV/rate missing alone", "NPV", {missing}, STATUS_MISSING_RESULT, {1}},
    {"MIRR/one rate only, missing", "MIRR", {missing}, STATUS_MISSING_RESULT, {1}},
    {"MIRR/one rate only, 0", "MIRR", {0}, STATUS_INVALID_ARGUMENT, {1}},
    {"MIRR/one rate only, absent", "MIRR", {absent}, STATUS_INVALID_ARGUMENT, {1}},

    // NPV: the rate first, then the last faulty flow
    {"NPV/rate 0, flow missing", "NPV", {0, 1, missing}, STATUS_INVALID_ARGUMENT, {1}},
    {"NPV/rate missing, flow absent", "NPV", {missing, 1, absent}, STATUS_MISSING_RESULT, {1}},
    {"NPV/missing, then absent", "NPV", {0.1, missing, 1, absent, 1}, STATUS_INVALID_ARGUMENT, {4}},
    {"NPV/absent, then missing", "NPV", {0.1, absent, 1, missing, 1}, STATUS_MISSING_RESULT, {4}},
    {"NPV/all flows missing", "NPV", {0.1, missing, missing, missing}, STATUS_MISSING_RESULT, {4}},

    // MIRR: reinvestment rate, finance rate, the last faulty flow
    {"MIRR/both rates bad", "MIRR", {-100, 110, 0, -1}, STATUS_INVALID_ARGUMENT, {4}},
    {"MIRR/finance bad, reinvestment missing", "MIRR", {-100, 110, 0, missing}, STATUS_MISSING_RESULT, {4}},
    {"MIRR/finance missing, reinvestment absent", "MIRR", {-100, 110, missing, absent}, STATUS_INVALID_ARGUMENT, {4}},
    {"MIRR/flow missing, finance 0", "MIRR", {-100, missing, 0, 0.1}, STATUS_INVALID_ARGUMENT, {3}},
    {"MIRR/flow absent, reinvestment missing", "MIRR", {absent, 110, 0.1, missing}, STATUS_MISSING_RESULT, {4}},
    {"MIRR/missing, then absent", "MIRR", {missing, 110, absent, 50, 0.1, 0.1}, STATUS_INVALID_ARGUMENT, {3}},
    {"MIRR/absent, then missing", "MIRR", {absent, 110, missing, 50, 0.1, 0.1}, STATUS_MISSING_RESULT, {3}},
    {"MIRR/flow missing where none is negative", "MIRR", {100, missing, 0.1, 0.1}, STATUS_MISSING_RESULT, {2}},
};

TEST(PeriodicFlows, Refusals) { check_refusals(refusals); }

TEST(PeriodicFlows, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules rate{true, {0, -0.0, -0.1, -smallest, -inf}};
    const ArgumentRules flow{true, {}};
    EXPECT_EQ(check_argument_rules("NPV", {0.1, -100, 60, 70}, {rate, flow, flow, flow}), 13);
    EXPECT_EQ(check_argument_rules("MIRR", {-100, 60, 70, 0.1, 0.12}, {flow, flow, flow, rate, rate}), 20);
}

// ---- Identities

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

std::vector<double> any_flows(int fewest) {
    std::vector<double> flows(static_cast<std::size_t>(*rc::gen::inRange(fewest, 40)));
    for (double& flow : flows) flow = *rc::gen::inRange(-100000, 100000) / 7.0;
    return flows;
}

double sum_of_sizes(const std::vector<double>& flows) {
    double sum = 0.0;
    for (const double flow : flows) sum += std::abs(flow);
    return sum;
}

// A flow in front of the others: NPV(r, v, flows) = (v + NPV(r, flows)) / (1 + r).
RC_GTEST_PROP(PeriodicFlowIdentities, NpvGrowsByAFlowInFront, ()) {
    const double rate = *rc::gen::inRange(1, 20000) / 10000.0;
    const std::vector<double> flows = any_flows(2);
    std::vector<Arg> all{rate};
    all.insert(all.end(), flows.begin(), flows.end());
    std::vector<Arg> rest = all;
    rest.erase(rest.begin() + 1);
    const double expected = (flows.front() + value_of("NPV", rest)) / (1.0 + rate);
    RC_ASSERT(std::abs(value_of("NPV", all) - expected) <= 1e-14 * sum_of_sizes(flows));
}

// At one rate for both purposes, what MIRR earns on the outlays' worth is what the gains grow to:
//   NPV of the outlays (1 + MIRR)^(m-1) = -NPV of the gains (1 + rate)^(m-1)
RC_GTEST_PROP(PeriodicFlowIdentities, MirrBalancesBothWorths, ()) {
    const double rate = *rc::gen::inRange(1, 5000) / 10000.0;
    std::vector<double> flows = any_flows(2);
    flows.front() = -std::abs(flows.front()) - 1.0;
    flows.back() = std::abs(flows.back()) + 1.0;
    std::vector<Arg> outlays{rate};
    std::vector<Arg> gains{rate};
    for (const double flow : flows) {
        outlays.emplace_back(std::min(flow, 0.0));
        gains.emplace_back(std::max(flow, 0.0));
    }
    std::vector<Arg> call(flows.begin(), flows.end());
    call.insert(call.end(), {rate, rate});
    const double periods = static_cast<double>(flows.size()) - 1.0;
    const double grown = std::log(-value_of("NPV", outlays)) + periods * std::log1p(value_of("MIRR", call));
    RC_ASSERT(std::abs(grown - std::log(value_of("NPV", gains)) - periods * std::log1p(rate)) <= 1e-12);
}

}  // namespace
}  // namespace finance::test
