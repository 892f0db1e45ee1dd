#include <string_view>

#include "catalogue/pages/pages.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::catalogue::pages {

namespace {

constexpr std::string_view made_from = "<!-- Made from the catalogue by scripts/refresh-pages. -->\n\n";

// Text that Markdown shows as it stands, in a table too.
std::string plain(std::string_view text) {
    constexpr std::string_view special = "\\*_<>|`[]~#";
    std::string result;
    for (const char c : text) {
        if (special.find(c) != std::string_view::npos) result += '\\';
        result += c;
    }
    return result;
}

std::string block(std::string_view text) { return "```text\n" + std::string{text} + "\n```\n"; }

std::string heading(std::string_view title) { return "\n## " + std::string{title} + "\n\n"; }

std::string section(std::string_view title, std::string_view text) {
    return text.empty() ? "" : heading(title) + plain(text) + '\n';
}

// The anchor that a heading gets: small letters, blanks as hyphens, nothing but letters and digits beside.
std::string anchor(std::string_view title) {
    std::string result;
    for (const char c : title) {
        const char small = lower(c);
        const bool kept = (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9') || small == '-';
        if (kept) result += small;
        if (small == ' ') result += '-';
    }
    return result;
}

void add_cell(std::string& row, std::string_view text) { row.append(text.empty() ? "" : " ").append(text) += " |"; }

std::string joined(std::string first, std::string_view second) {
    if (second.empty()) return first;
    return first.append(first.empty() ? "" : "; ").append(second);
}

std::string argument_row(const Parameter& parameter, std::size_t number) {
    const std::string rule = joined(rule_words(parameter), spelling_words(parameter.kind));
    std::string row = "|";
    add_cell(row, std::to_string(number));
    add_cell(row, '`' + std::string{parameter.name} + '`');
    add_cell(row, kind_words(parameter.kind));
    add_cell(row, plain(parameter.unit));
    add_cell(row, plain(need_words(parameter)));
    add_cell(row, plain(parameter.meaning));
    add_cell(row, plain(rule));
    return row + '\n';
}

std::string arguments_table(const Calculation& calculation) {
    std::string text =
        "| | name | kind | unit | default | what it is | rule |\n"
        "|---|---|---|---|---|---|---|\n";
    std::size_t number = 0;
    for (const Parameter& parameter : calculation.parameters) text += argument_row(parameter, ++number);
    return text;
}

std::string example(const Calculation& calculation) {
    return block("$ finance " + std::string{calculation.name} + ' ' + std::string{calculation.example.arguments} +
                 '\n' + std::string{calculation.example.result});
}

std::string index_of(const Family& family) {
    std::string text = heading(family.title) + "| | answers |\n|---|---|\n";
    for (const Calculation& calculation : family.calculations) {
        text += "| [" + std::string{calculation.name} + "](" + reference_file(calculation) + ") | " +
                plain(calculation.answers) + " |\n";
    }
    return text;
}

}  // namespace

std::string reference_file(const Calculation& calculation) { return std::string{calculation.name} + ".md"; }

std::string reference_page(const Calculation& calculation, const Family& family) {
    return std::string{made_from} + "# " + std::string{calculation.name} + "\n\n" + plain(calculation.answers) +
           ".\n\nFamily: [" + std::string{family.title} + "](README.md#" + anchor(family.title) +
           "). Result: " + std::string{result_words(calculation.result)} + ".\n" + heading("Call") +
           block("finance " + call_words(calculation)) + heading("Arguments") + arguments_table(calculation) +
           heading("Formula") + block(calculation.formula) + section("Worth knowing", calculation.remarks) +
           section("When there is no answer", calculation.failure) + heading("Example") + example(calculation);
}

std::string reference_index(std::span<const Family> families) {
    std::string text = std::string{made_from} +
                       "# Calculations\n\n"
                       "Each is one call of the command `finance`, arguments in order or by name, and one of the "
                       "module's function: `finance help NAME` shows the same as its page here.\n";
    for (const Family& family : families) text += index_of(family);
    return text;
}

}  // namespace finance::catalogue::pages
