#include "command/argument_list.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

#include "calls/counts.hpp"
#include "calls/diagnosis.hpp"
#include "calls/lists.hpp"
#include "command/formulas/written_value.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::Parameter;

using Tokens = std::span<const std::string_view>;

// position: of the argument at fault in the call; 0 unknown.
[[noreturn]] void fail(const Calculation& calculation, const std::string& message, std::size_t position = 0,
                       std::string_view argument = "") {
    const std::string name{calculation.name};
    throw UsageError{name + ": " + message, "finance help " + name, {name, position, std::string{argument}}};
}

// Those that stand in no bracket.
std::vector<std::string_view> split_at_commas(std::string_view text) {
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    int nested = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        nested += text[i] == '(' ? 1 : text[i] == ')' ? -1 : 0;
        if (text[i] != ',' || nested > 0) continue;
        parts.push_back(text.substr(begin, i - begin));
        begin = i + 1;
    }
    parts.push_back(text.substr(begin));
    return parts;
}

bool has_comma(std::string_view token) { return split_at_commas(token).size() > 1; }

// ---- What each parameter was given

class Assignment {
public:
    explicit Assignment(const Calculation& calculation)
        : calculation_{calculation}, texts_(calculation.parameters.size()), named_(texts_.size(), false) {}

    void take_named(Tokens tokens);
    void take_positional(Tokens tokens);
    [[nodiscard]] std::vector<PlacedText> placed() const;

private:
    void name(std::string_view token);
    void give(std::size_t i, std::string_view text);
    void give_lists(Tokens tokens);
    void give_two_lists(Tokens tokens);
    [[nodiscard]] std::vector<std::size_t> unnamed(std::size_t from, std::size_t to) const;
    [[nodiscard]] std::size_t end_of_call() const;
    void check_completeness(std::size_t end) const;
    void check_pairs() const;
    void append(std::vector<PlacedText>& placed, std::size_t i) const;
    [[nodiscard]] const Parameter& parameter(std::size_t i) const { return calculation_.parameters[i]; }
    [[nodiscard]] bool list(std::size_t i) const { return is_list(parameter(i).kind); }

    const Calculation& calculation_;
    std::vector<std::vector<std::string_view>> texts_;  // by parameter; more than one in lists only
    std::vector<bool> named_;
};

void Assignment::give(std::size_t i, std::string_view text) {
    if (!list(i)) {
        texts_[i].push_back(text);
        return;
    }
    for (const std::string_view part : split_at_commas(text)) texts_[i].push_back(part);
}

// -- named

void Assignment::take_named(Tokens tokens) {
    for (const std::string_view token : tokens) name(token);
}

void Assignment::name(std::string_view token) {
    const std::size_t equals = token.find('=');
    const std::string_view name = token.substr(0, equals);
    const std::string_view text = token.substr(equals + 1);
    const std::size_t i = catalogue::find_parameter(calculation_, name);
    if (i == texts_.size()) {
        std::vector<std::string_view> names;
        for (const Parameter& known : calculation_.parameters) names.push_back(known.name);
        fail(calculation_, "no argument is called " + in_quotes(name) + suggestion(name, names));
    }
    if (named_[i] && !list(i)) fail(calculation_, std::string{parameter(i).name} + " is given twice");
    named_[i] = true;
    if (text.empty() && list(i)) return;
    give(i, text);
}

// -- in order

std::vector<std::size_t> Assignment::unnamed(std::size_t from, std::size_t to) const {
    std::vector<std::size_t> result;
    for (std::size_t i = from; i < to; ++i) {
        if (!named_[i]) result.push_back(i);
    }
    return result;
}

// Parameters before a list take from the front, required ones after it from the back, lists what is in between.
void Assignment::take_positional(Tokens tokens) {
    const std::size_t size = texts_.size();
    std::size_t list_begin = 0;
    while (list_begin < size && !list(list_begin)) ++list_begin;
    const std::size_t before = std::min(list_begin, tokens.size());
    for (std::size_t i = 0; i < before; ++i) {
        if (named_[i]) fail(calculation_, std::string{parameter(i).name} + " is given twice");
        give(i, tokens[i]);
    }
    tokens = tokens.subspan(before);
    std::vector<std::size_t> after = unnamed(list_begin, size);
    std::erase_if(after, [&](std::size_t i) { return list(i) || parameter(i).need == Need::optional; });
    if (tokens.size() > after.size()) {
        const Tokens last = tokens.last(after.size());
        for (std::size_t k = 0; k < after.size(); ++k) give(after[k], last[k]);
        tokens = tokens.first(tokens.size() - after.size());
    }
    if (!tokens.empty()) give_lists(tokens);
}

void Assignment::give_lists(Tokens tokens) {
    std::vector<std::size_t> lists = unnamed(0, texts_.size());
    std::erase_if(lists, [&](std::size_t i) { return !list(i); });
    if (lists.empty()) fail(calculation_, calls::too_many_words(tokens.front()));
    if (lists.size() == 2) {
        give_two_lists(tokens);
        return;
    }
    for (const std::string_view token : tokens) give(lists.front(), token);
}

void Assignment::give_two_lists(Tokens tokens) {
    std::size_t first = 0;
    while (!list(first)) ++first;
    const std::size_t last = texts_.size() - 1;
    if (tokens.size() % 2 == 1 && !list(last) && parameter(last).need == Need::optional && !named_[last]) {
        give(last, tokens.back());
        tokens = tokens.first(tokens.size() - 1);
    }
    const std::string names = calls::names_of_two(parameter(first), parameter(first + 1));
    if (std::ranges::any_of(tokens, has_comma) && tokens.size() != 2) {
        fail(calculation_, names + " are two arguments where they are separated by commas");
    }
    if (tokens.size() % 2 == 1) fail(calculation_, calls::unpaired_words(names));
    const std::size_t half = tokens.size() / 2;
    for (const std::string_view token : tokens.first(half)) give(first, token);
    for (const std::string_view token : tokens.last(half)) give(first + 1, token);
}

// -- into a call

// One past the last parameter that is part of the call.
std::size_t Assignment::end_of_call() const {
    for (std::size_t end = texts_.size(); end > 0; --end) {
        const auto& texts = texts_[end - 1];
        const bool has_value = std::ranges::any_of(texts, [](std::string_view text) { return !text.empty(); });
        if (has_value || (!texts.empty() && parameter(end - 1).need == Need::required)) return end;
    }
    return 0;
}

// Whatever is needed has a place in the call; a list that is needed has a value.
void Assignment::check_completeness(std::size_t end) const {
    std::string lacking;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const bool empty_list = list(i) && texts_[i].empty();
        if (parameter(i).need == Need::optional || (i < end && !empty_list)) continue;
        lacking.append(lacking.empty() ? "" : ", ").append(parameter(i).name);
    }
    if (!lacking.empty()) fail(calculation_, calls::too_few_words(lacking));
}

void Assignment::check_pairs() const {
    const auto size = [this](std::size_t i) { return texts_[i].size(); };
    const auto as_it_is = [](std::string_view name) { return std::string{name}; };
    const auto lists = calls::unpaired(calculation_, texts_.size(), size);
    if (lists) fail(calculation_, calls::pairing_words(*lists, as_it_is));
}

void Assignment::append(std::vector<PlacedText>& placed, std::size_t i) const {
    if (!list(i) && texts_[i].empty()) placed.push_back({.parameter = i});
    for (const std::string_view text : texts_[i]) placed.push_back({.parameter = i, .text = text});
}

std::vector<PlacedText> Assignment::placed() const {
    const std::size_t end = end_of_call();
    check_completeness(end);
    check_pairs();
    std::vector<PlacedText> placed;
    for (std::size_t i = 0; i < end; ++i) append(placed, i);
    return placed;
}

bool is_named(std::string_view token) { return token.find('=') != std::string_view::npos; }

}  // namespace

std::vector<PlacedText> place_arguments(const Calculation& calculation, Tokens tokens) {
    const auto first_named = std::ranges::find_if(tokens, is_named);
    const auto stray = std::ranges::find_if_not(first_named, tokens.end(), is_named);
    if (stray != tokens.end()) {
        fail(calculation, in_quotes(*stray) + " follows a named argument and needs a name as well");
    }
    const auto positional = static_cast<std::size_t>(first_named - tokens.begin());
    Assignment assignment{calculation};
    assignment.take_named(tokens.subspan(positional));
    assignment.take_positional(tokens.first(positional));
    return assignment.placed();
}

std::vector<host::Argument> read_arguments(const Calculation& calculation, Tokens tokens, const Variables* variables) {
    std::vector<host::Argument> values;
    const std::vector<PlacedText> texts = place_arguments(calculation, tokens);
    for (const PlacedText& placed : texts) {
        const Parameter& parameter = calculation.parameters[placed.parameter];
        try {
            values.push_back(read_written(parameter.kind, placed.text, variables));
        } catch (const FormulaError& error) {
            const std::size_t position = values.size() + 1;
            fail(calculation, calls::argument_label(calculation, position, texts.size()) + ": " + error.what(),
                 position, parameter.name);
        }
    }
    return values;
}

}  // namespace finance::command
