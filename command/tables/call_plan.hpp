// Calls whose columns have been found: where each argument of each call comes from.
//
//  (1) A word is a value where it begins like a number and can be read as its argument's kind of value, or is a single
//      dot; else it is a column, and where there is none, a value after all if it is a keyword (ACTUAL, inf).
//  (2) What is read of a row is read once, however many arguments want it.
//  (3) A result is called as was said, else as its calculation, in lower case; where that is the name of a column
//      already, a number is added.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/tables/call_expression.hpp"
#include "command/tables/field_form.hpp"
#include "command/tables/table_format.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

inline constexpr std::size_t no_input = static_cast<std::size_t>(-1);

// A column read as one kind of value.
struct Input {
    std::size_t column = 0;
    catalogue::Kind kind{};
    friend bool operator==(const Input&, const Input&) = default;
};

struct PlannedArgument {
    std::size_t parameter = 0;
    std::size_t input = no_input;  // index of the plan's inputs; none: a constant
    host::Argument constant = host::Argument::absent();
};

struct PlannedCall {
    const catalogue::Calculation* calculation = nullptr;
    std::string result{};
    std::vector<PlannedArgument> arguments{};
};

struct CallPlan {
    std::vector<PlannedCall> calls{};
    std::vector<Input> inputs{};
    std::size_t columns = 0;       // that the table has
    std::size_t used_columns = 0;  // up to the last one that is read
    FieldForm fields{};            // how they are read
};

// Constants are views into the calls: they must live as long as the plan. UsageError.
CallPlan plan_calls(const std::vector<CallExpression>& calls, const Header& header);

// "p", "p_status"; taken: names that are columns already, to which the results' are added.
void name_results(CallPlan& plan, const std::vector<CallExpression>& calls, std::vector<std::string> taken,
                  bool with_status);
inline std::string status_name(const PlannedCall& call) { return call.result + "_status"; }

}  // namespace finance::command
