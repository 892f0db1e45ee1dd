// Dates of payments that are whole months apart.
#pragma once

#include <cstdint>

namespace finance::command {

// A day so many months after another, both days since 1960-01-01: on the same day of the month, or on the month's last
// day where it does not have that day. The day asked for is that of the first date: 31, 28 or 29, 31 again. Whole days of
// the years 1 to 9999, and what lies at most 30,000 years after them.
double months_later(double date, std::int64_t months);

}  // namespace finance::command
