#include "calendar/proportion_sum.hpp"

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

// Sums one cycle step by step, and passes over the others at its sum.
double sum_of_cycles(PeriodWalk& walk, std::int64_t periods, CouponTerms* terms) {
    const std::int64_t in_cycle = months_in_calendar_cycle / terms->monthsPerPeriod;
    const std::int64_t cycles = periods / in_cycle;
    double cycle = 0.0;
    for (std::int64_t k = 0; k < in_cycle; ++k) {
        walk.step();
        cycle += whole_period(walk, terms);
    }
    walk.skip((cycles - 1) * in_cycle);
    return static_cast<double>(cycles) * cycle;
}

}  // namespace

double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms) {
    PeriodWalk walk{origin, *terms};
    if (const std::int64_t periods = walk.skippable(end); periods > longest_literal_walk) {
        total += sum_of_cycles(walk, periods, terms);
    }
    while (walk.step() && whole_before(walk.to(), end, until)) total += whole_period(walk, terms);
    return total + Compute1CouponProportion(&walk.from(), &end, &walk.from(), &walk.to(), terms);
}

}  // namespace finance
