// Day counts of dates side by side: the rules of day_count.cpp, which are there in whole numbers that may wrap.
//
//  (1) All lanes have one basis; it is a known one.
//  (2) Days and years are whole numbers, and exact.
#pragma once

#include <algorithm>

#include "calendar/dates_in_lanes.hpp"
#include "calendar/day_count.hpp"

namespace finance {

namespace lanes {

template <typename Set>
Lanes<Set> at_most_30(Lanes<Set> day) {
    return select(day > 30.0, Lanes<Set>{30.0}, day);
}

template <typename Set>
Lanes<Set> days_of_360(const LaneDate<Set>& start, Lanes<Set> d1, const LaneDate<Set>& end, Lanes<Set> d2) {
    return 360.0 * (end.year - start.year) + 30.0 * (end.month - start.month) - d1 + d2;
}

// A start on a 31st that moves to the 1st of the next month is 31 days from its month's beginning. Between two equal dates
// nothing is counted, at the end of February as well.
template <typename Set>
Lanes<Set> days_us(const LaneDate<Set>& start, const LaneDate<Set>& end) {
    using N = Lanes<Set>;
    const N d1 = select((start.day == 31.0) & (end.day < 30.0), start.day, at_most_30(start.day));
    N d2 = at_most_30(end.day);
    const auto late_february = (end.month == 2.0) & (end.day >= 28.0);
    if (any(late_february)) {
        const auto same = (start.day == end.day) & (start.month == end.month) & (start.year == end.year);
        d2 = select(late_february & !same & (end.day == zlastDay(end.year, end.month)), N{30.0}, d2);
    }
    return days_of_360(start, d1, end, d2);
}

template <typename Set>
Lanes<Set> days_european(const LaneDate<Set>& start, const LaneDate<Set>& end) {
    return days_of_360(start, at_most_30(start.day), end, at_most_30(end.day));
}

template <typename Set>
Lanes<Set> actual_days(const LaneDate<Set>& start, const LaneDate<Set>& end) {
    return end.julianDay - start.julianDay;
}

// With a day more where the end is a 31st.
template <typename Set>
Lanes<Set> days_us(const LaneDate<Set>& start, const LaneDate<Set>& end, bool day_31) {
    using N = Lanes<Set>;
    const N days = days_us(start, end);
    return day_31 ? days + select(end.day == 31.0, N{1.0}, N{0.0}) : days;
}

// ---- Leap years of a span of calendar years, both ends counted

template <typename Set>
Lanes<Set> leap_years_until(Lanes<Set> year) {
    return quotient(year, 4.0) - leap_days_left_out(quotient(year, 100.0));
}

template <typename Set>
LaneTruth<Set> cut_short(Lanes<Set> year, const LaneDate<Set>& start, const LaneDate<Set>& end) {
    return ((year != start.year) | (start.month >= 3.0)) & ((year != end.year) | (end.month <= 2.0));
}

// The average year of a span; not a number where it runs backwards. With `cut`, leap years that are cut short count as
// common ones.
template <typename Set>
Lanes<Set> average_year(const LaneDate<Set>& start, const LaneDate<Set>& end, bool cut) {
    using N = Lanes<Set>;
    const auto backwards = start.year > end.year;
    const N years = end.year - start.year + 1.0;
    N leap = leap_years_until(end.year) - leap_years_until(start.year - 1.0);
    if (cut) {
        const auto first = is_leap_year(start.year) & cut_short(start.year, start, end);
        const auto last = (end.year != start.year) & is_leap_year(end.year) & cut_short(end.year, start, end);
        leap = leap - select(first, N{1.0}, N{0.0}) - select(last, N{1.0}, N{0.0});
    }
    const N A = select(backwards, N{0.0}, years - leap);
    const N B = select(backwards, N{0.0}, leap);
    return (365.0 * A + 366.0 * B) / (A + B);
}

template <typename Set>
Lanes<Set> annual_year_length(const LaneDate<Set>& start, const LaneDate<Set>& end, const CouponTerms& terms) {
    using N = Lanes<Set>;
    if (terms.startYearLength != 0) return select(is_leap_year(start.year), N{366.0}, N{365.0});
    return average_year(start, end, terms.allLeapYears != 1);
}

}  // namespace lanes

// Whether days are differences of day numbers.
constexpr bool counts_actual_days(std::int32_t basis) { return basis != BASIS_30_360 && basis != BASIS_EU30_360; }

// ---- One call, or several rows

// Splits a date for ComputeTheAnnualRatio; in lanes only where the basis needs its fields.
inline void split_for_ratio(CalendarDate* date, const CouponTerms& /*terms*/) { zgetMonthDayYear(date); }
template <typename Set>
void split_for_ratio(LaneDate<Set>* date, const CouponTerms& terms) {
    if (terms.basis != BASIS_ACT_360 && terms.basis != BASIS_ACT_365) zgetMonthDayYear(date);
}

template <typename Set>
Lanes<Set> days_between(const LaneDate<Set>& start, const LaneDate<Set>& end, const CouponTerms& terms) {
    if (terms.basis == BASIS_30_360) return lanes::days_us(start, end, terms.day31Adjust != 0);
    if (terms.basis == BASIS_EU30_360) return lanes::days_european(start, end);
    return lanes::actual_days(start, end);
}

template <typename Set>
Lanes<Set> ComputeTheAnnualRatio(const LaneDate<Set>* start, const LaneDate<Set>* end, const CouponTerms* terms) {
    switch (terms->basis) {
        case BASIS_30_360: {
            const bool day_31 = terms->day31Adjust != 0 && terms->noDay31Adjust == 0;
            return lanes::days_us(*start, *end, day_31) / 360.0;
        }
        case BASIS_EU30_360:
            return lanes::days_european(*start, *end) / 360.0;
        case BASIS_ACT_360:
            return lanes::actual_days(*start, *end) / 360.0;
        case BASIS_ACT_365:
            return lanes::actual_days(*start, *end) / 365.0;
        default:
            return lanes::actual_days(*start, *end) / lanes::annual_year_length(*start, *end, *terms);
    }
}

// The time from start to end in years, dates of which only julianDay need be set.
template <typename N>
N years_between(CalendarDateOf<N>& start, CalendarDateOf<N>& end, CouponTerms& terms) {
    split_for_ratio(&start, terms);
    split_for_ratio(&end, terms);
    return ComputeTheAnnualRatio(&start, &end, &terms);
}

}  // namespace finance
