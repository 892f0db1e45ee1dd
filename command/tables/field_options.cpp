#include "command/tables/field_options.hpp"

#include <algorithm>

#include "command/tables/table_record.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

using reading::date_form_words;
using reading::FieldForm;

namespace {

// One of two words: the second one, which is what there is without the option, or the first.
bool is_first(std::string_view option, std::string_view word, std::string_view first, std::string_view second) {
    if (word == first || word == second) return word == first;
    throw UsageError{
        std::string{option} + " is " + std::string{first} + " or " + std::string{second} + ", not " + in_quotes(word),
        "finance help map"};
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
    form.dates = static_cast<reading::DateForm>(word - date_form_words.begin());
}

void set_numbers(FieldForm& form, std::string_view numbers) {
    form.loose = is_first("--numbers", numbers, "loose", "plain");
}

}  // namespace finance::command
