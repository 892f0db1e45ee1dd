#include "adapters/common/engine_call.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "abi/zelkovan.h"
#include "calls/meant.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::Parameter;

const host::EmbeddedHost& shared_host() {
    static const host::EmbeddedHost host{mcn_main, {}, fnccols};
    return host;
}

// ---- Functions

std::string function_name(const Calculation& calculation) { return way_name(calculation, Way::answer); }

std::string way_name(const Calculation& calculation, Way way) {
    constexpr std::array<const char*, 3> prefixes{"fin_", "fin_try_", "fin_why_"};
    return catalogue::item_of<Way::reason>(prefixes, way) + catalogue::lower_case(calculation.name);
}

std::string way_remark(const Calculation& calculation, Way way) {
    switch (way) {
        case Way::attempt:
            return "As " + function_name(calculation) + ", but NULL where that is an error.";
        case Way::reason:
            return "Why " + function_name(calculation) + " has no value, in a sentence; NULL where it has one.";
        default:
            return {};
    }
}

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

// What a missing value would stand for is of no matter here: it makes the result missing (2).
std::string meaning_in_engines(const Parameter& parameter) {
    if (parameter.kind != catalogue::Kind::basis) return std::string{parameter.meaning};
    return "how days and years are counted";
}

std::string need_in_engines(const Parameter& parameter) {
    return parameter.need == Need::may_be_missing ? "required" : need_words(parameter);
}

std::string parameter_lines(const Parameter& parameter) {
    std::string text = "  " + std::string{parameter.name} + ": " + meaning_in_engines(parameter);
    text = joined(std::move(text), parameter.unit);
    text = joined(std::move(text), rule_words(parameter));
    return joined(std::move(text), need_in_engines(parameter)) + '\n';
}

std::string paragraph(std::string_view title, std::string_view text) {
    if (text.empty()) return {};
    return '\n' + std::string{title} + std::string{text} + '\n';
}

}  // namespace

std::string documentation(const Calculation& calculation) {
    std::string text = usage(calculation) + "\n\n" + std::string{calculation.answers} + ".\n\n";
    for (const Parameter& parameter : calculation.parameters) text += parameter_lines(parameter);
    text += paragraph("", "Where an argument is missing, the result is.");
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

// ---- Calls

namespace {

calls::Answer answer_to(const Calculation& calculation, calls::Arguments arguments,
                        const host::Evaluation& evaluation) {
    return calls::answer_of(shared_host(), calculation, arguments, evaluation);
}

}  // namespace

bool is_refusal(const calls::Answer& answer) {
    if (answer.verdict() != calls::Verdict::refused) return false;
    const Calculation& calculation = answer.calculation();
    const bool at_fault = answer.position() > 0 || !answer.evaluation().log.empty();
    return at_fault || !(calculation.searches || catalogue::list_count(calculation) > 0);
}

std::optional<double> value_of(const calls::Answer& answer, Way way) {
    if (way == Way::answer && is_refusal(answer)) throw calls::CallRefused{answer.named_sentence()};
    return answer.verdict() == calls::Verdict::answered ? std::optional{answer.value()} : std::nullopt;
}

std::optional<double> call(const Calculation& calculation, calls::Arguments arguments, Way way) {
    const host::Evaluation evaluation = calls::evaluate(shared_host(), calculation, arguments);
    return value_of(answer_to(calculation, arguments, evaluation), way);
}

std::string why_no_value(const calls::Answer& answer) {
    return answer.verdict() == calls::Verdict::answered ? std::string{} : answer.named_sentence();
}

std::string why_no_value(const Calculation& calculation, calls::Arguments arguments) {
    const host::Evaluation evaluation = calls::evaluate(shared_host(), calculation, arguments);
    return why_no_value(answer_to(calculation, arguments, evaluation));
}

}  // namespace finance::adapters
