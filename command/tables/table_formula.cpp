#include "command/tables/table_formula.hpp"

#include <algorithm>
#include <utility>

#include "catalogue/text.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

// Columns and results are numbered in turn.
NameMeaning column_meaning(std::size_t column) { return {.number = 2 * column}; }
NameMeaning result_meaning(std::size_t result) { return {.number = 2 * result + 1}; }
bool is_result(std::size_t number) { return number % 2 == 1; }

}  // namespace

std::optional<NameMeaning> TableNames::find(std::string_view name, NameForm form) const {
    if (const auto column = header_.exact(name)) return column_meaning(*column);
    if (form == NameForm::quoted_or_text) return {};
    if (const auto result = results_.exact(name)) return result_meaning(result.first);
    const auto kind = form == NameForm::word ? Operand::Kind::word : Operand::Kind::column;
    if (const auto column = header_.find({.kind = kind, .text = std::string{name}})) return column_meaning(*column);
    if (const auto alike = results_.alike(name)) return result_meaning(alike.first);
    return variables_.find(name, form);
}

// "coupon rate" without its marks begins with a name that nobody knows.
std::string TableNames::unknown(std::string_view name) const {
    const auto goes_on = [&](const std::string& column) {
        return column.starts_with(name) && column.find_first_of(" +-*/^(),<>=", name.size()) == name.size();
    };
    const auto longer = std::ranges::find_if(header_.names, goes_on);
    if (longer != header_.names.end()) {
        return header_.source + " has no column " + in_quotes(name) + " (\"" + shown(*longer) +
               "\" needs its quotation marks)";
    }
    try {
        (void)header_.column({.kind = Operand::Kind::column, .text = std::string{name}});
        return {};
    } catch (const UsageError& error) {
        return error.what();
    }
}

TableFormula TableNames::with_sources(Formula formula) {
    TableFormula made{.formula = std::move(formula)};
    for (const std::size_t number : made.formula.numbers()) {
        made.numbers.push_back({.result = is_result(number), .index = number / 2});
    }
    for (const std::size_t number : made.formula.texts()) made.texts.push_back(number / 2);
    return made;
}

}  // namespace finance::command
