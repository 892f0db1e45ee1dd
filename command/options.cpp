#include "command/options.hpp"

#include <algorithm>
#include <charconv>

#include "command/usage_error.hpp"

namespace finance::command {

namespace {

std::optional<std::size_t> whole_number(std::string_view text) {
    std::size_t number = 0;
    const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc{} || stop != text.data() + text.size()) return {};
    return number;
}

class OptionReader {
public:
    OptionReader(std::span<const Option> options, Words words, const OptionStyle& style)
        : options_{options}, words_{words}, style_{style} {}

    OptionsGiven read() {
        for (; at_ < words_.size() && !(given_.help && style_.help_ends); ++at_) {
            const std::string_view word = words_[at_];
            if (word.starts_with("--") || option_called(word) != nullptr) {
                take(word);
            } else {
                given_.places.push_back(word);
            }
        }
        return std::move(given_);
    }

private:
    void take(std::string_view word) {
        const std::size_t equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const bool has_value = equals != std::string_view::npos;
        const Option* option = option_called(name);
        if (option == nullptr) fail_unknown(word, name);
        if (!option->value.empty()) {
            given_.add(option->name, checked(*option, has_value ? word.substr(equals + 1) : next_word()));
            return;
        }
        if (has_value && !style_.explains) fail_unknown(word, name);
        if (has_value) fail(std::string{name} + " takes no value");
        given_.help |= option == &help_option;
        given_.add(option->name, {});
    }

    [[nodiscard]] const Option* option_called(std::string_view name) const {
        if (is_called(help_option, name)) return &help_option;
        const auto option =
            std::ranges::find_if(options_, [&](const Option& one) { return !one.anywhere && is_called(one, name); });
        return option == options_.end() ? nullptr : &*option;
    }

    std::string_view next_word() { return at_ + 1 < words_.size() ? words_[++at_] : std::string_view{}; }

    [[nodiscard]] std::string_view checked(const Option& option, std::string_view value) const {
        const std::string name{option.name};
        if (value.empty() && style_.explains) fail(name + " needs a value");
        if (option.range.last == 0) return value;
        const auto number = whole_number(value);
        if (number && *number >= option.range.first && *number <= option.range.last) return value;
        fail(name + " is a whole number from " + std::to_string(option.range.first) + " to " +
             std::to_string(option.range.last) + ", not " + in_quotes(value));
    }

    [[noreturn]] void fail_unknown(std::string_view word, std::string_view name) const {
        std::vector<std::string_view> names;
        for (const Option& option : options_) {
            if (!option.anywhere) names.push_back(option.name);
        }
        fail("no option is called " + (style_.explains ? shown(name) + suggestion(name, names) : shown(word)));
    }

    [[noreturn]] void fail(const std::string& message) const {
        throw UsageError{std::string{style_.job} + ": " + message, "finance help " + std::string{style_.job}};
    }

    std::span<const Option> options_;
    Words words_;
    OptionStyle style_;
    OptionsGiven given_{};
    std::size_t at_ = 0;
};

// short_names: room for them, where others of the table have one.
std::string as_typed(const Option& option, bool short_names) {
    std::string text = "  ";
    if (short_names) text += option.short_name.empty() ? "    " : std::string{option.short_name} + ", ";
    return text.append(option.name).append(option.value.empty() ? "" : " ").append(option.value);
}

}  // namespace

std::optional<std::string_view> OptionsGiven::value(std::string_view name) const {
    const std::vector<std::string_view> all = values(name);
    return all.empty() ? std::nullopt : std::optional{all.back()};
}

std::vector<std::string_view> OptionsGiven::values(std::string_view name) const {
    std::vector<std::string_view> values;
    for (const auto& [given, value] : options_) {
        if (given == name) values.push_back(value);
    }
    return values;
}

std::size_t OptionsGiven::number(std::string_view name, std::size_t otherwise) const {
    const auto text = value(name);
    return text ? whole_number(*text).value_or(otherwise) : otherwise;
}

OptionsGiven read_options(std::span<const Option> options, Words words, const OptionStyle& style) {
    return OptionReader{options, words, style}.read();
}

std::string option_lines(std::span<const Option> table) {
    constexpr std::size_t gap = 3;
    const bool short_names = std::ranges::any_of(table, [](const Option& one) { return !one.short_name.empty(); });
    std::size_t column = 0;
    for (const Option& option : table) column = std::max(column, as_typed(option, short_names).size() + gap);
    std::string lines;
    for (const Option& option : table) {
        if (option.help.empty()) continue;
        std::string typed = as_typed(option, short_names);
        typed.resize(column, ' ');
        lines += typed;
        for (const char c : option.help) lines.append(1, c).append(c == '\n' ? column : 0, ' ');
        lines += '\n';
    }
    return lines;
}

}  // namespace finance::command
