#include "command/call_answer.hpp"

#include <cmath>

#include "catalogue/number_text.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Given;

int at_fault(const Calculation& calculation, std::span<const Given> arguments, const host::Evaluation& evaluation) {
    return catalogue::argument_at_fault(calculation, arguments, evaluation.flagged);
}

bool has_no_value(const Given& given) {
    const double* number = std::get_if<double>(&given);
    return std::holds_alternative<std::monostate>(given) || (number != nullptr && std::isnan(*number));
}

}  // namespace

host::Argument as_argument(const Given& given) {
    if (const double* number = std::get_if<double>(&given)) {
        return std::isnan(*number) ? host::Argument::missing() : host::Argument{*number};
    }
    if (const auto* text = std::get_if<std::string_view>(&given)) return host::Argument{*text};
    return host::Argument::absent();
}

std::vector<Given> as_given(std::span<const host::Argument> arguments) {
    std::vector<Given> given;
    given.reserve(arguments.size());
    for (const host::Argument& argument : arguments) {
        Given& value = given.emplace_back();
        if (argument.kind() == host::Argument::Kind::number) value = argument.number();
        if (argument.kind() == host::Argument::Kind::text) value = argument.text();
    }
    return given;
}

Verdict verdict_of(const Calculation& calculation, std::span<const host::Argument> arguments,
                   const host::Evaluation& evaluation) {
    if (evaluation.answered()) return std::isnan(evaluation.value) ? Verdict::missing : Verdict::answered;
    const std::vector<Given> given = as_given(arguments);
    const auto fault = static_cast<std::size_t>(at_fault(calculation, given, evaluation));
    const bool missing = fault > 0 && fault <= given.size() && has_no_value(given[fault - 1]);
    return missing ? Verdict::missing : Verdict::refused;
}

std::string why(const Calculation& calculation, std::span<const host::Argument> arguments,
                const host::Evaluation& evaluation) {
    if (evaluation.answered()) {
        if (!std::isnan(evaluation.value)) return {};
        const std::string none = "the answer is a missing value";
        return evaluation.notes.empty() ? none : "no answer: " + std::string{calculation.failure};
    }
    if (!evaluation.log.empty()) return evaluation.log.front();
    const std::vector<Given> given = as_given(arguments);
    const int fault = at_fault(calculation, given, evaluation);
    if (fault == 0) return "no answer: " + std::string{calculation.failure};
    return catalogue::argument_label(calculation, static_cast<std::size_t>(fault), given.size()) + ": " +
           catalogue::reason(calculation, given, fault);
}

void append_value(std::string& output, const Calculation& calculation, double value) {
    if (calculation.result == catalogue::ResultKind::date) {
        output += catalogue::value_text(value, true);
        return;
    }
    catalogue::append_plain(output, value);
}

}  // namespace finance::command
