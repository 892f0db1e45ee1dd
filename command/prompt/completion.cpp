#include "command/prompt/completion.hpp"

#include <algorithm>
#include <exception>
#include <span>
#include <utility>

#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"
#include "command/files/descriptors.hpp"
#include "command/jobs.hpp"
#include "command/options.hpp"
#include "command/prompt/prompt.hpp"
#include "command/tables/open_table.hpp"
#include "command/tables/table_options.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Kind;
using Texts = std::vector<std::string>;

bool begins_with(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() && catalogue::same_name(text.substr(0, beginning.size()), beginning);
}

// Those of the candidates that begin as typed, in their order.
Texts in_order(Texts candidates, std::string_view typed) {
    std::erase_if(candidates, [&](const std::string& candidate) { return !begins_with(candidate, typed); });
    return candidates;
}

Texts ascending(Texts candidates, std::string_view typed) {
    candidates = in_order(std::move(candidates), typed);
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
        return in_order(argument_values(calculation, line.last.substr(0, equals)), line.last);
    }
    return in_order(argument_names(calculation, std::span{line.words}.subspan(1)), line.last);
}

// ---- What follows a job

// The columns of the first word that is a table, but for those that only quotation marks could name, and those that are
// not shown as they are.
Texts columns_in(std::span<const std::string> words) {
    for (const std::string& word : words) {
        if (!is_file(word)) continue;
        try {
            Texts names = OpenTable{TableOptions{.input = word}}.header().names;
            std::erase_if(names, [](const std::string& name) {
                return name.find_first_of(" \t'\",") != std::string::npos || catalogue::shown(name) != name;
            });
            return names;
        } catch (const std::exception&) {
            continue;  // no table
        }
    }
    return {};
}

// Behind a comma the next one.
Texts columns(const TypedLine& line) {
    const std::string before{line.last.substr(0, line.last.rfind(',') + 1)};  // npos + 1 is 0
    Texts names = columns_in(std::span{line.words}.subspan(1));
    for (std::string& name : names) name.insert(0, before);
    return in_order(std::move(names), line.last);
}

Texts option_names(const Job& job) {
    Texts names;
    for (const Option& option : job.options) names.emplace_back(option.name);
    return names;
}

// loan or depreciation, and then the arguments without a value.
Texts fixed_words(const Job& job, const TypedLine& line) {
    Texts words;
    const auto given = [&](std::string_view word) {
        return std::ranges::any_of(line.words, [&](const std::string& one) { return one.starts_with(word); });
    };
    for (const FixedWord& fixed : job.fixed_words) {
        if (line.words.size() == 1) words.emplace_back(fixed.word);
        if (line.words.size() == 1 || line.words[1] != fixed.word) continue;
        for (const catalogue::Parameter& parameter : fixed.arguments) {
            const std::string name = std::string{parameter.name} + '=';
            if (!given(name)) words.push_back(name);
        }
    }
    return in_order(std::move(words), line.last);
}

// Nothing where a file may be named.
std::optional<Texts> after_job(const Job& job, const TypedLine& line) {
    if (job.options.empty()) return Texts{};
    for (const Option& option : job.options) {
        if (!is_called(option, line.words.back())) continue;
        const auto value = catalogue::pages::value_of(option);
        if (value == catalogue::pages::ValueIs::file) return {};
        if (value == catalogue::pages::ValueIs::columns) return columns(line);
        if (value == catalogue::pages::ValueIs::other) return Texts{};
    }
    if (line.last.starts_with('-')) return in_order(option_names(job), line.last);
    if (!job.fixed_words.empty()) return fixed_words(job, line);
    return {};
}

}  // namespace

std::optional<Texts> completions(std::string_view line) {
    const TypedLine typed = split_at_cursor(line);
    if (typed.words.empty()) {
        const bool asks = typed.last.starts_with(help_mark);
        return ascending(asks ? helped_names(help_mark) : first_words(), typed.last);
    }
    const std::string& first = typed.words.front();
    const bool only = typed.words.size() == 1;
    if (first == help_mark || first == "help") return only ? ascending(helped_names({}), typed.last) : Texts{};
    if (const Calculation* calculation = catalogue::find(first)) return arguments(*calculation, typed);
    const auto job = std::ranges::find(jobs(), first, &Job::word);
    return job == jobs().end() ? Texts{} : after_job(*job, typed);
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
