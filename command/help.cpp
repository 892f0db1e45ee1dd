#include "command/help.hpp"

#include <algorithm>
#include <vector>

#include "catalogue/wording.hpp"
#include "command/text_layout.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Parameter;

constexpr std::size_t margin = 2;

std::string padded(std::string_view text, std::size_t width) {
    std::string result{text};
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

// ---- The call

std::string call_text(const Calculation& calculation, std::size_t width) {
    return wrapped_call("finance " + catalogue::call_words(calculation), width);
}

// ---- Arguments, one line each and what else is to be known of it indented below

struct Columns {
    std::size_t name = 0, kind = 0, need = 0;
};

Columns columns_of(const Calculation& calculation) {
    Columns widest;
    for (const Parameter& parameter : calculation.parameters) {
        widest.name = std::max(widest.name, parameter.name.size());
        widest.kind = std::max(widest.kind, catalogue::kind_words(parameter.kind).size());
        widest.need = std::max(widest.need, catalogue::need_words(parameter).size());
    }
    return widest;
}

std::string argument_text(const Parameter& parameter, std::size_t number, const Columns& columns, std::size_t width) {
    constexpr std::size_t gap = 2, least_room = 24;
    std::string text = padded("", margin) + padded(std::to_string(number), 1 + gap) +
                       padded(parameter.name, columns.name + gap) +
                       padded(catalogue::kind_words(parameter.kind), columns.kind + gap) +
                       padded(catalogue::need_words(parameter), columns.need + gap);
    const std::size_t indent = text.size();
    std::string about{parameter.meaning};
    if (!parameter.unit.empty()) about.append("\nunit: ").append(parameter.unit);
    if (const std::string spelling = catalogue::spelling_words(parameter.kind); !spelling.empty())
        about += '\n' + spelling;
    if (const std::string rule = catalogue::rule_words(parameter); !rule.empty()) about.append("\n").append(rule);
    if (indent + least_room > width)
        return text.substr(0, text.find_last_not_of(' ') + 1) + '\n' + wrapped(about, margin + 1 + gap, width);
    return text + wrapped(about, indent, width).substr(indent);
}

std::string arguments_text(const Calculation& calculation, std::size_t width) {
    const Columns columns = columns_of(calculation);
    std::string text = "\nArguments\n";
    std::size_t number = 0;
    for (const Parameter& parameter : calculation.parameters)
        text += argument_text(parameter, ++number, columns, width);
    return text;
}

std::string section(std::string_view title, std::string_view text, std::size_t width) {
    if (text.empty()) return {};
    return '\n' + std::string{title} + '\n' + wrapped(text, margin, width);
}

// A long call is broken as a shell joins it again.
std::string example_text(const Calculation& calculation, std::size_t width) {
    const std::string call =
        "finance " + std::string{calculation.name} + ' ' + std::string{calculation.example.arguments};
    return "\nExample\n" + wrapped_call(call, width) + "  " + std::string{calculation.example.result} + '\n';
}

}  // namespace

std::string list_text(std::span<const catalogue::Family> families) {
    std::size_t widest = 0;
    for (const catalogue::Family& family : families) {
        for (const Calculation& calculation : family.calculations) {
            widest = std::max(widest, calculation.name.size());
        }
    }
    std::string text;
    for (const catalogue::Family& family : families) {
        text.append(text.empty() ? "" : "\n").append(family.title).append("\n");
        for (const Calculation& calculation : family.calculations) {
            text += "  " + padded(calculation.name, widest + 2) + std::string{calculation.answers} + '\n';
        }
    }
    return text;
}

std::string help_text(const Calculation& calculation, std::size_t width) {
    return wrapped(std::string{calculation.name} + ": " + std::string{calculation.answers}, 0, width) + '\n' +
           call_text(calculation, width) + arguments_text(calculation, width) +
           section("Formula", calculation.formula, width) + section("Worth knowing", calculation.remarks, width) +
           section("When there is no answer", calculation.failure, width) + example_text(calculation, width);
}

}  // namespace finance::command
