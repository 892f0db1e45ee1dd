// The dates of lanes as functions over arrays, by each set of instructions. Lengths are multiples of 4.
#pragma once

#include <cstddef>

#include "calendar/day_count.hpp"

namespace finance::test {

// Fields of dates, an array each.
struct DateFields {
    double* julian_day;
    double* day;
    double* month;
    double* year;
    double* ends_month;  // 1 or 0
    double* last_day;    // of the month
    double* joined;      // the Julian day number of day, month and year
};

// Two dates of each row by Julian day number, and what is found for them.
struct DatePairs {
    const double* start;
    const double* end;
    double* days;
    double* ratio;
};
struct Quantities {
    const double* settlement;
    const double* maturity;
    double* count;
    double* days_in_period;
    double* days_accrued;
    double* on_coupon_date;  // 1 or 0
};

struct LaneDates {
    const char* name;
    void (*split)(const DateFields& dates, std::size_t rows);  // fills all from julian_day
    void (*count)(const DatePairs& pairs, std::size_t rows, const CouponTerms& terms);
    void (*quantities)(const Quantities& quantities, std::size_t rows, const CouponTerms& terms);
};

extern const LaneDates lane_dates_sse2;
extern const LaneDates lane_dates_avx2;

}  // namespace finance::test
