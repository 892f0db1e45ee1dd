// Whole periods one after another, away from a date.
//
//  (1) The k-th date is the origin moved by k periods, not the date before it moved by one.
//  (2) A walk ends where a step does not move the date forward: a frequency without months per period, or years beyond
//      32 bits. From year -1 to year 0, which stand for the same year, a walk may stand still and goes on.
//  (3) Periods that lie well before the date walked to may be passed over at once, as many as a literal walk would.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

class PeriodWalk {
public:
    PeriodWalk(const CalendarDate& origin, const CouponTerms& terms)
        : origin_{origin}, terms_{terms}, from_{origin}, to_{origin} {}

    // The next period. False where the walk has ended; to() is then the date that was no step forward.
    bool step();

    // Passes over `periods` periods; the next step is taken from there. At most skippable().
    void skip(std::int64_t periods);

    // Periods that may be skipped on the way to `end`: those that end three calendar years or more before it, as far as
    // they can be counted in months of 32 bits. 0 where there are none.
    [[nodiscard]] std::int64_t skippable(const CalendarDate& end) const;

    [[nodiscard]] const CalendarDate& from() const { return from_; }
    [[nodiscard]] const CalendarDate& to() const { return to_; }

private:
    const CalendarDate& origin_;
    const CouponTerms& terms_;
    CalendarDate from_;
    CalendarDate to_;
    std::int64_t k_ = 0;
};

}  // namespace finance
