#include "command/prompt/completion.hpp"

#include <algorithm>
#include <span>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/jobs.hpp"
#include "command/prompt/prompt.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Kind;
using Texts = std::vector<std::string>;

bool begins_with(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && catalogue::same_name(text.substr(0, beginning.size()), beginning);
}

// Those of the candidates that begin as typed, ascending.
Texts matching(Texts candidates, std::string_view typed) {
    std::erase_if(candidates, [&](const std::string& candidate) { return !begins_with(candidate, typed); });
    std::ranges::sort(candidates);
    return candidates;
}

Texts calculation_names() {
    Texts names;
    for (const Calculation& calculation : catalogue::calculations()) names.emplace_back(calculation.name);
    return names;
}

// What there is help on, each behind the mark.
Texts helped_names(std::string_view mark) {
    Texts names = calculation_names();
    for (const Job& job : jobs()) {
        if (job.help != nullptr) names.emplace_back(job.word);
    }
    for (std::string& name : names) name.insert(0, mark);
    return names;
}

Texts first_words() {
    Texts words = calculation_names();
    for (const Job& job : jobs()) words.emplace_back(job.word);
    words.emplace_back(variables_word);
    words.emplace_back(quit_word);
    return words;
}

// ---- Arguments

// Values in order fill the parameters before a list; whatever follows them belongs to the list or to what is behind it.
std::vector<bool> filled(const Calculation& calculation, std::span<const std::string> arguments) {
    std::vector<bool> result(calculation.parameters.size(), false);
    std::size_t next = 0;
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        const bool named = equals != std::string::npos;
        const std::size_t i = named ? catalogue::find_parameter(calculation, argument.substr(0, equals)) : next;
        if (i == result.size() || is_list(calculation.parameters[i].kind)) continue;
        result[i] = true;
        if (!named) ++next;
    }
    return result;
}

Texts argument_names(const Calculation& calculation, std::span<const std::string> arguments) {
    const std::vector<bool> has_value = filled(calculation, arguments);
    Texts names;
    for (std::size_t i = 0; i < has_value.size(); ++i) {
        if (!has_value[i]) names.push_back(std::string{calculation.parameters[i].name} + '=');
    }
    return names;
}

Texts argument_values(const Calculation& calculation, std::string_view name) {
    const std::size_t i = catalogue::find_parameter(calculation, name);
    Texts values;
    if (i == calculation.parameters.size() || calculation.parameters[i].kind != Kind::basis) return values;
    for (const std::string_view keyword : catalogue::basis_keywords) {
        values.push_back(std::string{calculation.parameters[i].name} + '=' + std::string{keyword});
    }
    return values;
}

Texts arguments(const Calculation& calculation, const TypedLine& line) {
    const std::size_t equals = line.last.find('=');
    if (equals != std::string_view::npos) {
        return matching(argument_values(calculation, line.last.substr(0, equals)), line.last);
    }
    return matching(argument_names(calculation, std::span{line.words}.subspan(1)), line.last);
}

}  // namespace

std::optional<Texts> completions(std::string_view line) {
    const TypedLine typed = split_at_cursor(line);
    if (typed.words.empty()) {
        const bool asks = typed.last.starts_with(help_mark);
        return matching(asks ? helped_names(help_mark) : first_words(), typed.last);
    }
    const std::string& first = typed.words.front();
    const bool only = typed.words.size() == 1;
    if (first == help_mark || first == "help") return only ? matching(helped_names({}), typed.last) : Texts{};
    if (const Calculation* calculation = catalogue::find(first)) return arguments(*calculation, typed);
    if (first == "list" || std::ranges::find(jobs(), first, &Job::word) == jobs().end()) return Texts{};
    return {};
}

std::string common_beginning(const Texts& texts) {
    std::string_view common = texts.front();
    for (const std::string& text : texts) {
        const auto [end, other] = std::ranges::mismatch(common, text);
        common = common.substr(0, static_cast<std::size_t>(end - common.begin()));
    }
    return std::string{common};
}

}  // namespace finance::command
