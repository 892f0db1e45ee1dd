#include "command/evaluate.hpp"

#include <string>
#include <vector>

#include "calls/meant.hpp"
#include "command/json_report.hpp"
#include "command/number_form.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

using catalogue::Calculation;

const Calculation& calculation_named(std::string_view name) {
    if (const Calculation* found = catalogue::find(name)) return *found;
    std::vector<std::string_view> names;
    for (const Calculation& calculation : catalogue::calculations()) names.push_back(calculation.name);
    throw UsageError{"no calculation is called " + in_quotes(name) + suggestion(name, names), "finance list"};
}

Outcome report(const calls::Answer& answer) {
    Outcome outcome{.exit_status = exit_status_of(answer)};
    if (answer.evaluation().answered() && answer.verdict() != calls::Verdict::too_large) {
        append_value(outcome.output, answer.calculation(), answer.value());
        outcome.output += '\n';
    }
    for (const std::string& line : lines_of(answer)) outcome.error += "finance: " + line + '\n';
    if (const std::string remedy = answer.remedy(); !remedy.empty()) outcome.error += "  finance " + remedy + '\n';
    return outcome;
}

Outcome evaluate(const Calculation& calculation, std::span<const host::Argument> arguments, const Settings& settings) {
    const host::EmbeddedHost& host = settings.host.get();
    const host::Evaluation evaluation = calls::evaluate(host, calculation, arguments);
    const calls::Answer answer = calls::answer_of(host, calculation, arguments, evaluation);
    Outcome outcome = settings.json ? json_report(answer) : report(answer);
    if (outcome.exit_status == exit_answered) outcome.value = evaluation.value;
    outcome.dated = calculation.result == catalogue::ResultKind::date;
    return outcome;
}

}  // namespace finance::command
