// How the fields of a table write dates, where an option says that they do so otherwise than a call.
//
//  (1) days: as in a call, a number counts days since 1960-01-01. sheet: a number is a sheet's serial number, 45292 being
//      2024-01-01; those before 1900-03-01 are none, since sheets count a day there that never was.
//  (2) ymd, dmy, mdy: year, month and day in that order, between points, strokes or hyphens; the year has four digits.
//      20240115 is one of ymd. A number of days is none then.
//  (3) year-month-day as in a call is read in every form: nobody writes anything else so.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace finance::reading {

enum class DateForm : std::uint8_t { days, sheet, ymd, dmy, mdy };
inline constexpr std::array<std::string_view, 5> date_form_words{"days", "sheet", "ymd", "dmy", "mdy"};

// The day, of a text without blanks around it. Nothing where it cannot be read.
std::optional<double> read_date(DateForm form, std::string_view text);

// "; --dates dmy reads 2024-01-15": the forms that read what `form` does not; "" where none does.
std::string hint_on_dates(DateForm form, std::string_view text);

}  // namespace finance::reading
