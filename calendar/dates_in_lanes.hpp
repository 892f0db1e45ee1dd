// Dates side by side: their splitting, joining and month ends for lanes of rows.
//
//  (1) Dates are of the years 3 to 9999, so that two coupon periods before one lie in usual years as well.
//  (2) Fields are whole numbers, and all sums and products of them exact. A quotient is taken by the reciprocal, toward
//      zero, of a number that lies between the whole multiples of the divisor: the roundings do not reach those.
//  (3) The rules are those of calendar_date.cpp. They stand there in whole numbers that may wrap, and here without a
//      branch; a test compares all days.
#pragma once

#include "calendar/calendar_date.hpp"
#include "lanes/rows.hpp"

namespace finance {

template <typename Set>
using LaneDate = CalendarDateOf<Lanes<Set>>;

// ---- Splitting and joining
//
// Both count from 1 March of the year 0, so that the leap day ends a year, and months from 0 (March) to 11 (February).

namespace lanes {

constexpr double days_of_century = 36524.25;
constexpr double days_of_year = 365.25;     // on average, if every fourth one is a leap year
constexpr double days_of_month = 30.6;      // on average from March to July, and from August to December
constexpr double between_quarters = 0.875;  // 3/4 of a day carry the leap days, 1/8 lies between quarters of days
constexpr auto march_1_of_year_0 = static_cast<double>(MARCH_1_OF_YEAR_0);

// Days of the year before a month that counts from March.
template <typename Set>
Lanes<Set> days_before_month(Lanes<Set> m) {
    return truncated(m * days_of_month + 0.5);
}

// Leap days that the centuries before did not have.
template <typename Set>
Lanes<Set> leap_days_left_out(Lanes<Set> century) {
    return century - truncated(century * 0.25);
}

// Days of years as if every fourth were a leap year.
template <typename Set>
Lanes<Set> days_before_year(Lanes<Set> y) {
    return truncated(y * days_of_year);
}

// x / divisor, toward zero, for whole x of at least 0.
template <typename Set>
Lanes<Set> quotient(Lanes<Set> x, double divisor) {
    return truncated((x + 0.5) * (1.0 / divisor));
}

template <typename Set>
LaneTruth<Set> is_multiple(Lanes<Set> x, double divisor) {
    return quotient(x, divisor) * divisor == x;
}

}  // namespace lanes

// Completes dates of which only julianDay is set.
template <typename Set>
void zgetMonthDayYear(LaneDate<Set>* date) {
    using N = Lanes<Set>;
    const N day = date->julianDay - lanes::march_1_of_year_0;
    const N century = truncated((day + lanes::between_quarters) * (1.0 / lanes::days_of_century));
    const N day_of_all = day + lanes::leap_days_left_out(century);
    const N y = truncated((day_of_all + lanes::between_quarters) * (1.0 / lanes::days_of_year));
    const N day_of_year = day_of_all - lanes::days_before_year(y);  // 0: 1 March
    const N m = lanes::quotient(day_of_year, lanes::days_of_month);
    const auto next_year = m >= 10.0;  // January and February
    date->day = day_of_year - lanes::days_before_month(m) + 1.0;
    date->month = m + 3.0 - select(next_year, N{12.0}, N{0.0});
    date->year = y + select(next_year, N{1.0}, N{0.0});
}

template <typename Set>
Lanes<Set> julian_day_of(Lanes<Set> year, Lanes<Set> month, Lanes<Set> day) {
    using N = Lanes<Set>;
    const auto next_year = month <= 2.0;
    const N y = year - select(next_year, N{1.0}, N{0.0});
    const N m = month - 3.0 + select(next_year, N{12.0}, N{0.0});
    const N days = lanes::days_before_year(y) - lanes::leap_days_left_out(lanes::quotient(y, 100.0));
    return days + lanes::days_before_month(m) + day + (lanes::march_1_of_year_0 - 1.0);
}

template <typename Set>
void ConvertDateToJulian(LaneDate<Set>* date) {
    date->julianDay = julian_day_of(date->year, date->month, date->day);
}

// ---- Ends of months

template <typename Set>
LaneTruth<Set> is_leap_year(Lanes<Set> year) {
    const auto common_century = lanes::is_multiple(year, 25.0) & !lanes::is_multiple(year, 16.0);
    return lanes::is_multiple(year, 4.0) & !common_century;
}

template <typename Set>
Lanes<Set> zlastDay(Lanes<Set> year, Lanes<Set> month) {
    using N = Lanes<Set>;
    const auto has_30 = (month == 4.0) | (month == 6.0) | (month == 9.0) | (month == 11.0);
    const N last = 31.0 - select(has_30, N{1.0}, N{0.0});
    const auto february = month == 2.0;
    if (!any(february)) return last;
    return select(february, select(is_leap_year(year), N{29.0}, N{28.0}), last);
}

template <typename Set>
LaneTruth<Set> ends_month(const LaneDate<Set>& date) {
    const auto late = date.day >= 28.0;
    return any(late) ? date.day == zlastDay(date.year, date.month) : late;
}

// ---- Reading

// Whole host dates of usual years (1), of which only julianDay is set.
template <typename Set>
[[gnu::always_inline]] inline bool read_date(Rows<Set>& in, int i, LaneDate<Set>& date) {
    constexpr double january_1_of_year_3 = 1722156;  // as Julian day numbers
    constexpr double end_of_year_9999 = 5373484;
    constexpr auto epoch = static_cast<double>(HOST_EPOCH_JULIAN_DAY);
    Lanes<Set> host_date;
    if (!in.whole_between(i, january_1_of_year_3 - epoch, end_of_year_9999 - epoch, host_date)) return false;
    date.julianDay = host_date + epoch;
    return true;
}

}  // namespace finance
