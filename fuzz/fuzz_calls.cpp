// Calls as they are written for tables, on a table whose header is the input's first line.
//
//  (1) A text is read, or refused with a sentence: nothing else is thrown.
//  (2) What was read, written out again, is read as the same.
//  (3) Conditions are read, or refused, and evaluated.
//  (4) A plan points to columns that there are and to parameters of its calculations, reads each column of a kind once,
//      and gives each result a name of its own.
#include <cmath>
#include <set>
#include <vector>

#include "command/tables/call_expression.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/table_format.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"
#include "fuzz/input.hpp"

namespace finance::fuzz {
namespace {

using command::CallExpression;
using command::Operand;
using command::UsageError;

// ---- Written out again

std::string between(std::string_view text, char mark) {
    std::string written(1, mark);
    for (const char c : text) written.append(c == mark ? 2 : 1, c);
    return written + mark;
}

std::string written(const Operand& operand) {
    if (operand.kind == Operand::Kind::column) return between(operand.text, '"');
    return operand.kind == Operand::Kind::text ? between(operand.text, '\'') : operand.text;
}

std::string written(const CallExpression& call) {
    std::string text = call.calculation + '(';
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        const auto& [name, operand] = call.arguments[i];
        text += (i > 0 ? "," : "") + name + (name.empty() ? "" : "=") + written(operand);
    }
    return text + ')';
}

std::string written(const std::vector<CallExpression>& calls) {
    std::string text;
    for (const CallExpression& call : calls) {
        if (!text.empty()) text += ',';
        text += call.formula.empty() ? written(call) : call.formula;
        if (!call.result.empty()) text += " as " + between(call.result, '"');
    }
    return text;
}

bool same(const Operand& a, const Operand& b) { return a.kind == b.kind && a.text == b.text; }

bool same(const CallExpression& a, const CallExpression& b) {
    return a.calculation == b.calculation && a.formula == b.formula && a.result == b.result &&
           std::ranges::equal(a.arguments, b.arguments, [](const auto& one, const auto& other) {
               return one.name == other.name && same(one.operand, other.operand);
           });
}

// ---- Plans

// Marks the inputs that it reads; its results are of calls before the one that it is for.
void check_formula(const command::CallPlan& plan, std::size_t formula, std::size_t call, std::vector<bool>& wanted) {
    must(formula < plan.formulas.size(), "a formula that there is");
    for (const command::FormulaSource& source : plan.formulas[formula].sources) {
        must(source.index < (source.result ? call : plan.inputs.size()),
             "a result before it, or an input that there is");
        if (!source.result) wanted[source.index] = true;
    }
}

void check_argument(const command::CallPlan& plan, const command::PlannedArgument& argument, std::size_t call,
                    std::vector<bool>& wanted) {
    const bool is_formula = plan.calls[call].is_formula();
    must(is_formula || argument.parameter < plan.calls[call].calculation->parameters.size(),
         "a parameter that there is");
    if (argument.formula != command::no_input) return check_formula(plan, argument.formula, call, wanted);
    if (argument.input == command::no_input) return;
    must(argument.input < plan.inputs.size(), "an input that there is");
    wanted[argument.input] = true;
}

void check_plan(const command::CallPlan& plan, const std::vector<CallExpression>& calls,
                const command::Header& header) {
    must(plan.calls.size() == calls.size() && plan.columns == header.names.size(), "all calls are planned");
    std::size_t used = 0;
    for (std::size_t i = 0; i < plan.inputs.size(); ++i) {
        must(plan.inputs[i].column < plan.columns, "a column that there is");
        must(std::ranges::count(plan.inputs, plan.inputs[i]) == 1, "a column of a kind is read once");
        used = std::max(used, plan.inputs[i].column + 1);
    }
    must(plan.used_columns == used, "columns up to the last that is read");
    std::vector<bool> wanted(plan.inputs.size());
    for (std::size_t i = 0; i < plan.calls.size(); ++i) {
        for (const command::PlannedArgument& argument : plan.calls[i].arguments)
            check_argument(plan, argument, i, wanted);
    }
    must(std::ranges::count(wanted, false) == 0, "no column is read for nothing");
}

void check_names(command::CallPlan& plan, const std::vector<CallExpression>& calls, const command::Header& header,
                 bool with_status) {
    command::name_results(plan, calls, header.names, with_status);
    std::multiset<std::string> names;
    for (const command::PlannedCall& call : plan.calls) {
        names.insert(call.result);
        if (with_status) names.insert(status_name(call));
    }
    for (const std::string& name : names) {
        must(!name.empty() && names.count(name) == 1, "a result has a name of its own");
        must(std::ranges::count(header.names, name) == 0, "a result is no column that there is");
    }
}

command::Header header_of(std::string_view line, bool named) {
    const command::Record first{.text = line, .line_end = "\n", .quoted = line.find('"') != std::string_view::npos};
    return command::read_header(first, ',', named, "t.csv");
}

void check_columns(std::string_view text, const command::Header& header) {
    for (const Operand& operand : command::read_columns(text)) {
        must(!operand.text.empty(), "a column has a name");
        must(header.column(operand) < header.names.size(), "a column that there is");
    }
}

void check_calls(std::string_view text, const command::Header& header, bool with_status) {
    const std::vector<CallExpression> calls = command::read_calls(text);
    bool again = false;
    try {
        again = std::ranges::equal(calls, command::read_calls(written(calls)),
                                   [](const auto& a, const auto& b) { return same(a, b); });
    } catch (const UsageError&) {
    }
    must(again, "what was read can be written and read again");
    command::CallPlan plan = command::plan_calls(calls, header);
    check_plan(plan, calls, header);
    check_names(plan, calls, header, with_status);
}

// A condition is read, or refused; of any row it holds, does not, or nobody knows.
void check_condition(std::string_view text, const command::Header& header) {
    const command::TableFormula condition = command::plan_condition(text, header, nullptr);
    command::FormulaStack stack;
    const std::vector<double> numbers(condition.numbers.size(), 1.0);
    const std::vector<std::string_view> texts(condition.texts.size(), "a");
    const double holds = condition.formula.value(numbers, texts, stack);
    must(holds == 0.0 || holds == 1.0 || std::isnan(holds), "a condition is true, false or unknown");
}

void run(Bytes in) {
    const std::uint8_t how = in.byte();
    const std::string_view text = in.rest();
    const std::size_t line = std::min(text.find('\n'), text.size());
    const std::string_view rest = text.substr(std::min(line + 1, text.size()));
    try {
        const command::Header header = header_of(text.substr(0, line), (how & 1) == 0);
        if ((how & 16) != 0) {
            check_condition(rest, header);
        } else if ((how & 6) == 6) {
            check_columns(rest, header);
        } else {
            check_calls(rest, header, (how & 8) != 0);
        }
    } catch (const UsageError& error) {
        must(*error.what() != '\0' && !error.hint().empty(), "a refusal says why and what to do");
    } catch (const command::TableError& error) {
        must(text.substr(0, line).find('\r') != std::string_view::npos, "only old line ends make no header");
    }
}

}  // namespace
}  // namespace finance::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    finance::fuzz::run({data, size});
    return 0;
}
