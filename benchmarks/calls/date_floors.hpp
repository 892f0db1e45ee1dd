// What dates cost at least: a day number is split once, days of 30/360 and periods are told by years, months and days.
//
//  (1) All host days. Splitting is the module's own, as its series and powers are.
//  (2) Coupons fall on a day that every month has, and settlement is on none of them.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "benchmarks/calls/floors.hpp"
#include "calendar/calendar_date.hpp"

namespace finance::benchmarks {

inline CalendarDate split(double host_day) {
    CalendarDate date{};
    date.julianDay = static_cast<std::int64_t>(host_day) + HOST_EPOCH_JULIAN_DAY;
    zgetMonthDayYear(&date);
    return date;
}

// ---- 30/360

// A 31st is a 30th, but as the start of a span that ends before the 30th: the first of the next month. So is the end of
// February as an end.
inline double days_360(const CalendarDate& start, const CalendarDate& end) {
    const bool next_month = start.day == 31 && end.day < 30;
    const std::int32_t first = next_month ? 31 : std::min(start.day, 30);
    const bool end_of_february = end.month == 2 && end.endOfMonth != 0;
    const std::int32_t last = end_of_february ? 30 : std::min(end.day, 30);
    return 360 * (end.year - start.year) + 30 * (end.month - start.month) + last - first;
}

struct Coupons {
    double N;
    double remaining;  // of the period, d or e
    double accrued;    // a
};

inline Coupons coupons_360(double settlement_day, double maturity_day, double frequency) {
    const CalendarDate settlement = split(settlement_day);
    const CalendarDate maturity = split(maturity_day);
    const auto period = static_cast<std::int32_t>(12.0 / frequency);
    const std::int32_t months = 12 * (maturity.year - settlement.year) + maturity.month - settlement.month;
    const std::int32_t later = (months - (maturity.day > settlement.day ? 0 : 1)) / period;
    const std::int32_t previous = 12 * maturity.year + maturity.month - 1 - (later + 1) * period;
    CalendarDate start = maturity;
    start.year = previous / 12;
    start.month = previous % 12 + 1;
    const double E = 360.0 / frequency;
    const double A = days_360(start, settlement);
    return {later + 1.0, (E - A) / E, A / E};
}

// ---- Actual days

// Average length of the calendar years from the first date's to the last one's; a leap year at either end counts only
// where a 29 February may lie within, by months.
inline double average_year(const CalendarDate& start, const CalendarDate& end) {
    const auto leap_years_until = [](std::int32_t year) {
        const auto y = static_cast<std::uint32_t>(year);
        return static_cast<std::int32_t>(y / 4 - y / 100 + y / 400);
    };
    const auto no_leap_day = [&](std::int32_t year) {
        return is_leap_year(year) && (year != start.year || start.month > 2) && (year != end.year || end.month <= 2);
    };
    std::int32_t leap = leap_years_until(end.year) - leap_years_until(start.year - 1);
    if (no_leap_day(start.year)) --leap;
    if (start.year != end.year && no_leap_day(end.year)) --leap;
    const double B = leap;
    const double A = end.year - start.year + 1 - leap;
    return (365.0 * A + 366.0 * B) / (A + B);
}

}  // namespace finance::benchmarks
