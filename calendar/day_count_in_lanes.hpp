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
    return day - select(day > 30.0, Lanes<Set>{1.0}, Lanes<Set>{0.0});
}

template <typename Set>
Lanes<Set> days_of_360(const LaneDate<Set>& start, Lanes<Set> d1, const LaneDate<Set>& end, Lanes<Set> d2) {
    return 360.0 * (end.year - start.year) + 30.0 * (end.month - start.month) - d1 + d2;
}

// A start on a 31st is the 30th only before an end on the 30th or later: before others it moves to the 1st of the next month,
// 31 days from its own month's beginning. Between two equal dates nothing is counted, at the end of February as well.
template <typename Set>
Lanes<Set> days_us(const LaneDate<Set>& start, const LaneDate<Set>& end) {
    using N = Lanes<Set>;
    const N d1 = start.day - select((start.day > 30.0) & (end.day >= 30.0), N{1.0}, N{0.0});
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

// What decides how a ratio is taken.
struct RatioTerms {
    std::int32_t basis;
    bool day_31;
    bool start_year;
    bool all_leap_years;
};

template <typename Set>
Lanes<Set> annual_year_length(const LaneDate<Set>& start, const LaneDate<Set>& end, RatioTerms terms) {
    using N = Lanes<Set>;
    if (terms.start_year) return select(is_leap_year(start.year), N{366.0}, N{365.0});
    return average_year(start, end, !terms.all_leap_years);
}

// From and to a Julian day number. In one place for all that ask: in each of them it would be the larger part.
template <typename Set>
[[gnu::noinline]] Lanes<Set> annual_ratio(Lanes<Set> from, Lanes<Set> to, RatioTerms terms) {
    if (terms.basis == BASIS_ACT_360) return (to - from) / 360.0;
    if (terms.basis == BASIS_ACT_365) return (to - from) / 365.0;
    LaneDate<Set> start{};
    LaneDate<Set> end{};
    start.julianDay = from;
    end.julianDay = to;
    zgetMonthDayYear(&start);
    zgetMonthDayYear(&end);
    if (terms.basis == BASIS_30_360) return days_us(start, end, terms.day_31) / 360.0;
    if (terms.basis == BASIS_EU30_360) return days_european(start, end) / 360.0;
    return (to - from) / annual_year_length(start, end, terms);
}

}  // namespace lanes

// Whether days are differences of day numbers.
constexpr bool counts_actual_days(std::int32_t basis) { return basis != BASIS_30_360 && basis != BASIS_EU30_360; }

template <typename Set>
Lanes<Set> days_between(const LaneDate<Set>& start, const LaneDate<Set>& end, const CouponTerms& terms) {
    if (terms.basis == BASIS_30_360) return lanes::days_us(start, end, terms.day31Adjust != 0);
    if (terms.basis == BASIS_EU30_360) return lanes::days_european(start, end);
    return lanes::actual_days(start, end);
}

// Of dates of which only julianDay need be set.
template <typename Set>
Lanes<Set> ComputeTheAnnualRatio(const LaneDate<Set>* start, const LaneDate<Set>* end, const CouponTerms* terms) {
    return lanes::annual_ratio(start->julianDay, end->julianDay,
                               {.basis = terms->basis,
                                .day_31 = terms->day31Adjust != 0 && terms->noDay31Adjust == 0,
                                .start_year = terms->startYearLength != 0,
                                .all_leap_years = terms->allLeapYears == 1});
}

// ---- One call, or several rows

// Splits a date for ComputeTheAnnualRatio. In lanes that does so itself where the basis needs it.
inline void split_for_ratio(CalendarDate* date) { zgetMonthDayYear(date); }
template <typename Set>
void split_for_ratio(LaneDate<Set>* /*date*/) {}

// The time from start to end in years, dates of which only julianDay need be set.
template <typename N>
N years_between(CalendarDateOf<N>& start, CalendarDateOf<N>& end, CouponTerms& terms) {
    split_for_ratio(&start);
    split_for_ratio(&end);
    return ComputeTheAnnualRatio(&start, &end, &terms);
}

}  // namespace finance
