// Host date values: days since 1 January 1960, which is day 0.
#pragma once

#include <cstdint>

namespace finance::host {

// The host date value of a calendar date in the Gregorian calendar, extended to years before it. Years are historical:
// the year before 1 is -1 (a year 0 is taken as the one before 1, too). Before 1 March of -4801 the day formula's
// truncating divisions part from the calendar, by no more than two days; modules split and count dates by the same
// formula, so that a date comes back as the day that it was. Days and months outside their range carry on arithmetically
// as far as the formula does. Defined for every argument.
[[nodiscard]] std::int64_t days_since_1960(std::int32_t month, std::int32_t day, std::int32_t year) noexcept;

// The same as modules ask for it. Fractions are dropped; the missing value where a part is NaN or does not fit 32 bits.
[[nodiscard]] double date_value(double month, double day, double year) noexcept;

}  // namespace finance::host
