#include "command/help.hpp"

#include <algorithm>
#include <vector>

#include "catalogue/wording.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Parameter;

constexpr std::size_t line_width = 100;
constexpr std::size_t margin = 2;

std::string padded(std::string_view text, std::size_t width) {
    std::string result{text};
    result.resize(std::max(width, text.size()), ' ');
    return result;
}

// ---- The call

std::string call_text(const Calculation& calculation) {
    return "  finance " + catalogue::call_words(calculation) + '\n';
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

std::string argument_text(const Parameter& parameter, std::size_t number, const Columns& columns) {
    constexpr std::size_t gap = 2;
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
    return text + wrapped(about, indent).substr(indent);
}

std::string arguments_text(const Calculation& calculation) {
    const Columns columns = columns_of(calculation);
    std::string text = "\nArguments\n";
    std::size_t number = 0;
    for (const Parameter& parameter : calculation.parameters) text += argument_text(parameter, ++number, columns);
    return text;
}

std::string section(std::string_view title, std::string_view text) {
    if (text.empty()) return {};
    return '\n' + std::string{title} + '\n' + wrapped(text, margin);
}

// continuation: what ends a line that goes on in the next.
std::string wrapped_line(std::string_view line, std::size_t indent, std::string_view continuation = "") {
    const std::size_t width = line_width - indent - continuation.size();
    std::string text;
    while (line.size() > width) {
        const std::size_t blank = line.rfind(' ', width);
        if (blank == std::string_view::npos) break;
        text.append(indent, ' ').append(line.substr(0, blank)).append(continuation) += '\n';
        line.remove_prefix(blank + 1);
    }
    return text + std::string(indent, ' ') + std::string{line} + '\n';
}

// A long call is broken as a shell joins it again.
std::string example_text(const Calculation& calculation) {
    const std::string call =
        "finance " + std::string{calculation.name} + ' ' + std::string{calculation.example.arguments};
    return "\nExample\n" + wrapped_line(call, margin, " \\") + "  " + std::string{calculation.example.result} + '\n';
}

}  // namespace

std::string wrapped(std::string_view text, std::size_t indent) {
    std::string result;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        result += wrapped_line(text.substr(0, end), indent);
        text.remove_prefix(end + 1);
    }
    return result + wrapped_line(text, indent);
}

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

std::string help_text(const Calculation& calculation) {
    return std::string{calculation.name} + ": " + std::string{calculation.answers} + "\n\n" + call_text(calculation) +
           arguments_text(calculation) + section("Formula", calculation.formula) +
           section("Worth knowing", calculation.remarks) + section("When there is no answer", calculation.failure) +
           example_text(calculation);
}

}  // namespace finance::command
