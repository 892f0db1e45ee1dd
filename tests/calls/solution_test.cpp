// Answers of searches against their direct calculations. Rates are known because calls are drawn from them: what is asked is
// worked out from the rate, in another order of operations or by the host's direct calculation, and then searched.
#include "calls/solution.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "calls/answer.hpp"
#include "host/embedded_host.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using calls::Verdict;
using host::Argument;
using Engine = std::mt19937_64;

struct Drawn {
    const char* name;
    std::vector<Argument> arguments;
    double rate;
};

double uniform(Engine& engine, double low, double high) {
    return std::uniform_real_distribution<double>{low, high}(engine);
}

int whole(Engine& engine, int low, int high) { return std::uniform_int_distribution<int>{low, high}(engine); }

double cents(double amount) { return std::round(amount * 100.0) / 100.0; }

// ---- Calls drawn from a rate

Drawn loan(Engine& engine) {
    const int nper = whole(engine, 2, 480);
    const double rate = uniform(engine, 0.0001, 0.02);
    const double pv = cents(uniform(engine, 500.0, 500'000.0));
    const double payment = pv * rate / (1.0 - std::pow(1.0 + rate, -nper));
    return {"RATE", {nper, -payment, pv}, rate};
}

Drawn periodic_flows(Engine& engine) {
    const double rate = uniform(engine, -0.3, 1.0);
    Drawn drawn{"IRR", {0.0}, rate};
    double worth = 0.0;
    for (int k = whole(engine, 1, 60), i = 1; i <= k; ++i) {
        const double flow = cents(uniform(engine, 1.0, 1000.0));
        drawn.arguments.emplace_back(flow);
        worth += flow * std::pow(1.0 + rate, -i);
    }
    drawn.arguments[0] = -worth;
    return drawn;
}

// One payment, then receipts; in order of their dates, or the newest first.
Drawn deal(Engine& engine, bool newest_first) {
    const double rate = uniform(engine, -0.3, 1.0);
    std::vector<int> days{whole(engine, 10'000, 14'000)};
    const int span = 365 * whole(engine, 1, 30);
    for (int k = whole(engine, 1, 20); k > 0; --k) days.push_back(days[0] + whole(engine, 1, span));
    std::ranges::sort(days);
    std::vector<double> values(days.size());
    for (std::size_t i = 1; i < days.size(); ++i) {
        values[i] = cents(uniform(engine, 1.0, 1000.0));
        values[0] -= values[i] * std::pow(1.0 + rate, -(days[i] - days[0]) / 365.0);
    }
    if (newest_first) std::ranges::reverse(days);
    if (newest_first) std::ranges::reverse(values);
    Drawn drawn{"XIRR", {values.begin(), values.end()}, rate};
    drawn.arguments.insert(drawn.arguments.end(), days.begin(), days.end());
    return drawn;
}

Drawn bond(Engine& engine) {
    const double yield = uniform(engine, -0.02, 0.2);
    const double settlement = whole(engine, 20'000, 24'000);
    std::vector<Argument> arguments{settlement,
                                    settlement + whole(engine, 1, 11'000),
                                    uniform(engine, 0.001, 0.12),
                                    yield,
                                    100.0,
                                    std::array{1, 2, 4}.at(static_cast<std::size_t>(whole(engine, 0, 2))),
                                    whole(engine, 0, 4)};
    arguments[3] = linked_host().evaluate("PRICE", arguments).value;
    return {"YIELD", arguments, yield};
}

calls::Answer answer_of(const Drawn& drawn, const host::Evaluation& evaluation) {
    return calls::answer_of(linked_host(), *catalogue::find(drawn.name), drawn.arguments, evaluation);
}

bool is_right(double answer, double rate) { return std::abs(answer - rate) <= 1e-8 * (1.0 + std::abs(rate)); }

// ---- True answers pass, and rates beside them do not

struct Family {
    const char* id;
    std::function<Drawn(Engine&)> draw;
};

const Family families[] = {{"loans", loan},
                           {"periodic flows", periodic_flows},
                           {"deals", [](Engine& engine) { return deal(engine, false); }},
                           {"bonds", bond}};

TEST(Solution, TrueAnswersSolveAndOthersDoNot) {
    constexpr int draws = 20'000;
    for (const Family& family : families) {
        SCOPED_TRACE(family.id);
        Engine engine{17};
        int answered = 0;
        int false_alarms = 0;
        int passed_over = 0;
        for (int i = 0; i < draws; ++i) {
            const Drawn drawn = family.draw(engine);
            const host::Evaluation evaluation = linked_host().evaluate(drawn.name, drawn.arguments);
            if (!evaluation.answered() || !is_right(evaluation.value, drawn.rate)) continue;
            ++answered;
            false_alarms += answer_of(drawn, evaluation).verdict() == Verdict::answered ? 0 : 1;
            const double beside = evaluation.value + (i % 2 == 0 ? 1e-6 : -1e-6);
            passed_over += calls::holds(linked_host(), *catalogue::find(drawn.name), drawn.arguments, beside) ? 1 : 0;
        }
        EXPECT_GT(answered, draws * 99 / 100);
        EXPECT_EQ(false_alarms, 0);
        EXPECT_EQ(passed_over, 0);
    }
}

// One payment and receipts have one rate: every answer that is another one is found out, and what is proposed is right.
TEST(Solution, DealsListedNewestFirst) {
    Engine engine{18};
    int right = 0;
    int found_out = 0;
    int passed_over = 0;
    for (int i = 0; i < 5000; ++i) {
        const Drawn drawn = deal(engine, true);
        const host::Evaluation evaluation = linked_host().evaluate(drawn.name, drawn.arguments);
        const calls::Answer answer = answer_of(drawn, evaluation);
        const bool is_true = evaluation.answered() && is_right(evaluation.value, drawn.rate);
        right += is_true ? 1 : 0;
        EXPECT_TRUE(!is_true || answer.verdict() == Verdict::answered);
        if (answer.verdict() == Verdict::answered && !is_true) ++passed_over;
        if (answer.verdict() != Verdict::does_not_solve) continue;
        ++found_out;
        EXPECT_NE(answer.reason().find("give the earliest flow first"), std::string::npos);
        EXPECT_TRUE(answer.remedy().starts_with("XIRR values=")) << answer.remedy();
    }
    EXPECT_EQ(passed_over, 0);
    EXPECT_GT(right, 1000);
    EXPECT_GT(found_out, 1000);
    std::printf("of 5000: %d right, %d do not solve\n", right, found_out);
}

// A count of periods is the low 32 bits: 2^32 - 52 below 0 is 52 periods, and no plan of so many payments.
TEST(Solution, APlanWithACountFarBelow0IsNotListed) {
    const Drawn drawn{"RATE", {-4294967244.0, 380.0, -37178.0142610451, -37000.0, 1.0}, 0.0};
    const host::Evaluation evaluation = linked_host().evaluate(drawn.name, drawn.arguments);
    const calls::Answer answer = answer_of(drawn, evaluation);
    EXPECT_EQ(answer.verdict(), Verdict::does_not_solve);
    EXPECT_EQ(answer.remedy(), "");
}

// ---- Answers by a rule, and ends of the range

struct RuleCase {
    const char* id;
    const char* name;
    std::vector<Argument> arguments;
    double answer;
    bool holds;
};

const RuleCase rules[] = {
    {"equal dates", "YIELD", {100, 100, 0.05, 95, 100, 2}, 0.0, true},
    {"one coupon left, below -frequency", "YIELD", {23761, 23787, 0.05, 200, 100, 2}, -7.098591549295775, true},
    {"the floor", "RATE", {120, -200, 0, 30000}, calls::lowest_rate, false},
    {"the floor, of flows on one day that cancel", "XIRR", {5, -5, 100, 100}, calls::lowest_rate, false},
    {"no interest: pv is repaid", "RATE", {10, -100, 1000}, 0.0, true},
    {"another rate than none", "RATE", {10, -101, 1000}, 0.0, false},
    {"growth by 1e25", "RATE", {24, 0, 810, 2.8458986897235635e25}, 7.6977235669419457, true},
    {"the largest amounts", "RATE", {53, -2.6105281724448266e307, 1.7976931348623157e308}, 0.16983672770245589, false},
    {"flows near the largest number", "IRR", {-1e308, 1.1e308}, 0.1, true},
    {"a rate of -1, where only the last flow counts", "IRR", {-100, 60, 60, 0}, -1.0, false},
    {"a rate below -1", "IRR", {4, 8, 3}, -1.5, true},
    {"infinity", "RATE", {10, -100, 1000}, HUGE_VAL, false},
    {"a calculation that does not search", "PMT", {0.01, 12, 1000}, 5.0, true},
};

TEST(Solution, Rules) {
    for (const RuleCase& row : rules) {
        SCOPED_TRACE(row.id);
        EXPECT_EQ(calls::holds(linked_host(), *catalogue::find(row.name), row.arguments, row.answer), row.holds);
    }
}

}  // namespace
}  // namespace finance::test
