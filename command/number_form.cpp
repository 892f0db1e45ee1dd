#include "command/number_form.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "catalogue/text.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

std::string rounded_text(double value, int decimals) {
    constexpr double widest = 1e15;
    if (!(std::abs(value) < widest)) return catalogue::plain_text(value);
    std::array<char, 48> buffer;  // sign, 15 digits, point, 17 decimals
    char* const end = buffer.data() + buffer.size();
    const std::string text{buffer.data(),
                           std::to_chars(buffer.data(), end, value, std::chars_format::fixed, decimals).ptr};
    const bool zero = text.find_first_not_of("-0.") == std::string::npos;
    return zero && text.front() == '-' ? text.substr(1) : text;
}

double rounded(double value, int decimals) {
    const std::string text = rounded_text(value, decimals);
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

int read_digits(std::string_view text) {
    int digits = -1;
    const auto [stop, fault] = std::from_chars(text.data(), text.data() + text.size(), digits);
    const bool number = fault == std::errc{} && stop == text.data() + text.size();
    if (number && digits >= 0 && digits <= most_digits) return digits;
    throw UsageError{"--digits is a whole number from 0 to " + std::to_string(most_digits) + ", not " + in_quotes(text),
                     "finance help"};
}

std::optional<int> digits_of(const OptionsGiven& given, std::optional<int> otherwise) {
    return given.has(digits_option.name) ? static_cast<int>(given.number(digits_option.name, 0)) : otherwise;
}

std::optional<int> take_digits(std::vector<std::string_view>& words) {
    constexpr std::string_view name = digits_option.name;
    std::optional<int> digits;
    std::vector<std::string_view> others;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool joined = words[i].starts_with(name) && words[i].substr(name.size()).starts_with('=');
        if (!joined && words[i] != name) {
            others.push_back(words[i]);
            continue;
        }
        const bool followed = !joined && i + 1 < words.size();
        digits = read_digits(joined ? words[i].substr(name.size() + 1) : followed ? words[++i] : std::string_view{});
    }
    words = std::move(others);
    return digits;
}

void round_answer(Outcome& outcome, int decimals) {
    const bool printed = outcome.value && outcome.output == catalogue::plain_text(*outcome.value) + '\n';
    if (printed && std::isfinite(*outcome.value)) outcome.output = rounded_text(*outcome.value, decimals) + '\n';
}

void append_value(std::string& output, const catalogue::Calculation& calculation, double value) {
    if (calculation.result == catalogue::ResultKind::date) {
        output += catalogue::value_text(value, true);
    } else {
        catalogue::append_plain(output, value);
    }
}

std::string value_text(const NumberForm& form, const catalogue::Calculation& calculation, double value) {
    const bool date = calculation.result == catalogue::ResultKind::date;
    std::string text;
    if (form.decimals && !date && std::isfinite(value)) {
        text = rounded_text(value, *form.decimals);
    } else {
        append_value(text, calculation, value);
    }
    if (std::isfinite(value)) std::ranges::replace(text, '.', form.decimal);
    return text;
}

}  // namespace finance::command
