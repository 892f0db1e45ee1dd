// Host dates: whole days, day 0 being 1960-01-01. Written year-month-day, years 0001 to 9999.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace finance::catalogue {

// Exactly dddd-dd-dd and a day that exists.
std::optional<double> host_date(std::string_view iso);

// Nothing where the value is no whole day or its year is outside 0001 to 9999.
std::optional<std::string> iso_date(double host_date);

}  // namespace finance::catalogue
