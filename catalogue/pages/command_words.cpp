#include "catalogue/pages/command_words.hpp"

namespace finance::catalogue::pages {

namespace {

std::string option_names(const Word& word) {
    std::string names;
    for (const Option& option : word.options) names.append(" ").append(option.name);
    return names;
}

std::string argument_names(const FixedWord& word) {
    std::string names;
    for (const Parameter& parameter : word.arguments) names.append(" ").append(parameter.name).append("=");
    return names;
}

std::string after_word(const Word& word, const ListForm& form) {
    std::string list;
    if (word.takes == Takes::calculation) list.append(" ").append(form.calculations);
    if (word.takes == Takes::variable) list.append(" ").append(form.variables);
    for (const FixedWord& fixed : word.fixed_words) list.append(" ").append(fixed.word);
    return list + option_names(word);
}

// list: with a blank before each.
std::string branch(const std::string& pattern, const std::string& list, const ListForm& form) {
    if (list.empty()) return {};
    return "        " + pattern + ") " + std::string{form.begin} + list.substr(1) + std::string{form.end} + '\n';
}

void add_once(std::string& names, std::string_view name) {
    if (name.empty() || (' ' + names + ' ').find(' ' + std::string{name} + ' ') != std::string::npos) return;
    names.append(names.empty() ? "" : " ").append(name);
}

}  // namespace

std::string names_of_options(std::span<const Word> words, ValueIs value) {
    std::string names;
    for (const Word& word : words) {
        for (const Option& option : word.options) {
            if (value_of(option) != value) continue;
            add_once(names, option.name);
            add_once(names, option.short_name);
        }
    }
    return names;
}

std::string typed_cases(std::span<const Word> words, const ListForm& form) {
    std::string text;
    for (const Word& word : words) {
        const std::string first{word.word};
        text += branch(first, after_word(word, form), form);
        for (const FixedWord& fixed : word.fixed_words) {
            const std::string pattern = '\'' + first + ' ' + std::string{fixed.word} + '\'';
            text += branch(pattern, argument_names(fixed) + option_names(word), form);
        }
    }
    return text;
}

}  // namespace finance::catalogue::pages
