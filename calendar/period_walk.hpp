// Whole periods one after another, away from a date.
//
//  (1) The k-th date is the origin moved by k periods, not the date before it moved by one.
//  (2) Months are counted in 32 bits, and so are years: a walk comes round where the next step would begin again from the
//      far past. Without months per period even steps move by as many months as they are counted, and odd ones lie 2^31
//      months before them (or, below the first year, in the far future); it comes round where either do.
//  (3) A walk ends where it reaches the date walked to, or where it comes round. (A date in the last year before that may
//      lie on a later round, a billion steps on, which is not followed.)
//  (4) Periods that lie well before the date walked to may be passed over at once, as many as a literal walk would.
//  (5) A walk whose very first step leads over an end of the years does not end there (3) where the date walked to lies
//      beyond that end as well.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

class PeriodWalk {
public:
    // To an end that may lie before its origin, where years of 32 bits have ended between the two (5).
    PeriodWalk(const CalendarDate& origin, const CouponTerms& terms, const CalendarDate& end);
    PeriodWalk(const CalendarDate& origin, const CouponTerms& terms);

    // The next period. False where the walk has come round.
    bool step();

    // Passes over `periods` periods; the next step is taken from there. At most as many as the next two tell.
    void skip(std::int64_t periods);

    // Steps to the last date of `year` or before it, but not to the last two before the walk comes round. At least 0.
    [[nodiscard]] std::int64_t steps_to_year(std::int64_t year) const;
    // The same to a year that surely lies before `end`, at most five before its own. No period up to there reaches it.
    [[nodiscard]] std::int64_t sure_steps(const CalendarDate& end) const;

    [[nodiscard]] const CalendarDate& from() const { return from_; }
    [[nodiscard]] const CalendarDate& to() const { return to_; }

private:
    const CalendarDate& origin_;
    const CouponTerms& terms_;
    CalendarDate from_;
    CalendarDate to_;
    std::int64_t k_ = 0;
    std::int64_t month_;        // that steps count on from
    std::int64_t comes_round_;  // the first k that does
};

}  // namespace finance
