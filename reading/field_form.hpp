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

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calls/meant.hpp"
#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"
#include "reading/argument_text.hpp"
#include "reading/date_form.hpp"

namespace finance::reading {

// What other programs write where there is no value.
inline constexpr std::array<std::string_view, 10> usual_missing{"NA",   "N/A",   "#N/A",    "NULL", "none",
                                                                "null", "#NUM!", "#VALUE!", "-",    "--"};

struct FieldForm {
    std::vector<std::string_view> missing{};  // texts
    bool decimal_comma = false;
    bool loose = false;
    std::optional<DateForm> dates{};  // none: as in calls

    [[nodiscard]] bool as_in_calls() const { return missing.empty() && !decimal_comma && !loose && !dates; }
};

// A text that is not empty, without blanks around it, as a value. Nothing where it cannot be read. Texts are not copied.
std::optional<host::Argument> read_text(const FieldForm& form, catalogue::Kind kind, std::string_view text);

// The same, but nothing either where the value is one that nobody can mean (calls/meant.hpp).
inline std::optional<host::Argument> read_meant(const FieldForm& form, catalogue::Kind kind, std::string_view text) {
    const auto value = form.as_in_calls() ? read_value(kind, text) : read_text(form, kind, text);
    return value && !calls::is_meant(kind, *value) ? std::nullopt : value;
}

struct Refusal {
    std::string reason;
    std::string hint;  // "; --dates dmy reads 2024-01-15": the options of tables that would read it; "" where none does
};

// Why read_text or read_meant gave nothing.
Refusal refusal_of(const FieldForm& form, catalogue::Kind kind, std::string_view text);

// The same in one sentence.
std::string unreadable(const FieldForm& form, catalogue::Kind kind, std::string_view text);

}  // namespace finance::reading
