#include "calendar/proportion_sum.hpp"

#include <algorithm>

#include "calendar/coupon_days.hpp"
#include "calendar/period_walk.hpp"

namespace finance {

namespace {

constexpr std::int64_t longest_literal_walk = 10'000'000;
constexpr std::int64_t months_in_calendar_cycle = 4800;  // 400 years; every day count repeats after them

bool whole_before(const CalendarDate& date, const CalendarDate& end, WalkEnd until) {
    return until == WalkEnd::after ? !before(end, date) : before(date, end);
}

double whole_period(const PeriodWalk& walk, CouponTerms* terms) {
    return Compute1CouponProportion(&walk.from(), &walk.to(), &walk.from(), &walk.to(), terms);
}

// Whole cycles on the way to `limit`: one is summed step by step, the others are passed over at its sum.
double sum_of_cycles(PeriodWalk& walk, const CalendarDate& limit, CouponTerms* terms) {
    const std::int64_t in_cycle = months_in_calendar_cycle / terms->monthsPerPeriod;
    const std::int64_t cycles = walk.skippable(limit) / in_cycle;
    if (cycles < 1) return 0.0;
    double cycle = 0.0;
    for (std::int64_t k = 0; k < in_cycle; ++k) {
        walk.step();
        cycle += whole_period(walk, terms);
    }
    walk.skip((cycles - 1) * in_cycle);
    return static_cast<double>(cycles) * cycle;
}

// Periods up to three years before the end, or a cycle less. The calendar repeats up to the years whose day numbers are
// negative, and again from year 1 on; between them, where -1 and 0 are one year, the walk goes step by step.
double sum_of_long_walk(PeriodWalk& walk, const CalendarDate& end, CouponTerms* terms) {
    constexpr std::int32_t last_uniform_year = -4912;
    CalendarDate far_past = end;
    far_past.year = std::min(end.year, last_uniform_year);
    const double early = sum_of_cycles(walk, far_past, terms);
    if (end.year <= 1) return early;
    double between = 0.0;
    while (walk.to().year < 1) {
        walk.step();
        between += whole_period(walk, terms);
    }
    return early + between + sum_of_cycles(walk, end, terms);
}

}  // namespace

double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms) {
    PeriodWalk walk{origin, *terms};
    if (walk.skippable(end) > longest_literal_walk) total += sum_of_long_walk(walk, end, terms);
    while (walk.step() && whole_before(walk.to(), end, until)) total += whole_period(walk, terms);
    return total + Compute1CouponProportion(&walk.from(), &end, &walk.from(), &walk.to(), terms);
}

}  // namespace finance
