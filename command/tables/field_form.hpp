// How the fields of a table say numbers and missing values, where options say that they do so otherwise than a call.
//
//  (1) Texts that are told to be missing values are such, whatever their case and the kind of value.
//  (2) Where the comma is the decimal sign, a point never is. Then digits may be grouped: 1.234,56 and 1 234,56.
//  (3) Loose numbers may be grouped too (1,234.56), have one currency before or after them, and brackets for a minus.
//  (4) Groups have one separator: the sign that is not the decimal one, a blank of any width, or an apostrophe. The
//      first group has one to three digits and does not begin with 0, all others three. What is grouped otherwise is no
//      number: 1,5 is none where the comma groups, nor 0.065 where the point does.
//  (5) A blank may stand before a percent sign. An amount of money is no percentage.
//  (6) Dates are read as ever, or in the form that is said (date_form.hpp); of numbers that stand for dates only the
//      decimal sign is another.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "command/tables/date_form.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

struct FieldForm {
    std::vector<std::string_view> missing{};  // texts
    bool decimal_comma = false;
    bool loose = false;
    std::optional<DateForm> dates{};  // none: as in calls

    [[nodiscard]] bool as_in_calls() const { return missing.empty() && !decimal_comma && !loose && !dates; }
};

// UsageError. texts: "NA,NULL"; decimal: "comma" or "point"; numbers: "loose" or "plain"; dates: one of
// date_form_words.
void add_missing(FieldForm& form, std::string_view texts);
void set_decimal(FieldForm& form, std::string_view decimal);
void set_numbers(FieldForm& form, std::string_view numbers);
void set_dates(FieldForm& form, std::string_view dates);

// A text that is not empty, without blanks around it, as a value. Nothing where it cannot be read. Texts are not copied.
std::optional<host::Argument> read_text(const FieldForm& form, catalogue::Kind kind, std::string_view text);

// Why read_text gave nothing, and which option would read it.
std::string unreadable(const FieldForm& form, catalogue::Kind kind, std::string_view text);

}  // namespace finance::command
