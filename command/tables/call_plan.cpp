#include "command/tables/call_plan.hpp"

#include <algorithm>
#include <optional>

#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/argument_list.hpp"
#include "command/argument_text.hpp"
#include "command/evaluate.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Kind;

[[noreturn]] void fail(const Calculation& calculation, const std::string& message) {
    const std::string name{calculation.name};
    throw UsageError{name + ": " + message, "finance help " + name};
}

bool begins_like_a_number(std::string_view text) { return text.find_first_of("0123456789+-.") == 0; }

bool is_keyword(Kind kind, std::string_view text) {
    const auto same = [&](std::string_view keyword) { return catalogue::same_name(keyword, text); };
    if (kind == Kind::basis) return std::ranges::any_of(catalogue::basis_keywords, same);
    return same("inf") || same("infinity") || same("nan");
}

class Planner {
public:
    explicit Planner(const Header& header) : header_{header} { plan_.columns = header.names.size(); }

    void add(const CallExpression& expression);
    CallPlan take() { return std::move(plan_); }

private:
    std::vector<PlacedText> layout(const Calculation& calculation, const CallExpression& expression);
    PlannedArgument argument(const Calculation& calculation, std::size_t parameter, const Operand& operand);
    [[nodiscard]] std::optional<host::Argument> constant(Kind kind, const Operand& operand) const;
    std::size_t input(std::size_t column, Kind kind);

    const Header& header_;
    CallPlan plan_;
    std::vector<std::string> labels_;  // stand for the operands while they are laid out
};

// Operands are laid out like the words of a command line, each under a label without comma and equals sign.
std::vector<PlacedText> Planner::layout(const Calculation& calculation, const CallExpression& expression) {
    labels_.clear();
    std::vector<std::string> tokens;
    for (const NamedOperand& argument : expression.arguments) {
        labels_.push_back("argument " + std::to_string(labels_.size() + 1));
        const bool nothing = argument.operand.kind == Operand::Kind::nothing;
        const std::string name = argument.name.empty() ? "" : argument.name + '=';
        tokens.push_back(name + (nothing ? "" : labels_.back()));
    }
    const std::vector<std::string_view> views{tokens.begin(), tokens.end()};
    std::vector<PlacedText> placed = place_arguments(calculation, views);
    for (PlacedText& place : placed) {  // from the tokens, which end here, to the labels
        const auto label = std::ranges::find(labels_, place.text);
        place.text = label != labels_.end() ? std::string_view{*label} : std::string_view{};
    }
    return placed;
}

std::optional<host::Argument> Planner::constant(Kind kind, const Operand& operand) const {
    if (operand.kind == Operand::Kind::nothing) return host::Argument::absent();
    const auto value = read_value(kind, operand.text);
    if (operand.kind == Operand::Kind::text) return value;
    if (operand.kind == Operand::Kind::column || !value) return {};
    const bool text = value->kind() == host::Argument::Kind::text;
    if (begins_like_a_number(operand.text) && !text) return value;
    if (header_.exact(operand.text)) return {};
    return begins_like_a_number(operand.text) || is_keyword(kind, operand.text) ? value : std::nullopt;
}

std::size_t Planner::input(std::size_t column, Kind kind) {
    const Input wanted{.column = column, .kind = kind};
    const auto found = std::ranges::find(plan_.inputs, wanted);
    const auto index = static_cast<std::size_t>(found - plan_.inputs.begin());
    if (found == plan_.inputs.end()) plan_.inputs.push_back(wanted);
    plan_.used_columns = std::max(plan_.used_columns, column + 1);
    return index;
}

PlannedArgument Planner::argument(const Calculation& calculation, std::size_t parameter, const Operand& operand) {
    PlannedArgument planned{.parameter = parameter};
    const Kind kind = calculation.parameters[parameter].kind;
    if (const auto value = constant(kind, operand)) {
        planned.constant = *value;
    } else if (operand.kind == Operand::Kind::text) {
        fail(calculation, std::string{calculation.parameters[parameter].name} + ": " + unreadable(kind, operand.text));
    } else {
        planned.input = input(header_.column(operand), kind);
    }
    return planned;
}

void Planner::add(const CallExpression& expression) {
    const Calculation& calculation = calculation_named(expression.calculation);
    PlannedCall call{.calculation = &calculation};
    static const Operand nothing;
    for (const PlacedText& place : layout(calculation, expression)) {
        const auto label = std::ranges::find(labels_, place.text);
        const auto index = static_cast<std::size_t>(label - labels_.begin());
        const Operand& operand = label == labels_.end() ? nothing : expression.arguments[index].operand;
        call.arguments.push_back(argument(calculation, place.parameter, operand));
    }
    plan_.calls.push_back(std::move(call));
}

// The first of name, name2, name3, ... that is not taken.
std::string numbered(const std::string& name, const std::vector<std::string>& taken) {
    std::string candidate = name;
    for (int number = 2; std::ranges::find(taken, candidate) != taken.end(); ++number) {
        candidate = name + std::to_string(number);
    }
    return candidate;
}

void take_name(std::vector<std::string>& taken, const std::string& name) {
    if (std::ranges::find(taken, name) != taken.end()) {
        throw UsageError{"there is a column '" + name + "' already; name the result otherwise", "finance help map"};
    }
    taken.push_back(name);
}

}  // namespace

CallPlan plan_calls(const std::vector<CallExpression>& calls, const Header& header) {
    Planner planner{header};
    for (const CallExpression& call : calls) planner.add(call);
    return planner.take();
}

void name_results(CallPlan& plan, const std::vector<CallExpression>& calls, std::vector<std::string> taken,
                  bool with_status) {
    for (std::size_t i = 0; i < calls.size(); ++i) {  // what was said goes before what is made up
        plan.calls[i].result = calls[i].result;
        if (!calls[i].result.empty()) take_name(taken, calls[i].result);
    }
    for (PlannedCall& call : plan.calls) {
        if (call.result.empty()) {
            call.result = numbered(catalogue::lower_case(call.calculation->name), taken);
            taken.push_back(call.result);
        }
        if (with_status) take_name(taken, status_name(call));
    }
}

}  // namespace finance::command
