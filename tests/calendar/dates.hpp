// Dates for the tests of this folder, made by the standard library's calendar and not by the one under test.
#pragma once

#include <chrono>
#include <cstdint>
#include <ostream>

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance::test {

// Draws of a test: all of them in a release build, a part in others, sanitized ones among them.
#ifdef NDEBUG
constexpr int drawn(int in_release) { return in_release; }
#else
constexpr int drawn(int in_release) { return in_release > 20 ? in_release / 20 : in_release; }
#endif

// Days from 1 January 1960, for years from 1 on.
constexpr std::int64_t host_days(int year, unsigned month, unsigned day) {
    using std::chrono::sys_days;
    const std::chrono::year_month_day date{std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
    const std::chrono::year_month_day epoch{std::chrono::year{1960}, std::chrono::month{1}, std::chrono::day{1}};
    return (sys_days{date} - sys_days{epoch}).count();
}

// The same as an argument.
constexpr double host_date(int year, unsigned month, unsigned day) {
    return static_cast<double>(host_days(year, month, day));
}

// A complete record, as one that was split from its day number.
constexpr CalendarDate date_of(int year, unsigned month, unsigned day) {
    const std::chrono::year_month_day_last last{std::chrono::year{year},
                                                std::chrono::month_day_last{std::chrono::month{month}}};
    const auto d = static_cast<std::int32_t>(day);
    const bool ends_month = static_cast<unsigned>(last.day()) == day;
    return {d, static_cast<std::int32_t>(month), year, host_days(year, month, day) + HOST_EPOCH_JULIAN_DAY,
            d, ends_month ? std::int32_t{1} : 0};
}

// Any day number split: for years below 1 and far ones.
inline CalendarDate date_of_julian(std::int64_t julian_day) {
    CalendarDate date{};
    date.julianDay = julian_day;
    zgetMonthDayYear(&date);
    return date;
}

inline bool same_date(const CalendarDate& a, const CalendarDate& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.julianDay == b.julianDay;
}

inline bool same_record(const CalendarDate& a, const CalendarDate& b) {
    return same_date(a, b) && a.anchorDay == b.anchorDay && a.endOfMonth == b.endOfMonth;
}

// The terms of a coupon calculation, periods and their days included.
inline CouponTerms coupon_terms(std::int32_t frequency, std::int32_t basis) {
    CouponTerms terms{};
    terms.frequency = frequency;
    terms.stepUnit = STEP_MONTHS;
    terms.basis = basis;
    zComputePeriod(&terms);
    zComputeDaysInPeriod(&terms);
    return terms;
}

// The terms of a year fraction: day 31 counted by 30/360.
inline CouponTerms year_fraction_terms(std::int32_t basis) {
    CouponTerms terms{};
    terms.day31Adjust = 1;
    terms.frequency = 1;
    terms.stepUnit = STEP_YEARS;
    terms.monthsPerPeriod = 12;
    terms.basis = basis;
    zComputeDaysInPeriod(&terms);
    return terms;
}

inline bool same_terms(const CouponTerms& a, const CouponTerms& b) {
    return a.frequency == b.frequency && a.monthsPerPeriod == b.monthsPerPeriod && a.basis == b.basis &&
           a.periodDays == b.periodDays && a.dayCount == b.dayCount && a.cappedDayCount == b.cappedDayCount &&
           a.countYearLength == b.countYearLength;
}

}  // namespace finance::test

namespace finance {

inline std::ostream& operator<<(std::ostream& out, const CalendarDate& d) {
    return out << d.year << '-' << d.month << '-' << d.day << " (" << d.julianDay << ", aims for " << d.anchorDay
               << (d.endOfMonth != 0 ? ", month end)" : ")");
}

}  // namespace finance
