// The rules of arguments stand twice: in the module's handlers, which refuse, and in the catalogue, which says why. Over the
// whole corpus, whose verdicts the slow model wrote, the two agree: every argument that was marked breaks a rule in words,
// and no argument that was looked at and accepted does.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "calls/diagnosis.hpp"
#include "catalogue/layout.hpp"
#include "module/financial_list.hpp"
#include "tests/model/draws.hpp"

namespace finance::test {
namespace {

using host::Argument;

Argument given_of(const Arg& argument) {
    if (argument.kind() == Arg::Kind::number) return argument.number();
    if (argument.kind() == Arg::Kind::text) return argument.text();
    return Argument::absent();
}

struct DrawnCall {
    explicit DrawnCall(const Draw& draw) : calculation{*catalogue::find(draw.name)} {
        for (const Arg& argument : draw.arguments) arguments.push_back(given_of(argument));
    }
    const catalogue::Calculation& calculation;
    std::vector<Argument> arguments{};  // views of the draw's texts

    // Null beyond the parameters.
    [[nodiscard]] const catalogue::Parameter* parameter(std::size_t position) const {
        const std::size_t index = place_of(calculation, position, arguments.size()).parameter;
        return index < calculation.parameters.size() ? &calculation.parameters[index] : nullptr;
    }

    [[nodiscard]] std::optional<std::string> broken_rule(std::size_t position) const {
        return calls::broken_rule(calculation, arguments, position);
    }
};

// ---- Was the rule looked at that an accepted argument is said to break? If so, another value that breaks it is refused.

const std::vector<Arg>& bad_values() {
    static const std::vector<Arg> values{
        absent, missing, 0.5, -1.5, -1e9, 1e9, 1e300, -1e300, 0x1p33, std::numeric_limits<double>::infinity(), "?"};
    return values;
}

// Without the value that it begins with, and without what to write instead.
std::string rule_in(const std::string& sentence) {
    const std::size_t begin = sentence.starts_with('\'') ? sentence.rfind('\'') : sentence.find(' ');
    return sentence.substr(begin, sentence.find(": ", begin) - begin);
}

bool was_looked_at(const Draw& draw, std::size_t position, const std::string& sentence) {
    bool refused = true;
    for (const Arg& value : bad_values()) {
        Draw other = draw;
        other.arguments[position - 1] = value;
        const auto broken = DrawnCall{other}.broken_rule(position);
        if (!broken || rule_in(*broken) != rule_in(sentence)) continue;
        refused = Call{other.name, other.arguments}.through_dispatcher().status != STATUS_SUCCESS;
        if (refused) break;
    }
    return refused;
}

// Equal dates answer 0 before any are compared with the others.
bool is_equal_date(const Draw& draw, const DrawnCall& call, std::size_t position) {
    const double date = call.arguments[position - 1].number();
    return draw.result == "0000000000000000" && is_dated(call.parameter(position)->kind) &&
           std::ranges::count(call.arguments, date, &Argument::number) > 1;
}

std::string words_of(const Draw& draw, std::size_t position, const std::string& sentence) {
    return draw.name + ", argument " + std::to_string(position) + ": " + sentence;
}

void expect_explained(const Draw& draw, const DrawnCall& call) {
    const auto position = static_cast<std::size_t>(draw.flagged.front());
    const catalogue::Parameter* parameter = call.parameter(position);
    ASSERT_NE(parameter, nullptr) << draw.name << ' ' << position;
    const auto broken = call.broken_rule(position);
    EXPECT_TRUE(broken || !parameter->rule.empty() || !calls::has_value(call.arguments[position - 1]))
        << words_of(draw, position, calls::reason(call.calculation, call.arguments, static_cast<int>(position)));
}

void expect_not_accused(const Draw& draw, const DrawnCall& call) {
    for (std::size_t position = 1; position <= call.arguments.size(); ++position) {
        const auto broken = call.broken_rule(position);
        if (!broken || is_equal_date(draw, call, position)) continue;
        EXPECT_FALSE(was_looked_at(draw, position, *broken)) << words_of(draw, position, *broken);
    }
}

class CorpusDiagnosis : public testing::TestWithParam<std::string> {};

TEST_P(CorpusDiagnosis, ExplainsWhatIsMarkedAndAccusesNothingElse) {
    int marked = 0;
    int accepted = 0;
    for (const Draw& draw : read_draws("xz --decompress --stdout '" ZELKOVAN_CORPUS "/" + GetParam() + ".tsv.xz'")) {
        const DrawnCall call{draw};
        const bool is_marked = !draw.flagged.empty() && draw.flagged.front() > 0;
        if (is_marked) expect_explained(draw, call);
        if (draw.status == STATUS_SUCCESS) expect_not_accused(draw, call);
        marked += is_marked ? 1 : 0;
        accepted += draw.status == STATUS_SUCCESS ? 1 : 0;
    }
    EXPECT_EQ(marked == 0, GetParam() == "IRR") << "which marks none";
    EXPECT_GT(accepted, 0);
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const FinancialRow& row : FinancialList) all.emplace_back(row.name);
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, CorpusDiagnosis, testing::ValuesIn(names()), [](const auto& name) { return name.param; });

}  // namespace
}  // namespace finance::test
