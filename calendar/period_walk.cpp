#include "calendar/period_walk.hpp"

#include <algorithm>
#include <limits>

namespace finance {

namespace {

constexpr std::int64_t months_of_year = 12;
constexpr std::int64_t most_months = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t first_month = months_of_year * std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t end_of_months = -first_month;  // 12 for each year of 32 bits: the first that is none

// Months since January of the year 0, as steps count them. A date beyond all years may have any month number.
std::int64_t month_number(const CalendarDate& date) { return months_of_year * date.year + date.month - 1; }

bool has_months(const CouponTerms& terms) { return terms.monthsPerPeriod > 0; }

// Months that k moves by, for each k: of even ones alone where a period has none.
std::int64_t months_a_step(const CouponTerms& terms) { return has_months(terms) ? terms.monthsPerPeriod : 1; }

// The month that steps count on from: the origin's. Where the first step leaves the years it leads to their other end, and
// later ones go on from there: from below them, or to an end that lies beyond them too and so before its origin.
std::int64_t month_counted_from(const CalendarDate& origin, const CouponTerms& terms, const CalendarDate& end) {
    const std::int64_t month = month_number(origin);
    if (!has_months(terms)) return month;
    const std::int64_t first = month + terms.monthsPerPeriod;
    if (first < first_month) return month + 2 * end_of_months;
    return first >= end_of_months && before(end, origin) ? month - 2 * end_of_months : month;
}

// Odd steps without months per period begin 2^31 months back; below all years, at their far end.
std::int64_t month_of_odd_steps(std::int64_t origin) {
    const std::int64_t month = origin - most_months - 1;
    return month + 1 < first_month ? month + 2 * end_of_months : month;
}

std::int64_t furthest_month(std::int64_t month, const CouponTerms& terms) {
    return has_months(terms) ? month : std::max(month, month_of_odd_steps(month));
}

// The first k whose month is no more: months count to 2^31, and years end.
std::int64_t first_round(std::int64_t month, const CouponTerms& terms) {
    const std::int64_t room = std::min(most_months, end_of_months - 1 - month);
    if (has_months(terms)) return room / terms.monthsPerPeriod + 1;
    const std::int64_t even = room + 1 + (room + 1) % 2;
    const std::int64_t odd = (end_of_months - month_of_odd_steps(month)) | 1;
    return std::min(even, odd);
}

}  // namespace

PeriodWalk::PeriodWalk(const CalendarDate& origin, const CouponTerms& terms, const CalendarDate& end)
    : origin_{origin},
      terms_{terms},
      from_{origin},
      to_{origin},
      month_{month_counted_from(origin, terms, end)},
      comes_round_{first_round(month_, terms)} {}

PeriodWalk::PeriodWalk(const CalendarDate& origin, const CouponTerms& terms) : PeriodWalk{origin, terms, origin} {}

bool PeriodWalk::step() {
    from_ = to_;
    ++k_;
    zAdvanceDate(&to_, &origin_, k_, &terms_);
    return k_ < comes_round_;
}

void PeriodWalk::skip(std::int64_t periods) {
    if (periods < 1) return;
    k_ += periods;
    zAdvanceDate(&to_, &origin_, k_, &terms_);
}

std::int64_t PeriodWalk::steps_to_year(std::int64_t year) const {
    const std::int64_t months = months_of_year * (year + 1) - 1 - furthest_month(month_, terms_);
    if (months < 1) return 0;
    return std::max<std::int64_t>(std::min(months / months_a_step(terms_), comes_round_ - 2) - k_, 0);
}

// By its day number: the fields of a date beyond all years may say anything. 146097 days are 400 years; the quotient, and
// the year that has no number 0, are off by less than three.
std::int64_t PeriodWalk::sure_steps(const CalendarDate& end) const {
    constexpr std::int64_t first_day_of_year_0 = 1721060;
    constexpr std::int64_t years_kept = 5;
    return steps_to_year((end.julianDay - first_day_of_year_0) * 400 / 146097 - years_kept);
}

}  // namespace finance
