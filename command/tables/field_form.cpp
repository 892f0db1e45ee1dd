#include "command/tables/field_form.hpp"

#include <algorithm>
#include <array>

#include "catalogue/text.hpp"
#include "command/argument_text.hpp"
#include "command/tables/loose_number.hpp"
#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

using catalogue::Kind;

// What other programs write where there is no value.
constexpr std::array<std::string_view, 10> usual_missing{"NA",   "N/A",   "#N/A",    "NULL", "none",
                                                         "null", "#NUM!", "#VALUE!", "-",    "--"};

// One of two words: the second one, which is what there is without the option, or the first.
bool is_first(std::string_view option, std::string_view word, std::string_view first, std::string_view second) {
    if (word == first || word == second) return word == first;
    throw UsageError{
        std::string{option} + " is " + std::string{first} + " or " + std::string{second} + ", not " + in_quotes(word),
        "finance help map"};
}

NumberSigns signs_of(const FieldForm& form, Kind kind) {
    return {.decimal = form.decimal_comma ? ',' : '.',
            .groups = form.decimal_comma || form.loose,
            .money = form.loose && !catalogue::is_dated(kind)};
}

std::optional<host::Argument> read_number(const FieldForm& form, Kind kind, std::string_view text) {
    const auto number = rewritten_number(text, signs_of(form, kind));
    if (!number) return {};
    return read_value(Kind::number, *number);
}

// "; --numbers loose reads 1234": what the options that are not given would read.
std::string hint_on_number(const FieldForm& form, Kind kind, std::string_view text) {
    std::string hint;
    const auto add = [&](const std::string& option, const FieldForm& other) {
        const auto value = read_number(other, kind, text);
        if (!value) return;
        hint += hint.empty() ? "; " : ", ";
        hint += option + " reads " + catalogue::plain_text(value->number());
    };
    if (!form.decimal_comma) add("--decimal comma", {.decimal_comma = true, .loose = form.loose});
    if (!form.loose) add("--numbers loose", {.decimal_comma = form.decimal_comma, .loose = true});
    if (!hint.empty() || form.decimal_comma || form.loose) return hint;
    add("--decimal comma --numbers loose", {.decimal_comma = true, .loose = true});
    return hint;
}

}  // namespace

void add_missing(FieldForm& form, std::string_view texts) {
    for (bool more = true; more;) {
        const std::size_t comma = texts.find(',');
        more = comma != std::string_view::npos;
        const std::string_view word = trimmed(texts.substr(0, comma));
        if (!word.empty()) form.missing.push_back(word);
        texts.remove_prefix(more ? comma + 1 : texts.size());
    }
}

void set_decimal(FieldForm& form, std::string_view decimal) {
    form.decimal_comma = is_first("--decimal", decimal, "comma", "point");
}

void set_dates(FieldForm& form, std::string_view dates) {
    const auto word = std::ranges::find(date_form_words, dates);
    if (word == date_form_words.end()) {
        throw UsageError{"--dates is days, sheet, ymd, dmy or mdy, not " + in_quotes(dates), "finance help map"};
    }
    form.dates = static_cast<DateForm>(word - date_form_words.begin());
}

void set_numbers(FieldForm& form, std::string_view numbers) {
    form.loose = is_first("--numbers", numbers, "loose", "plain");
}

std::optional<host::Argument> read_text(const FieldForm& form, Kind kind, std::string_view text) {
    if (form.as_in_calls()) return read_value(kind, text);
    const auto same = [&](std::string_view word) { return catalogue::same_name(word, text); };
    if (text == "." || std::ranges::any_of(form.missing, same)) return host::Argument::missing();
    if (form.dates && catalogue::is_dated(kind)) {
        const auto day = read_date(*form.dates, text);
        return day ? std::optional{host::Argument{*day}} : std::nullopt;
    }
    const bool as_ever = !form.decimal_comma && (!form.loose || catalogue::is_dated(kind));
    if (as_ever || !has_digit(text)) return read_value(kind, text);
    if (catalogue::is_dated(kind)) {
        if (const auto date = catalogue::host_date(text)) return *date;
    }
    if (const auto number = read_number(form, kind, text)) return number;
    return kind == Kind::basis ? std::optional{host::Argument{text}} : std::nullopt;
}

std::string unreadable(const FieldForm& form, Kind kind, std::string_view text) {
    if (form.dates && catalogue::is_dated(kind) && !read_date(*form.dates, text)) {
        const std::string_view word = date_form_words[static_cast<std::size_t>(*form.dates)];
        return in_quotes(text) + " is not a date as --dates " + std::string{word} + " has it" +
               hint_on_dates(*form.dates, text);
    }
    std::string reason = unreadable(kind, text);
    if (catalogue::is_dated(kind)) return reason + hint_on_dates(DateForm::days, text);
    const bool missing = std::ranges::find(usual_missing, text) != usual_missing.end();
    return reason + (missing ? "; --missing " + std::string{text} + " says that it is a missing value"
                             : hint_on_number(form, kind, text));
}

}  // namespace finance::command
