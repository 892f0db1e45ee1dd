#include "command/pictures/plot_call.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/evaluate.hpp"
#include "command/tables/call_plan.hpp"
#include "command/usage_error.hpp"
#include "reading/argument_text.hpp"

namespace finance::command {

namespace {

using catalogue::Kind;

[[noreturn]] void fail(const std::string& message) { throw UsageError{"plot: " + message, "finance help plot"}; }

bool is_value(std::string_view text) {
    return reading::read_value(Kind::date, text).has_value() ||
           std::ranges::any_of(catalogue::basis_keywords,
                               [&](std::string_view keyword) { return catalogue::same_name(keyword, text); });
}

double end_of_range(Kind kind, std::string_view name, std::string_view text) {
    const auto value = reading::read_value(kind, text);
    if (!value) fail(shown(name) + ": " + reading::unreadable(kind, text));
    if (value->kind() != host::Argument::Kind::number || !std::isfinite(value->number())) {
        fail(shown(name) + ": a range goes from number to number, not " + in_quotes(text));
    }
    return value->number();
}

// Those of the calls' hints that are about tables.
std::vector<CallExpression> one_call(std::string_view text) {
    std::vector<CallExpression> calls;
    try {
        calls = read_calls(text);
    } catch (const UsageError& error) {
        fail(error.what());
    }
    if (calls.size() != 1) fail("one call is drawn at a time");
    if (!calls.front().formula.empty()) fail("a calculation is drawn, not a formula alone");
    return calls;
}

}  // namespace

Range read_range(std::string_view text) {
    const std::size_t equals = text.find('=');
    const std::size_t dots = equals == std::string_view::npos ? equals : text.find("..", equals + 1);
    if (dots == std::string_view::npos) {
        fail(in_quotes(text) + " is no range: name=first..last, as in y=0.01..0.12");
    }
    const Range range{.name = text.substr(0, equals),
                      .first = text.substr(equals + 1, dots - equals - 1),
                      .last = text.substr(dots + 2)};
    if (!is_variable_name(range.name) || is_value(range.name)) {
        fail(in_quotes(range.name) + " cannot be a variable: letters, digits and _, the first no digit");
    }
    return range;
}

PlotCall::PlotCall(std::string_view call, const Range& range)
    : variable_{range.name}, calls_{one_call(call)}, calculation_{&calculation_named(calls_.front().calculation)} {
    check_words();
    take_arguments();
    take_ends(range);
}

// Every word is a value or the variable, and the variable is there. Formulas are for the plan to check.
void PlotCall::check_words() const {
    bool found = false;
    std::vector<std::string_view> others;
    for (const NamedOperand& argument : calls_.front().arguments) {
        const Operand& operand = argument.operand;
        const bool word = operand.kind == Operand::Kind::word || operand.kind == Operand::Kind::column;
        const bool formula = word && !is_value(operand.text) && looks_like_formula(operand.text);
        if (formula || (word && operand.text == variable_)) found = true;
        if (formula || !word || operand.text == variable_ || is_value(operand.text)) continue;
        others.emplace_back(operand.text);
    }
    const std::string name{calculation_->name};
    if (!found) fail(name + " has no variable " + in_quotes(variable_) + suggestion(variable_, others));
    if (!others.empty()) fail(name + ": " + in_quotes(others.front()) + " is neither a value nor the variable");
}

// The variable is the one column of a table.
void PlotCall::take_arguments() {
    const Header header{.source = "the range", .names = {variable_}};
    CallPlan plan = plan_calls(calls_, header);
    for (const PlannedArgument& argument : plan.calls.front().arguments) {
        if (argument.input != no_input || argument.formula != no_input) {
            places_.push_back(constants_.size());
            formulas_.push_back(argument.formula == no_input
                                    ? TableNames{header, {}, nullptr}.formula(variable_).formula
                                    : std::move(plan.formulas[argument.formula].text.formula));
        }
        constants_.push_back(argument.constant);
        parameters_.push_back(argument.parameter);
    }
    if (places_.empty()) fail(std::string{calculation_->name} + " has no variable " + in_quotes(variable_));
}

void PlotCall::take_ends(const Range& range) {
    const Kind kind = parameter().kind;
    first_ = end_of_range(kind, range.name, range.first);
    last_ = end_of_range(kind, range.name, range.last);
    percent_ = range.first.ends_with('%') || range.last.ends_with('%');
    if (first_ >= last_) {
        fail(shown(variable_) + ": a range goes upwards, not from " + catalogue::value_text(first_, dated()) + " to " +
             catalogue::value_text(last_, dated()));
    }
}

const catalogue::Parameter& PlotCall::parameter() const {
    return calculation_->parameters[parameters_[places_.front()]];
}

bool PlotCall::whole() const {
    return std::ranges::any_of(places_, [&](std::size_t place) {
        const Kind kind = calculation_->parameters[parameters_[place]].kind;
        return kind != Kind::number && kind != Kind::numbers;
    });
}

std::vector<double> PlotCall::points(std::size_t most) const {
    const double first = whole() ? std::ceil(first_) : first_;
    const double last = whole() ? std::floor(last_) : last_;
    if (first > last) fail(shown(variable_) + ": there is no whole number in the range");
    const double steps =
        whole() ? std::min(static_cast<double>(most - 1), last - first) : static_cast<double>(most - 1);
    std::vector<double> points;
    for (double i = 0.0; i <= steps; ++i) {
        const double x = steps > 0.0 ? std::lerp(first, last, i / steps) : first;
        points.push_back(whole() ? std::round(x) : x);
    }
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

std::vector<host::Argument> PlotCall::arguments(double value) const {
    std::vector<host::Argument> arguments = constants_;
    FormulaStack stack;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        arguments[places_[i]] = formulas_[i].value({&value, 1}, {}, stack);
    }
    return arguments;
}

}  // namespace finance::command
