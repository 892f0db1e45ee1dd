// A long stretch as a sum of period fractions.
//
//  (1) Whole periods are added one by one, then the part of the last period that the end cuts.
//  (2) Over a walk of centuries one cycle of 400 years, after which the calendar repeats, is walked; the other cycles add
//      the same proportions again, to the last bit of the sum that the loop would form (repeated_sum.hpp).
//  (3) Periods without months are walked one by one; a walk of five million of them ends there, wherever it is.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

enum class WalkEnd {
    on_or_after,  // the period that ends exactly on the end is the last, cut one
    after,        // it counts whole, and an empty one follows
};

// total + proportions of the periods from origin on that lie before end + the proportion of the last one up to end.
double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms);

}  // namespace finance
