#include "command/direct_call.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "catalogue/text.hpp"
#include "command/evaluate.hpp"
#include "command/formulas/written_value.hpp"
#include "command/json_report.hpp"
#include "command/tables/call_plan.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;

constexpr const char* hint = "finance help";

host::Argument value_of(const Calculation& calculation, const PlacedOperand& placed, std::size_t position,
                        const Variables* variables) {
    const catalogue::Parameter& parameter = calculation.parameters[placed.parameter];
    const std::string name{calculation.name};
    try {
        return read_written(parameter.kind, placed.operand->text, variables);
    } catch (const FormulaError& error) {
        const std::string label = "argument " + std::to_string(position) + " (" + std::string{parameter.name} + "): ";
        throw UsageError{
            name + ": " + label + error.what(), "finance help " + name, {name, position, std::string{parameter.name}}};
    }
}

CallExpression one_call(std::string_view text) {
    std::vector<CallExpression> calls;
    try {
        calls = read_calls(text);
    } catch (const UsageError& error) {  // its hint is about tables
        throw UsageError{error.what(), hint};
    }
    if (calls.size() == 1 && calls.front().result.empty()) return std::move(calls.front());
    throw UsageError{"one call at a time, without a name for its result", hint};
}

}  // namespace

bool looks_like_call(std::string_view text) {
    const std::size_t bracket = text.find('(');
    const std::string_view name = text.substr(0, bracket);
    const auto fits = [](char c) {
        const char upper = catalogue::upper(c);
        return (upper >= 'A' && upper <= 'Z') || catalogue::is_digit(c) || c == '_';
    };
    return bracket != std::string_view::npos && !name.empty() && std::ranges::all_of(name, fits) && !is_function(name);
}

Outcome evaluate_call(std::string_view text, const Settings& settings) {
    const CallExpression expression = one_call(text);
    const Calculation& calculation = calculation_named(expression.calculation);
    std::vector<host::Argument> arguments;
    for (const PlacedOperand& placed : place_operands(calculation, expression)) {
        arguments.push_back(value_of(calculation, placed, arguments.size() + 1, settings.variables));
    }
    return evaluate(calculation, arguments, settings);
}

// Told like a calculation's answer; instead of a name it has its text.
Outcome evaluate_formula(std::string_view text, const Settings& settings) {
    try {
        static constexpr Calculation number{};
        static constexpr Calculation date{.result = catalogue::ResultKind::date};
        const Formula formula = read_formula(text, VariableNames{settings.variables});
        host::Evaluation evaluation;
        evaluation.value = *formula.constant();
        const calls::Answer answer = calls::answer_of(formula.dated() ? date : number, {}, evaluation);
        Outcome outcome = settings.json ? json_report(answer) : report(answer);
        if (!outcome.error.empty()) outcome.error = "finance: " + shown(text) + ": " + answer.sentence() + '\n';
        if (outcome.exit_status == exit_answered) outcome.value = evaluation.value;
        outcome.dated = formula.dated();
        return outcome;
    } catch (const FormulaError& error) {
        throw UsageError{error.what(), hint};
    }
}

}  // namespace finance::command
