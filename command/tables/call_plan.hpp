// Calls whose columns have been found: where each argument of each call comes from.
//
//  (1) A word is a value where it begins like a number and can be read as its argument's kind of value, or is a single
//      dot; else it is a column, and where there is none, a value after all if it is a keyword (ACTUAL, inf).
//  (2) Else it is an earlier result, a variable of the session, or else arithmetic (table_formula.hpp). A basis is none
//      of these.
//  (3) What is read of a row is read once, however many arguments want it; formulas read in a way of their own.
//  (4) A result is called as was said, else as its calculation, in lower case; where that is the name of a column
//      already, a number is added. A formula alone is called as it is written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/tables/call_expression.hpp"
#include "command/tables/table_format.hpp"
#include "command/tables/table_formula.hpp"
#include "host/embedded_host.hpp"
#include "reading/field_form.hpp"

namespace finance::command {

inline constexpr std::size_t no_input = static_cast<std::size_t>(-1);

// A column read as one kind of value.
struct Input {
    std::size_t column = 0;
    catalogue::Kind kind{};
    bool in_formula = false;  // a number or a date, whichever it is
    friend bool operator==(const Input&, const Input&) = default;
};

// Why a field is no value of that kind.
std::string unreadable(const reading::FieldForm& form, const Input& input, std::string_view text);

struct PlannedFormula {
    TableFormula text{};
    std::vector<FormulaSource> sources{};  // as the text's numbers, columns being inputs of the plan
    catalogue::Kind kind{};                // of what it is for
    bool of_rows = false;                  // an argument that wants no results: each row has a value
};

struct PlannedArgument {
    std::size_t parameter = 0;
    std::size_t input = no_input;    // index of the plan's inputs,
    std::size_t formula = no_input;  // or of its formulas; neither: a constant
    host::Argument constant = host::Argument::absent();
};

struct PlannedCall {
    const catalogue::Calculation* calculation = nullptr;  // of a formula alone: one without a name
    std::string result{};
    std::vector<PlannedArgument> arguments{};  // of a formula alone: one
    bool wanted_later = false;                 // by a formula of a later one

    [[nodiscard]] bool is_formula() const { return calculation->name.empty(); }
};

struct CallPlan {
    std::vector<PlannedCall> calls{};
    std::vector<Input> inputs{};
    std::vector<PlannedFormula> formulas{};
    std::vector<TableFormula> where{};  // the rows that are taken hold to all of them
    std::size_t columns = 0;            // that the table has
    std::size_t used_columns = 0;       // up to the last one that is read
    reading::FieldForm fields{};        // how fields are read
};

// The first of the calls before whose result the call's formulas read and that is refused; null: none is.
template <typename IsRefused>
const PlannedCall* refused_source(const CallPlan& plan, const PlannedCall& call, IsRefused is_refused) {
    for (const PlannedArgument& argument : call.arguments) {
        if (argument.formula == no_input) continue;
        for (const FormulaSource& source : plan.formulas[argument.formula].sources) {
            if (source.result && is_refused(source.index)) return &plan.calls[source.index];
        }
    }
    return nullptr;
}

// An operand and the parameter that takes it.
struct PlacedOperand {
    std::size_t parameter = 0;
    const Operand* operand = nullptr;  // of the expression, or one that is nothing
};

// By position in the call. UsageError where they do not fit the parameters.
std::vector<PlacedOperand> place_operands(const catalogue::Calculation& calculation, const CallExpression& expression);

// Constants are views into the calls: they must live as long as the plan. variables: may be null. UsageError.
CallPlan plan_calls(const std::vector<CallExpression>& calls, const Header& header,
                    const Variables* variables = nullptr);

// UsageError.
TableFormula plan_condition(std::string_view text, const Header& header, const Variables* variables);

// "p", "p_status"; columns: names that are taken already.
void name_results(CallPlan& plan, const std::vector<CallExpression>& calls, const std::vector<std::string>& columns,
                  bool with_status);
inline std::string status_name(const PlannedCall& call) { return call.result + "_status"; }

}  // namespace finance::command
