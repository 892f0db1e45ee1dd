#include "command/formulas/variables.hpp"

#include <algorithm>

#include "catalogue/text.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

bool is_variable_name(std::string_view text) {
    const auto is_letter = [](char c) {
        return (catalogue::upper(c) >= 'A' && catalogue::upper(c) <= 'Z') || c == '_';
    };
    const auto fits = [&](char c) { return is_letter(c) || catalogue::is_digit(c); };
    return !text.empty() && is_letter(text.front()) && std::ranges::all_of(text, fits);
}

const Variable* Variables::find(std::string_view name) const {
    const auto found = names_.alike(name);
    return found ? &all_[found.first] : nullptr;
}

void Variables::set(const Variable& variable) {
    if (const auto found = names_.alike(variable.name)) {
        all_[found.first] = variable;
    } else {
        all_.push_back(variable);
        names_.push_back(variable.name);
    }
}

std::optional<NameMeaning> VariableNames::find(std::string_view name, NameForm /*form*/) const {
    const Variable* variable = variables_ != nullptr ? variables_->find(name) : nullptr;
    if (variable == nullptr) return {};
    return NameMeaning{.constant = variable->value, .dated = variable->dated};
}

std::string VariableNames::unknown(std::string_view name) const {
    return "there is no variable " + in_quotes(name) + near(name);
}

std::string VariableNames::near(std::string_view name) const {
    if (variables_ == nullptr) return {};
    std::vector<std::string_view> known;
    for (const Variable& variable : variables_->all()) known.push_back(variable.name);
    return suggestion(name, known);
}

}  // namespace finance::command
