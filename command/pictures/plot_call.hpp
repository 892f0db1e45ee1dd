// A call with a variable, and the range of values that the variable runs through.
//
//  (1) The call is written as for tables (command/tables/call_expression.hpp); the variable is a word in it that is no value.
//  (2) The range is name=first..last, its ends written like values of the argument that the variable stands for.
//  (3) Points are evenly spaced and include both ends. Where the argument is whole they are whole numbers, each once.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/formulas/formula.hpp"
#include "command/tables/call_expression.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

struct Range {
    std::string_view name{};
    std::string_view first{};  // as written
    std::string_view last{};
};

// UsageError.
Range read_range(std::string_view text);

class PlotCall {
public:
    // UsageError. The range's texts must live as long as this.
    PlotCall(std::string_view call, const Range& range);

    [[nodiscard]] const catalogue::Calculation& calculation() const { return *calculation_; }
    // The parameter that the variable stands for, the first of several.
    [[nodiscard]] const catalogue::Parameter& parameter() const;
    [[nodiscard]] std::string_view variable() const { return variable_; }
    [[nodiscard]] bool dated() const { return catalogue::is_dated(parameter().kind); }
    // Whether it takes whole numbers only, which are no days.
    [[nodiscard]] bool counted() const { return whole() && !dated(); }
    // Whether the range was written in percent.
    [[nodiscard]] bool percent() const { return percent_; }
    // What the result was called; empty where it was not.
    [[nodiscard]] const std::string& result_name() const { return calls_.front().result; }

    // The values of the variable, ascending, no more than that many. UsageError.
    [[nodiscard]] std::vector<double> points(std::size_t most) const;
    // The call's arguments with that value in the variable's places.
    [[nodiscard]] std::vector<host::Argument> arguments(double value) const;

private:
    void check_words() const;
    void take_arguments();
    void take_ends(const Range& range);
    [[nodiscard]] bool whole() const;

    std::string variable_;
    std::vector<CallExpression> calls_;  // one; the arguments' texts are its own
    const catalogue::Calculation* calculation_ = nullptr;
    std::vector<host::Argument> constants_;  // whatever in the variable's places
    std::vector<std::size_t> places_;        // of the variable among the arguments
    std::vector<Formula> formulas_;          // by place; where the variable stands alone, of it alone
    std::vector<std::size_t> parameters_;    // by argument
    bool percent_ = false;
    double first_ = 0.0;
    double last_ = 0.0;
};

}  // namespace finance::command
