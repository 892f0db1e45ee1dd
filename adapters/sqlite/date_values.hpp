// Dates as SQLite has them: ISO text, or a number of days.
//
//  (1) Text is year-month-day, alone or with a time of day after a blank or a T: hh:mm, hh:mm:ss or hh:mm:ss.sss, on the
//      same clock as everything else; no time zone is read.
//  (2) A number below 2,000,000 counts days since 1960-01-01, which it does until the year 7435; any other is a Julian
//      day, which it is from the year 763 on.
//  (3) A date that has no text is answered as the number that (2) reads back as that date.
#pragma once

#include <optional>
#include <string_view>

namespace finance::adapters::sqlite {

// Host days: days since 1960-01-01, a time of day as a fraction.
std::optional<double> host_days_of_text(std::string_view text);
double host_days_of_number(double number);

double number_of_host_days(double host_days);

}  // namespace finance::adapters::sqlite
