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
    const auto same = [&](const Variable& variable) { return catalogue::same_name(variable.name, name); };
    const auto found = std::ranges::find_if(all_, same);
    return found != all_.end() ? &*found : nullptr;
}

void Variables::set(const Variable& variable) {
    const auto same = [&](const Variable& known) { return catalogue::same_name(known.name, variable.name); };
    const auto found = std::ranges::find_if(all_, same);
    if (found != all_.end()) {
        *found = variable;
    } else {
        all_.push_back(variable);
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
