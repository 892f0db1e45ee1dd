// Dates: the record that all date calculations share, its conversions, and stepping by months.
//
//  (1) The calendar is Gregorian throughout, also before 1582. Years are historical: the year before 1 is -1.
//  (2) Days are counted by Julian day number; 1 January 1960, day 0 of the host, is HOST_EPOCH_JULIAN_DAY.
//  (3) A date that is the last day of its month steps to last days of months.
//  (4) Any other steps to its own day of the month, or to the last one that the month has; the day aimed for is kept,
//      so that 30 January, 28 February, 30 March follow each other.
//  (5) All operations are total. Integer divisions truncate toward zero; fields wrap at their width.
#pragma once

#include <cstdint>

#include "abi/zelkovan.h"
#include "lanes/lanes.hpp"

namespace finance {

// 1 January 1960, day 0 of the host, as a Julian day number.
inline constexpr std::int64_t HOST_EPOCH_JULIAN_DAY = ZELKOVAN_EPOCH_JULIAN_DAY;

inline constexpr std::int64_t MARCH_1_OF_YEAR_0 = 1721120;  // as a Julian day number

// A date, or several side by side (dates_in_lanes.hpp), whose month's end is asked for where it counts.
template <typename N>
struct CalendarDateOf {
    N day;
    N month;
    N year;
    N julianDay;
};

template <>
struct CalendarDateOf<double> {
    std::int32_t day;         // of the month, 1..31
    std::int32_t month;       // 1..12
    std::int32_t year;        // historical: no year 0
    std::int64_t julianDay;   // all ordering and all counting of actual days
    std::int32_t anchorDay;   // the day of the month that stepping aims for; below 1: day itself
    std::int32_t endOfMonth;  // 1: was the last day of its month when it was split (3)
};
using CalendarDate = CalendarDateOf<double>;

enum DateOrder : std::int32_t { DATE_BEFORE = 1, DATE_EQUAL = 2, DATE_AFTER = 3 };

DateOrder zCompareDates(const CalendarDate* a, const CalendarDate* b);

template <typename N>
TruthOf<N> before(const CalendarDateOf<N>& a, const CalendarDateOf<N>& b) {
    return a.julianDay < b.julianDay;
}
template <typename N>
TruthOf<N> same_day(const CalendarDateOf<N>& a, const CalendarDateOf<N>& b) {
    return a.julianDay == b.julianDay;
}

// Of the years that 25 divides, those that 16 divides: a fourth of the centuries, and every fourth of the others.
inline bool is_leap_year(std::int32_t year) { return year % 4 == 0 && (year % 25 != 0 || year % 16 == 0); }

// 28..31; 31 for a month number that does not exist.
inline std::int32_t zlastDay(std::int32_t year, std::int32_t month) {
    constexpr std::uint32_t months_of_30_days = 1U << 4 | 1U << 6 | 1U << 9 | 1U << 11;
    if (month == 2) return is_leap_year(year) ? 29 : 28;
    const auto m = static_cast<std::uint32_t>(month);
    return m < 12 && (months_of_30_days >> m & 1) != 0 ? 30 : 31;
}

// A month of the years 1 to 9999. Dates beyond may have wrapped, and then also their months and days mean nothing.
inline bool is_usual_month(std::int32_t year, std::int32_t month) {
    constexpr std::uint32_t last_year = 9999;
    return static_cast<std::uint32_t>(year) - 1 < last_year && static_cast<std::uint32_t>(month) - 1 < 12;
}

// Julian day number of a year, month and day.
std::int64_t julian_day_of(std::int32_t year, std::int32_t month, std::int32_t day);

// day, month, year -> julianDay. Nothing else is changed.
inline void ConvertDateToJulian(CalendarDate* date) {
    date->julianDay = julian_day_of(date->year, date->month, date->day);
}

// Julian day number -> year, month, day. Exact from year -4800 on; beyond +-2^31 years the year wraps.
void ConvertJulianToDate(std::int32_t* year, std::int32_t* month, std::int32_t* day, std::int64_t julian_day);

// Completes a date of which only julianDay is set.
void zgetMonthDayYear(CalendarDate* date);

// For counting only: a year 0 is not skipped.
void ToTheFirstOfTheNextMonth(std::int32_t* day, std::int32_t* month, std::int32_t* year);

enum StepUnit : std::int32_t { STEP_MONTHS = 2, STEP_YEARS = 4 };

struct CouponTerms;

// date moved by count periods of terms->monthsPerPeriod months (STEP_MONTHS) or years (STEP_YEARS), complete but for
// the anchors, which are the given date's. A unit that is neither moves nothing. Returns result; it may be date.
CalendarDate* zAdvanceDate(CalendarDate* result, const CalendarDate* date, std::int64_t count,
                           const CouponTerms* terms);

// The Julian day number alone of that date, moved from its own day and month in the given year.
std::int64_t advanced_day(const CalendarDate& date, std::int32_t year, std::int64_t count, const CouponTerms& terms);

}  // namespace finance
