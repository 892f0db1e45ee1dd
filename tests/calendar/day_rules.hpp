// The 30/360 counts, told as positions in a calendar whose months all have thirty days.
#pragma once

#include <cstdint>

#include "calendar/calendar_date.hpp"

namespace finance::test {

constexpr std::int64_t position(std::int64_t year, std::int64_t month, std::int64_t day) {
    return (year * 12 + month) * 30 + day;
}

constexpr std::int64_t position(const CalendarDate& date) {
    return position(date.year, date.month, date.day == 31 ? 30 : date.day);
}

constexpr std::int64_t european_days(const CalendarDate& start, const CalendarDate& end) {
    return position(end) - position(start);
}

// Between different dates. The end of February is a 30th as an end; a start on a 31st waits for the next 1st where the
// end is not at a month's end.
constexpr std::int64_t us_days(const CalendarDate& start, const CalendarDate& end) {
    if (start.julianDay == end.julianDay) return 0;
    const bool leap = (end.year % 4 == 0 && end.year % 100 != 0) || end.year % 400 == 0;
    const bool february_ends = end.month == 2 && end.day == (leap ? 29 : 28);
    const std::int64_t to = position(end) + (february_ends ? 30 - end.day : 0);
    const bool waits = start.day == 31 && end.day < 30;
    return to - (waits ? position(start) + 1 : position(start));
}

}  // namespace finance::test
