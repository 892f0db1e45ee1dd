// What a plan costs grows as its parts do. Each plan here has so many that looking through all of them for each would take
// minutes of processor time, and its process has thirty seconds.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "command/formulas/variables.hpp"
#include "command/number_form.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/row_object.hpp"
#include "command/words.hpp"

namespace finance::test {
namespace {

constexpr std::size_t many = 200'000;

// first: what stands before the parts.
std::string listed(std::string_view first, std::size_t parts, std::string_view separator, auto part) {
    std::string text{first};
    for (std::size_t i = 0; i < parts; ++i) text.append(i > 0 ? separator : "").append(part(i));
    return text;
}

std::string column_name(std::size_t i) { return "column" + std::to_string(i); }

command::Header wide_header(std::size_t columns) {
    command::Header header{.source = "t.csv"};
    for (std::size_t i = 0; i < columns; ++i) header.names.push_back(column_name(i));
    return header;
}

// In a process of its own, which ends well only where the count is right and the time is kept.
template <typename Count>
void expect_in_time(std::size_t expected, Count count) {
    const auto run = [&] {
        const rlimit seconds{30, 30};
        setrlimit(RLIMIT_CPU, &seconds);
        std::_Exit(count() == expected ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

TEST(PlanningCost, ArgumentsOfOneCall) {
    expect_in_time(many, [] {
        const auto calls = command::read_calls(listed("IRR(", many, ",", [](std::size_t) { return "1"; }) + ')');
        return command::plan_calls(calls, wide_header(1)).calls[0].arguments.size();
    });
}

TEST(PlanningCost, ColumnsOfOneCall) {
    expect_in_time(many, [] {
        const auto calls = command::read_calls(listed("IRR(", many, ",", column_name) + ')');
        return command::plan_calls(calls, wide_header(many)).inputs.size();
    });
}

TEST(PlanningCost, ColumnsWhateverTheirCase) {
    expect_in_time(many, [] {
        const auto shouted = [](std::size_t i) { return "COLUMN" + std::to_string(i); };
        const auto calls = command::read_calls(listed("IRR(", many, ",", shouted) + ')');
        return command::plan_calls(calls, wide_header(many)).inputs.size();
    });
}

TEST(PlanningCost, ColumnsOfOneFormula) {
    expect_in_time(many, [] {
        const auto calls = command::read_calls(listed("0+", many, "+", column_name));
        return command::plan_calls(calls, wide_header(many)).inputs.size();
    });
}

// The last of them is called npv200000.
TEST(PlanningCost, CallsWithoutNames) {
    expect_in_time(many, [] {
        const auto calls = command::read_calls(listed("", many, ",", [](std::size_t) { return "NPV(0.1,column0)"; }));
        const command::Header header = wide_header(1);
        command::CallPlan plan = command::plan_calls(calls, header);
        command::name_results(plan, calls, header.names, true);
        return plan.calls.back().result == "npv" + std::to_string(many) ? many : 0;
    });
}

TEST(PlanningCost, ResultsOfCallsBefore) {
    expect_in_time(many - 1, [] {
        const auto call = [](std::size_t i) {
            const std::string before = i > 0 ? 'R' + std::to_string(i - 1) : "1";
            return before + "+1 as r" + std::to_string(i);
        };
        const auto calls = command::read_calls(listed("", many, ",", call));
        const command::Header header = wide_header(1);
        command::CallPlan plan = command::plan_calls(calls, header);
        command::name_results(plan, calls, header.names, false);
        return static_cast<std::size_t>(std::ranges::count(plan.calls, true, &command::PlannedCall::wanted_later));
    });
}

TEST(PlanningCost, Variables) {
    expect_in_time(many, [] {
        command::Variables variables;
        for (int round = 0; round < 2; ++round) {
            for (std::size_t i = 0; i < many; ++i) variables.set({.name = column_name(i), .value = 1.0});
        }
        return variables.find("COLUMN7") != nullptr ? variables.all().size() : 0;
    });
}

TEST(PlanningCost, LinesThatGoOn) {
    expect_in_time(2 * many + 4, [] {
        command::JoinedLine line;
        line.add("IRR(");
        for (std::size_t i = 0; i < many; ++i) line.add("1");
        return line.goes_on() ? line.text().size() : 0;
    });
}

TEST(PlanningCost, NamesOfObjects) {
    expect_in_time(1, [] {
        const command::Header header = wide_header(many);
        const command::RowObject object{header.names, ','};
        return std::size_t{1};
    });
}

TEST(PlanningCost, WordsThatRound) {
    expect_in_time(1, [] {
        std::vector<std::string_view> words{"PMT"};
        for (std::size_t i = 0; i < many; ++i) words.emplace_back("--digits=2");
        return command::take_digits(words) == 2 ? words.size() : 0;
    });
}

}  // namespace
}  // namespace finance::test
