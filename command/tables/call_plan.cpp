#include "command/tables/call_plan.hpp"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "calls/meant.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/argument_list.hpp"
#include "command/evaluate.hpp"
#include "command/usage_error.hpp"
#include "reading/argument_text.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Kind;

[[noreturn]] void fail(const Calculation& calculation, const std::string& message) {
    const std::string name{calculation.name};
    throw UsageError{name + ": " + message, "finance help " + name};
}

std::string with_marks_doubled(std::string_view name) {
    std::string text;
    for (const char c : name) text.append(c == '"' ? 2 : 1, c);
    return text;
}

bool begins_like_a_number(std::string_view text) { return text.find_first_of("0123456789+-.") == 0; }

bool is_keyword(Kind kind, std::string_view text) {
    const auto same = [&](std::string_view keyword) { return catalogue::same_name(keyword, text); };
    if (kind == Kind::basis) return std::ranges::any_of(catalogue::basis_keywords, same);
    return same("inf") || same("infinity") || same("nan");
}

// A formula alone: what it comes to is told like a calculation's answer.
constexpr Calculation number_formula{};
constexpr Calculation date_formula{.result = catalogue::ResultKind::date};

class Planner {
public:
    Planner(const Header& header, const Variables* variables) : header_{header}, names_{header, results_, variables} {
        plan_.columns = header.names.size();
    }

    void add(const CallExpression& expression);
    CallPlan take() { return std::move(plan_); }

private:
    PlannedCall call(const CallExpression& expression);
    PlannedCall formula_alone(const std::string& text);
    PlannedArgument argument(const Calculation& calculation, std::size_t parameter, const Operand& operand);
    PlannedArgument calculated(const Calculation& calculation, std::size_t parameter, const Operand& operand);
    [[nodiscard]] std::optional<host::Argument> constant(Kind kind, const Operand& operand) const;
    std::size_t input(const Input& wanted);
    std::size_t formula(TableFormula text, Kind kind, bool argument);

    const Header& header_;
    IndexedNames results_;  // of the calls so far, as later ones name them
    TableNames names_;
    CallPlan plan_;
    std::map<std::tuple<std::size_t, Kind, bool>, std::size_t> inputs_;  // the plan's: column, kind, in a formula
};

std::optional<host::Argument> Planner::constant(Kind kind, const Operand& operand) const {
    if (operand.kind == Operand::Kind::nothing) return host::Argument::absent();
    const auto value = reading::read_value(kind, operand.text);
    if (operand.kind == Operand::Kind::text) return value;
    if (operand.kind == Operand::Kind::column || !value) return {};
    const bool text = value->kind() == host::Argument::Kind::text;
    if (begins_like_a_number(operand.text) && !text) return value;
    if (header_.exact(operand.text)) return {};
    return begins_like_a_number(operand.text) || is_keyword(kind, operand.text) ? value : std::nullopt;
}

std::size_t Planner::input(const Input& wanted) {
    const auto [place, added] =
        inputs_.try_emplace({wanted.column, wanted.kind, wanted.in_formula}, plan_.inputs.size());
    if (added) plan_.inputs.push_back(wanted);
    plan_.used_columns = std::max(plan_.used_columns, wanted.column + 1);
    return place->second;
}

std::size_t Planner::formula(TableFormula text, Kind kind, bool argument) {
    PlannedFormula planned{.sources = text.numbers, .kind = kind, .of_rows = argument};
    for (FormulaSource& source : planned.sources) {
        if (source.result) {
            plan_.calls[source.index].wanted_later = true;
            planned.of_rows = false;
        } else {
            source.index = input({.column = source.index, .kind = Kind::date_time, .in_formula = true});
        }
    }
    planned.text = std::move(text);
    plan_.formulas.push_back(std::move(planned));
    return plan_.formulas.size() - 1;
}

// What is no value and no column. A name alone that nobody knows is told as a column's.
PlannedArgument Planner::calculated(const Calculation& calculation, std::size_t parameter, const Operand& operand) {
    const Kind kind = calculation.parameters[parameter].kind;
    const bool quoted = operand.kind == Operand::Kind::column;
    const bool named = names_.find(operand.text, quoted ? NameForm::quoted : NameForm::word).has_value();
    if (kind == Kind::basis || (!named && (quoted || !looks_like_formula(operand.text)))) {
        (void)header_.column(operand);
    }
    PlannedArgument planned{.parameter = parameter};
    try {
        const bool bare = quoted && named;
        TableFormula text = names_.formula(bare ? '"' + with_marks_doubled(operand.text) + '"' : operand.text);
        if (text.formula.dated() && !is_dated(kind)) throw FormulaError{in_quotes(operand.text) + " is a date"};
        if (const auto value = text.formula.constant()) {
            planned.constant = *value;
        } else {
            planned.formula = formula(std::move(text), kind, true);
        }
    } catch (const FormulaError& error) {
        fail(calculation, std::string{calculation.parameters[parameter].name} + ": " + error.what());
    }
    return planned;
}

PlannedArgument Planner::argument(const Calculation& calculation, std::size_t parameter, const Operand& operand) {
    PlannedArgument planned{.parameter = parameter};
    const Kind kind = calculation.parameters[parameter].kind;
    if (const auto value = constant(kind, operand)) {
        if (!calls::is_meant(kind, *value)) {
            const std::string words = calls::unmeant_words(kind, value->number());
            fail(calculation, std::string{calculation.parameters[parameter].name} + ": " + words);
        }
        planned.constant = *value;
    } else if (operand.kind == Operand::Kind::text) {
        fail(calculation,
             std::string{calculation.parameters[parameter].name} + ": " + reading::unreadable(kind, operand.text));
    } else if (const auto column = header_.find(operand)) {
        planned.input = input({.column = *column, .kind = kind});
    } else {
        return calculated(calculation, parameter, operand);
    }
    return planned;
}

PlannedCall Planner::call(const CallExpression& expression) {
    const Calculation& calculation = calculation_named(expression.calculation);
    PlannedCall call{.calculation = &calculation};
    for (const PlacedOperand& placed : place_operands(calculation, expression)) {
        call.arguments.push_back(argument(calculation, placed.parameter, *placed.operand));
    }
    return call;
}

// A column alone may have any name.
PlannedCall Planner::formula_alone(const std::string& text) {
    try {
        const auto column = header_.find({.kind = Operand::Kind::word, .text = text});
        const bool whole = column && !text.starts_with('$');
        TableFormula read = names_.formula(whole ? '"' + with_marks_doubled(header_.names[*column]) + '"' : text);
        PlannedCall call{.calculation = read.formula.dated() ? &date_formula : &number_formula};
        call.arguments.push_back({.formula = formula(std::move(read), Kind::date_time, false)});
        return call;
    } catch (const FormulaError& error) {
        throw UsageError{error.what(), "finance help map"};
    }
}

// Later ones name a result as it was said, or a call without a name by its calculation, in lower case.
void Planner::add(const CallExpression& expression) {
    plan_.calls.push_back(expression.formula.empty() ? call(expression) : formula_alone(expression.formula));
    const std::string& name = expression.result.empty() ? expression.calculation : expression.result;
    results_.push_back(expression.result.empty() ? catalogue::lower_case(name) : name);
}

class TakenNames {
public:
    explicit TakenNames(const std::vector<std::string>& names) : names_{names.begin(), names.end()} {}

    void take(const std::string& name) {
        if (names_.insert(name).second) return;
        throw UsageError{"there is a column " + in_quotes(name) + " already; name the result otherwise",
                         "finance help map"};
    }

    // Takes the first of name, name2, name3, ... that is not taken. What was tried before stays taken.
    std::string take_numbered(const std::string& name) {
        std::size_t& tried = tried_[name];
        for (;;) {
            std::string candidate = name;
            if (++tried > 1) candidate += std::to_string(tried);
            if (names_.insert(candidate).second) return candidate;
        }
    }

private:
    std::set<std::string, std::less<>> names_;
    std::map<std::string, std::size_t> tried_;
};

// What operands are called among the words that stand for them.
constexpr std::string_view operand_label = "argument ";

const Operand& labelled(const CallExpression& expression, std::string_view label) {
    static const Operand nothing;
    std::size_t number = 0;
    label.remove_prefix(std::min(label.size(), operand_label.size()));
    std::from_chars(label.data(), label.data() + label.size(), number);
    return number == 0 ? nothing : expression.arguments[number - 1].operand;
}

}  // namespace

std::string unreadable(const reading::FieldForm& form, const Input& input, std::string_view text) {
    if (!input.in_formula) return reading::unreadable(form, input.kind, text);
    return in_quotes(text) + " is neither a number nor a date";
}

// Operands are laid out like the words of a command line, each under a label without comma and equals sign.
std::vector<PlacedOperand> place_operands(const Calculation& calculation, const CallExpression& expression) {
    std::vector<std::string> tokens;
    for (const NamedOperand& argument : expression.arguments) {
        std::string token = argument.name.empty() ? "" : argument.name + '=';
        if (argument.operand.kind != Operand::Kind::nothing) {
            token.append(operand_label).append(std::to_string(tokens.size() + 1));
        }
        tokens.push_back(std::move(token));
    }
    const std::vector<std::string_view> views{tokens.begin(), tokens.end()};
    std::vector<PlacedOperand> placed;
    for (const PlacedText& place : place_arguments(calculation, views)) {
        placed.push_back({.parameter = place.parameter, .operand = &labelled(expression, place.text)});
    }
    return placed;
}

CallPlan plan_calls(const std::vector<CallExpression>& calls, const Header& header, const Variables* variables) {
    Planner planner{header, variables};
    for (const CallExpression& call : calls) planner.add(call);
    return planner.take();
}

TableFormula plan_condition(std::string_view text, const Header& header, const Variables* variables) {
    const IndexedNames no_results;
    try {
        return TableNames{header, no_results, variables}.condition(text);
    } catch (const FormulaError& error) {
        throw UsageError{std::string{"--where: "} + error.what(), "finance help map"};
    }
}

void name_results(CallPlan& plan, const std::vector<CallExpression>& calls, const std::vector<std::string>& columns,
                  bool with_status) {
    TakenNames taken{columns};
    for (std::size_t i = 0; i < calls.size(); ++i) {  // what was said goes before what is made up
        plan.calls[i].result = calls[i].result;
        if (!calls[i].result.empty()) taken.take(calls[i].result);
    }
    for (std::size_t i = 0; i < calls.size(); ++i) {
        PlannedCall& call = plan.calls[i];
        if (call.result.empty()) {
            call.result = taken.take_numbered(call.is_formula() ? calls[i].formula
                                                                : catalogue::lower_case(call.calculation->name));
        }
        if (with_status) taken.take(status_name(call));
    }
}

}  // namespace finance::command
