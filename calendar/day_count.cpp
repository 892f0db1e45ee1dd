#include "calendar/day_count.hpp"

#include <algorithm>

#include "abi/conversions.hpp"

namespace finance {

namespace {

constexpr std::int32_t method_us = 0;
constexpr std::int32_t method_european = 4;

double actual_days(const CalendarDate& start, const CalendarDate& end) {
    return static_cast<double>(wrapping_add(end.julianDay, -start.julianDay));
}

std::int64_t days_of_360(std::int32_t d1, std::int32_t m1, std::int32_t y1, std::int32_t d2, const CalendarDate& end) {
    const std::int64_t count = 360 * (std::int64_t{end.year} - y1) + 30 * (std::int64_t{end.month} - m1) - d1 + d2;
    return low_32_bits(count);
}

std::int64_t days_us(const CalendarDate& start, const CalendarDate& end) {
    if (same_day(start, end)) return 0;
    std::int32_t d1 = start.day;
    std::int32_t m1 = start.month;
    std::int32_t y1 = start.year;
    if (d1 == 31 && end.day < 30) ToTheFirstOfTheNextMonth(&d1, &m1, &y1);
    d1 = std::min(d1, 30);
    const bool end_of_february = end.month == 2 && end.day == zlastDay(end.year, 2);
    const std::int32_t d2 = end_of_february ? 30 : std::min(end.day, 30);
    return days_of_360(d1, m1, y1, d2, end);
}

std::int64_t days_european(const CalendarDate& start, const CalendarDate& end) {
    return days_of_360(std::min(start.day, 30), start.month, start.year, std::min(end.day, 30), end);
}

bool ends_on_31st(const CalendarDate& end) { return end.day == 31; }

// ---- Leap years of a span of calendar years, both ends counted

// Leap years up to and with `year`, counted from year 1 (negative before it): one in four, none in a hundred, one in four
// of the hundreds. From year -4800000000 on (twelve million cycles of 400 years), so that no division is of a negative.
std::int64_t leap_years_until(std::int64_t year) {
    constexpr std::int64_t cycles = 12'000'000;
    constexpr std::int64_t leap_years_of_cycle = 97;
    const auto y = static_cast<std::uint64_t>(year + 400 * cycles);
    const std::uint64_t century = y / 100;
    return static_cast<std::int64_t>(y / 4 - century + century / 4) - leap_years_of_cycle * cycles;
}

struct CalendarYears {
    std::int64_t all;
    std::int64_t leap;
};

// None when the span runs backwards. A year 0 between -1 and 1 is counted, and is a leap year.
CalendarYears years_touched(const CalendarDate& start, const CalendarDate& end) {
    const std::int64_t first = start.year;
    const std::int64_t last = end.year;
    if (first > last) return {0, 0};
    return {last - first + 1, leap_years_until(last) - leap_years_until(first - 1)};
}

// (365 A + 366 B) / (A + B) for A common and B leap years; not a number for none.
double average_year(const CalendarYears& years) {
    const auto A = static_cast<double>(years.all - years.leap);
    const auto B = static_cast<double>(years.leap);
    return (365.0 * A + 366.0 * B) / (A + B);
}

// A leap year at an end of the span that has no 29 February within it, going by months alone.
bool cut_short(std::int32_t year, const CalendarDate& start, const CalendarDate& end) {
    return (year != start.year || start.month >= 3) && (year != end.year || end.month == 1 || end.month == 2);
}

// The average year of a span, leap years that are cut short counted as common ones.
double average_year_within(const CalendarDate& start, const CalendarDate& end) {
    CalendarYears years = years_touched(start, end);
    if (years.all == 0) return average_year(years);
    if (is_leap_year(start.year) && cut_short(start.year, start, end)) years.leap -= 1;
    if (end.year != start.year && is_leap_year(end.year) && cut_short(end.year, start, end)) years.leap -= 1;
    return average_year(years);
}

double annual_year_length(const CalendarDate& start, const CalendarDate& end, const CouponTerms& terms) {
    if (terms.startYearLength != 0) return is_leap_year(start.year) ? 366.0 : 365.0;
    return terms.allLeapYears == 1 ? average_year(years_touched(start, end)) : average_year_within(start, end);
}

double divided(double days, double year_length, CouponTerms* terms) {
    terms->dayCount = days;
    terms->periodDays = year_length;
    return days / year_length;
}

}  // namespace

std::int64_t zdays360(const CalendarDate* start, const CalendarDate* end, std::int32_t method) {
    if (method == method_us) return days_us(*start, *end);
    return method == method_european ? days_european(*start, *end) : largest_whole_number;
}

double days_between(const CalendarDate& start, const CalendarDate& end, const CouponTerms& terms) {
    switch (terms.basis) {
        case BASIS_30_360:
            return static_cast<double>(days_us(start, end) + (terms.day31Adjust != 0 && ends_on_31st(end) ? 1 : 0));
        case BASIS_ACTUAL:
        case BASIS_ACT_360:
        case BASIS_ACT_365:
            return actual_days(start, end);
        case BASIS_EU30_360:
            return static_cast<double>(days_european(start, end));
        default:
            return terms.dayCount;
    }
}

void CountTheDays(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms) {
    terms->dayCount = days_between(*start, *end, *terms);
    switch (terms->basis) {
        case BASIS_30_360:
        case BASIS_ACT_360:
        case BASIS_EU30_360:
            terms->periodDays = 360.0;
            break;
        case BASIS_ACTUAL:
            terms->periodDays = average_year(years_touched(*start, *end));
            break;
        case BASIS_ACT_365:
            terms->periodDays = 365.0;
            break;
        default:
            break;
    }
}

double ComputeTheAnnualRatio(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms) {
    const bool day_31 = terms->day31Adjust != 0 && terms->noDay31Adjust == 0 && ends_on_31st(*end);
    switch (terms->basis) {
        case BASIS_30_360:
            return divided(static_cast<double>(days_us(*start, *end) + (day_31 ? 1 : 0)), 360.0, terms);
        case BASIS_ACTUAL:
            return divided(actual_days(*start, *end), annual_year_length(*start, *end, *terms), terms);
        case BASIS_ACT_360:
            return divided(actual_days(*start, *end), 360.0, terms);
        case BASIS_ACT_365:
            return divided(actual_days(*start, *end), 365.0, terms);
        case BASIS_EU30_360:
            return divided(static_cast<double>(days_european(*start, *end)), 360.0, terms);
        default:
            return largest_double;
    }
}

}  // namespace finance
