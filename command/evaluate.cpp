#include "command/evaluate.hpp"

#include <cmath>
#include <string>
#include <vector>

#include "catalogue/number_text.hpp"
#include "command/argument_list.hpp"
#include "command/call_answer.hpp"
#include "command/closest_name.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Given;

std::string result_text(const Calculation& calculation, double value) {
    const bool dated = calculation.result == catalogue::ResultKind::date;
    return catalogue::value_text(value, dated) + '\n';
}

std::string no_answer(const Calculation& calculation) {
    return "finance: " + std::string{calculation.name} + ": no answer: " + std::string{calculation.failure} + '\n';
}

std::string refusal(const Calculation& calculation, std::span<const Given> arguments,
                    const host::Evaluation& evaluation) {
    const std::string head = "finance: " + std::string{calculation.name} + ": ";
    std::string text;
    for (const std::string& line : evaluation.log) text += head + line + '\n';
    if (!text.empty()) return text;
    const int fault = catalogue::argument_at_fault(calculation, arguments, evaluation.flagged);
    if (fault == 0) return no_answer(calculation);
    return head + catalogue::argument_label(calculation, static_cast<std::size_t>(fault), arguments.size()) + ": " +
           catalogue::reason(calculation, arguments, fault) + '\n';
}

}  // namespace

const Calculation& calculation_named(std::string_view name) {
    if (const Calculation* found = catalogue::find(name)) return *found;
    std::vector<std::string_view> names;
    for (const Calculation& calculation : catalogue::calculations()) names.push_back(calculation.name);
    throw UsageError{"no calculation is called '" + std::string{name} + '\'' + suggestion(name, names), "finance list"};
}

Outcome report(const Calculation& calculation, std::span<const Given> arguments, const host::Evaluation& evaluation) {
    if (!evaluation.answered()) return {exit_refused, "", refusal(calculation, arguments, evaluation)};
    // A search that found nothing answers with a missing value and notes it.
    const bool noted = std::isnan(evaluation.value) && !evaluation.notes.empty();
    return {exit_answered, result_text(calculation, evaluation.value), noted ? no_answer(calculation) : ""};
}

Outcome evaluate(const Calculation& calculation, std::span<const std::string_view> tokens, HostOnDemand& host,
                 Report* tell) {
    const std::vector<Given> values = read_arguments(calculation, tokens);
    const std::vector<host::Argument> arguments = [&] {
        std::vector<host::Argument> converted;
        converted.reserve(values.size());
        for (const Given& value : values) converted.push_back(as_argument(value));
        return converted;
    }();
    const host::Evaluation evaluation = host.get().evaluate(calculation.name, arguments);
    Outcome outcome = tell(calculation, values, evaluation);
    if (evaluation.answered()) outcome.value = evaluation.value;
    return outcome;
}

}  // namespace finance::command
