// Options that say how the fields of a table write numbers, dates and missing values (reading/field_form.hpp).
#pragma once

#include <string_view>

#include "reading/field_form.hpp"

namespace finance::command {

// UsageError. texts: "NA,NULL"; decimal: "comma" or "point"; numbers: "loose" or "plain"; dates: one of
// date_form_words. Texts are not copied.
void add_missing(reading::FieldForm& form, std::string_view texts);
void set_decimal(reading::FieldForm& form, std::string_view decimal);
void set_numbers(reading::FieldForm& form, std::string_view numbers);
void set_dates(reading::FieldForm& form, std::string_view dates);

}  // namespace finance::command
