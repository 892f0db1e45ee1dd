// Arguments of date calculations: dates and the terms of their schedules.
#pragma once

#include "abi/arguments.hpp"
#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

// A whole host date as a Julian day number. From -2^63 to 2^53 days, so that the sum does not overflow.
inline bool read_julian_day(Arguments& in, int i, std::int64_t& julian_day) {
    std::int64_t host_date;
    if (!in.whole(i, host_date)) return false;
    julian_day = host_date + HOST_EPOCH_JULIAN_DAY;
    return true;
}

// The same as a date of which only julianDay is set.
inline bool read_date(Arguments& in, int i, CalendarDate& date) { return read_julian_day(in, i, date.julianDay); }

// Coupons per year, and the basis in the next position: every whole frequency of at least 1 is taken.
template <typename In>
[[gnu::always_inline]] inline bool read_coupon_terms(In& in, int frequency, CouponTerms& terms) {
    if (!in.whole_from_1(frequency, terms.frequency)) return false;
    terms.stepUnit = STEP_MONTHS;
    zComputePeriod(&terms);
    if (in.leaves(terms.monthsPerPeriod == no_months_per_period)) return false;
    if (!in.basis(frequency + 1, terms.basis)) return false;
    zComputeDaysInPeriod(&terms);
    return true;
}

// The basis of a calculation over one stretch of time.
template <typename In>
[[gnu::always_inline]] inline bool read_one_period_terms(In& in, int basis, CouponTerms& terms, Day31 day_31) {
    set_one_period(terms, day_31);
    if (!in.basis(basis, terms.basis)) return false;
    zComputeDaysInPeriod(&terms);
    return true;
}

}  // namespace finance
