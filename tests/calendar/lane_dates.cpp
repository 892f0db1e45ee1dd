// Compiled once for each set of instructions.
#include "tests/calendar/lane_dates.hpp"

#include "calendar/coupons_in_lanes.hpp"
#include "lanes/instruction_set.hpp"

namespace finance::test {
namespace {

using N = Lanes<InstructionSet>;
using Date = LaneDate<InstructionSet>;

Date date_at(const double* julian_days, std::size_t row) {
    Date date{};
    date.julianDay = N::load(julian_days + row);
    return date;
}

Date complete_date_at(const double* julian_days, std::size_t row) {
    Date date = date_at(julian_days, row);
    zgetMonthDayYear(&date);
    return date;
}

N number_of(N::Truth truth) { return select(truth, N{1.0}, N{0.0}); }

void split(const DateFields& dates, std::size_t rows) {
    for (std::size_t row = 0; row < rows; row += N::width) {
        const Date date = complete_date_at(dates.julian_day, row);
        date.day.store(dates.day + row);
        date.month.store(dates.month + row);
        date.year.store(dates.year + row);
        number_of(ends_month(date)).store(dates.ends_month + row);
        zlastDay(date.year, date.month).store(dates.last_day + row);
        Date joined{date.day, date.month, date.year, N{0.0}};
        ConvertDateToJulian(&joined);
        joined.julianDay.store(dates.joined + row);
    }
}

void count(const DatePairs& pairs, std::size_t rows, const CouponTerms& terms) {
    for (std::size_t row = 0; row < rows; row += N::width) {
        const Date start = complete_date_at(pairs.start, row);
        const Date end = complete_date_at(pairs.end, row);
        days_between(start, end, terms).store(pairs.days + row);
        ComputeTheAnnualRatio(&start, &end, &terms).store(pairs.ratio + row);
    }
}

void find_quantities(const Quantities& to, std::size_t rows, const CouponTerms& terms) {
    for (std::size_t row = 0; row < rows; row += N::width) {
        Date settlement = date_at(to.settlement, row);
        Date maturity = date_at(to.maturity, row);
        const auto found = find_coupon_quantities(settlement, maturity, terms);
        found.couponCount.store(to.count + row);
        found.daysInPeriod.store(to.days_in_period + row);
        found.daysAccrued.store(to.days_accrued + row);
        number_of(found.onCouponDate).store(to.on_coupon_date + row);
    }
}

}  // namespace

#ifdef ZELKOVAN_WIDE_LANES
constexpr LaneDates lane_dates_avx2{"AVX2", split, count, find_quantities};
#else
constexpr LaneDates lane_dates_sse2{"SSE2", split, count, find_quantities};
#endif

}  // namespace finance::test
