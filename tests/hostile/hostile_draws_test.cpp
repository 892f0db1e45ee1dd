// What the hostile draws reach, and that a call without end is ended and known.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <set>

#include "hostile/call_draws.hpp"
#include "hostile/days.hpp"
#include "hostile/watched_calls.hpp"

namespace finance::hostile {
namespace {

double no_answer(const Call&) { return std::nan(""); }

Call drawn_call(std::string_view name, std::uint64_t seed) {
    Random random{seed};
    return drawn(*catalogue::find(name), {random, {}, no_answer});
}

TEST(HostileDraws, same_seed_same_call) {
    std::set<std::string> texts;
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        const std::string text = drawn_call("ODDFYIELD", seed).text(true);
        EXPECT_EQ(text, drawn_call("ODDFYIELD", seed).text(true));
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 50U);
}

// The years are those of 32 bits: 365.2425 days each on average, from the year 0, which is 1960 years before day 0.
TEST(HostileDraws, days_lie_on_both_sides_of_each_wrap) {
    constexpr double days_a_year = 365.2425;
    Random random{1};
    std::vector<double> drawn_days;
    for (int i = 0; i < 100'000; ++i) drawn_days.push_back(day(random));
    for (const double wrap : {-0x1p31, 0x1p31, -0x1p31 / 12.0, 0x1p31 / 12.0, -0x1p32, 0x1p32}) {
        const double centre = (wrap - 1960.0) * days_a_year;
        for (const double side : {-1.0, 1.0}) {
            EXPECT_GT(
                std::ranges::count_if(
                    drawn_days, [&](double x) { return side * (x - centre) > 0.0 && std::abs(x - centre) < 1e5; }),
                20)
                << wrap << ' ' << side;
        }
    }
    EXPECT_GT(std::ranges::count_if(drawn_days, [](double x) { return x < -0x1p61; }), 100);
    EXPECT_GT(std::ranges::count_if(drawn_days, [](double x) { return x > 1e14; }), 1000);
}

TEST(HostileDraws, most_dates_are_in_order) {
    const auto date = [](const Call& call, std::size_t i) { return call.given[i].front(); };
    int in_order = 0;
    constexpr int calls = 2000;
    for (std::uint64_t seed = 0; seed < calls; ++seed) {
        const Call call = drawn_call("ODDFPRICE", seed);  // settlement, maturity, issue, first coupon
        in_order += date(call, 2) <= date(call, 0) && date(call, 0) <= date(call, 3) && date(call, 3) <= date(call, 1);
    }
    EXPECT_GT(in_order, calls * 9 / 10);
    EXPECT_LT(in_order, calls);
}

TEST(HostileDraws, lists_reach_their_longest_and_come_in_pairs) {
    std::size_t longest = 0;
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        const Call call = drawn_call("XIRR", seed);
        EXPECT_EQ(call.given[0].size(), call.given[1].size());
        longest = std::max(longest, call.given[0].size());
    }
    EXPECT_EQ(longest, 100'000U);
}

TEST(HostileDraws, each_kind_of_value_changes) {
    Random random{3};
    const Draw draw{random, {.periods = 1e4, .list = 10}, no_answer};
    for (const catalogue::Calculation& calculation : catalogue::calculations()) {
        const Call call = drawn(calculation, draw);
        std::set<std::size_t> moved;
        for (int i = 0; i < 300; ++i) {
            const Call other = changed(call, draw);
            for (std::size_t k = 0; k < call.given.size(); ++k) {
                if (other.given[k] != call.given[k]) moved.insert(k);
            }
        }
        const auto given = std::ranges::count_if(call.given, [](const auto& values) { return !values.empty(); });
        EXPECT_EQ(moved.size(), static_cast<std::size_t>(given)) << calculation.name;
    }
}

TEST(HostileDraws, lists_have_a_second_for_each_100000_values) {
    Call call{.calculation = catalogue::find("NPV"), .given = {{0.1}, std::vector<double>(50'000)}};
    EXPECT_EQ(call.bound(), 1.0);
    call.given[1].resize(250'000);
    EXPECT_EQ(call.bound(), 2.5);
}

// ---- Calls in a process of their own

const Call payment{.calculation = catalogue::find("PMT"), .given = {{0.01}, {12.0}, {-1000.0}}};

host::Evaluation no_end(std::string_view, std::span<const host::Argument>) {
    for (volatile bool on = true; on;) {
    }
    return {};
}

host::Evaluation crash(std::string_view, std::span<const host::Argument>) {
    std::raise(SIGKILL);
    return {};
}

TEST(WatchedCalls, a_call_without_end_is_ended_and_known) {
    auto& current = shared<KeptCall>();
    EXPECT_EQ(run_apart([&] { WatchedCalls{no_end, 0.05, current}.make(payment); }), Ending::endless);
    EXPECT_EQ(current.call().text(true), "finance PMT 0.01 12 -1000");
}

TEST(WatchedCalls, a_crash_is_known) {
    auto& current = shared<KeptCall>();
    EXPECT_EQ(run_apart([&] { WatchedCalls{crash, 10.0, current}.make(payment); }), Ending::crashed);
    EXPECT_EQ(current.call().text(true), "finance PMT 0.01 12 -1000");
}

TEST(WatchedCalls, a_call_that_ends_is_timed) {
    auto& current = shared<KeptCall>();
    auto& made = shared<WatchedCalls::Made>();
    const auto busy = [](std::string_view, std::span<const host::Argument> arguments) {
        const double begin = processor_seconds();
        while (processor_seconds() - begin < 0.02) {
        }
        return host::Evaluation{.value = arguments[2].number(), .log = {}, .notes = {}};
    };
    EXPECT_EQ(run_apart([&] { made = WatchedCalls{busy, 10.0, current}.make(payment); }), Ending::finished);
    EXPECT_GE(made.seconds, 0.02);
    EXPECT_EQ(made.value, -1000.0);
}

}  // namespace
}  // namespace finance::hostile
