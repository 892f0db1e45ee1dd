#include "reading/field_form.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "catalogue/text.hpp"
#include "reading/loose_number.hpp"

namespace finance::reading {

namespace {

using catalogue::Kind;

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

Refusal refusal_of(const FieldForm& form, Kind kind, std::string_view text) {
    if (form.dates && catalogue::is_dated(kind) && !read_date(*form.dates, text)) {
        const std::string word{date_form_words[static_cast<std::size_t>(*form.dates)]};
        return {.reason = catalogue::in_quotes(text) + " is not a date as --dates " + word + " has it",
                .hint = hint_on_dates(*form.dates, text)};
    }
    std::string reason = unreadable(kind, text);
    if (catalogue::is_dated(kind)) return {.reason = std::move(reason), .hint = hint_on_dates(DateForm::days, text)};
    const bool missing = std::ranges::find(usual_missing, text) != usual_missing.end();
    return {.reason = std::move(reason),
            .hint = missing ? "; --missing " + std::string{text} + " says that it is a missing value"
                            : hint_on_number(form, kind, text)};
}

std::string unreadable(const FieldForm& form, Kind kind, std::string_view text) {
    const Refusal refusal = refusal_of(form, kind, text);
    return refusal.reason + refusal.hint;
}

}  // namespace finance::reading
