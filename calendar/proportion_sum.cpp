#include "calendar/proportion_sum.hpp"

#include <algorithm>
#include <array>
#include <numeric>

#include "abi/steps.hpp"
#include "calendar/coupon_days.hpp"
#include "calendar/period_walk.hpp"
#include "calendar/repeated_sum.hpp"

namespace finance {

namespace {

constexpr std::int64_t months_in_calendar_cycle = 4800;  // 400 years; every day count repeats after them

// Walks with months end of themselves, after little more than two cycles.
constexpr std::int64_t longest_walk_without_months = std::max<std::int64_t>(5'000'000 / walks_shortened, 10'000);

std::int64_t periods_in_cycle(const CouponTerms& terms) { return months_in_calendar_cycle / terms.monthsPerPeriod; }

bool whole_before(const CalendarDate& date, const CalendarDate& end, WalkEnd until) {
    return until == WalkEnd::after ? !before(end, date) : before(date, end);
}

double whole_period(const PeriodWalk& walk, CouponTerms* terms) {
    return Compute1CouponProportion(&walk.from(), &walk.to(), &walk.from(), &walk.to(), terms);
}

double add_periods(double total, PeriodWalk& walk, std::int64_t periods, CouponTerms* terms) {
    for (std::int64_t k = 0; k < periods; ++k) {
        count_step();
        walk.step();
        total += whole_period(walk, terms);
    }
    return total;
}

// Periods of years among which the calendar repeats: one cycle is walked, the others add the same proportions again.
double add_cycles(double total, PeriodWalk& walk, std::int64_t periods, CouponTerms* terms) {
    const std::int64_t in_cycle = periods_in_cycle(*terms);
    const std::int64_t cycles = periods / in_cycle;
    if (cycles < 2) return add_periods(total, walk, periods, terms);
    std::array<double, months_in_calendar_cycle> proportions;
    const auto end = proportions.begin() + in_cycle;
    std::generate(proportions.begin(), end, [&] {
        count_step();
        walk.step();
        return whole_period(walk, terms);
    });
    total = repeat_sum(total, cycles, [&](double sum) {
        count_steps(end - proportions.begin());
        return std::accumulate(proportions.begin(), end, sum);
    });
    walk.skip((cycles - 1) * in_cycle);
    return add_periods(total, walk, periods % in_cycle, terms);
}

// Periods that end well before `end`. The calendar repeats up to the years whose day numbers are negative, and again
// from year 1 on; between them, where -1 and 0 are one year, the walk goes step by step.
double add_sure_periods(double total, PeriodWalk& walk, const CalendarDate& end, CouponTerms* terms) {
    constexpr std::int64_t last_uniform_year = -4912;
    const auto steps_left = [&](std::int64_t year) { return std::min(walk.steps_to_year(year), walk.sure_steps(end)); };
    total = add_periods(total, walk, 1, terms);  // the origin's own fields may be no date
    total = add_cycles(total, walk, steps_left(last_uniform_year), terms);
    total = add_periods(total, walk, steps_left(0), terms);
    total = add_periods(total, walk, std::min<std::int64_t>(walk.sure_steps(end), 1), terms);  // over the end of year 0
    return add_cycles(total, walk, walk.sure_steps(end), terms);
}

}  // namespace

double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms) {
    PeriodWalk walk{origin, *terms, end};
    const bool long_walk = terms->monthsPerPeriod > 0 && walk.sure_steps(end) > 2 * periods_in_cycle(*terms);
    if (long_walk) total = add_sure_periods(total, walk, end, terms);
    std::int64_t steps_left = longest_walk_without_months;
    while (true) {
        count_step();
        const bool goes_on = walk.step();
        if (!whole_before(walk.to(), end, until) || !goes_on || --steps_left == 0) break;
        total += whole_period(walk, terms);
    }
    return total + Compute1CouponProportion(&walk.from(), &end, &walk.from(), &walk.to(), terms);
}

}  // namespace finance
