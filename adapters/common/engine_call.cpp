#include "adapters/common/engine_call.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "abi/zelkovan.h"
#include "catalogue/diagnosis.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters {

using catalogue::Calculation;
using catalogue::Given;
using catalogue::Need;
using catalogue::Parameter;

const host::EmbeddedHost& shared_host() {
    static const host::EmbeddedHost host{mcn_main};
    return host;
}

// ---- Functions

std::string function_name(const Calculation& calculation) { return "fin_" + lower_case(calculation.name); }

std::size_t fewest_parameters(const Calculation& calculation) {
    return static_cast<std::size_t>(std::ranges::count_if(
        calculation.parameters, [](const Parameter& parameter) { return parameter.need != Need::optional; }));
}

std::string usage(const Calculation& calculation) {
    std::string text = function_name(calculation) + '(';
    std::size_t left_out = 0;
    for (std::size_t i = 0; i < calculation.parameters.size(); ++i) {
        const Parameter& parameter = calculation.parameters[i];
        if (parameter.need == Need::optional) {
            text += i > 0 ? " [, " : "[";
            ++left_out;
        } else if (i > 0) {
            text += ", ";
        }
        text += parameter.name;
    }
    return text.append(left_out, ']').append(")");
}

namespace {

std::string joined(std::string text, std::string_view more) {
    if (more.empty()) return text;
    return text.append(text.empty() ? "" : "; ").append(more);
}

std::string parameter_lines(const Parameter& parameter) {
    std::string text = "  " + std::string{parameter.name} + ": " + std::string{parameter.meaning};
    text = joined(std::move(text), parameter.unit);
    text = joined(std::move(text), rule_words(parameter));
    return joined(std::move(text), need_words(parameter)) + '\n';
}

std::string paragraph(std::string_view title, std::string_view text) {
    if (text.empty()) return {};
    return '\n' + std::string{title} + std::string{text} + '\n';
}

}  // namespace

std::string documentation(const Calculation& calculation) {
    std::string text = usage(calculation) + "\n\n" + std::string{calculation.answers} + ".\n\n";
    for (const Parameter& parameter : calculation.parameters) text += parameter_lines(parameter);
    text += paragraph("Formula:\n", calculation.formula);
    text += paragraph("", calculation.remarks);
    return text + paragraph("No answer: ", calculation.failure);
}

// ---- Arguments

host::Argument basis_argument(std::string_view text) {
    double code = 0.0;
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, code);
    const bool number = error == std::errc{} && stopped == end && !std::isnan(code);
    return number ? host::Argument{code} : host::Argument{text};
}

std::vector<host::Argument> unrolled(const Calculation& calculation, std::span<const host::Argument> scalars,
                                     std::span<const std::span<const double>> lists) {
    std::vector<host::Argument> arguments;
    for (std::size_t i = 0; i < scalars.size(); ++i) {
        if (is_list(calculation.parameters[i].kind)) {
            arguments.insert(arguments.end(), lists[i].begin(), lists[i].end());
        } else {
            arguments.push_back(scalars[i]);
        }
    }
    return arguments;
}

std::string pairing_fault(const Calculation& calculation, std::span<const std::span<const double>> lists) {
    const auto counted = [&](std::size_t i) {
        return std::to_string(lists[i].size()) + ' ' + std::string{calculation.parameters[i].name};
    };
    std::size_t first = lists.size();
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (!is_list(calculation.parameters[i].kind)) continue;
        if (first == lists.size()) first = i;
        if (lists[i].size() != lists[first].size()) {
            return std::string{calculation.name} + ": " + counted(first) + ", but " + counted(i);
        }
    }
    return {};
}

// ---- Calls

namespace {

Given given(const host::Argument& argument) {
    if (argument.kind() == host::Argument::Kind::number) return argument.number();
    if (argument.kind() == host::Argument::Kind::text) return argument.text();
    return std::monostate{};
}

}  // namespace

std::string refusal(const Calculation& calculation, std::span<const host::Argument> arguments, int flagged) {
    std::vector<Given> values(arguments.size());
    std::ranges::transform(arguments, values.begin(), given);
    const int fault = argument_at_fault(calculation, values, flagged);
    std::string sentence{calculation.name};
    if (fault == 0) return sentence.append(": no answer: ").append(calculation.failure);
    sentence.append(": ").append(argument_label(calculation, static_cast<std::size_t>(fault), values.size()));
    return sentence.append(": ").append(reason(calculation, values, fault));
}

Answer call(const Calculation& calculation, std::span<const host::Argument> arguments) {
    const host::Evaluation evaluation = shared_host().evaluate(calculation.name, arguments);
    if (evaluation.answered()) {
        if (std::isnan(evaluation.value)) return {.verdict = Verdict::missing};
        return {.verdict = Verdict::answered, .value = evaluation.value};
    }
    if (!evaluation.log.empty()) {
        return {.refusal = std::string{calculation.name} + ": " + evaluation.log.front()};
    }
    return {.refusal = refusal(calculation, arguments, evaluation.flagged)};
}

}  // namespace finance::adapters
