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

std::int64_t first_round(const CalendarDate& origin, const CouponTerms& terms) {
    const std::int64_t month = month_number(origin);
    const std::int64_t step = months_a_step(terms);
    const std::int64_t first = month + (has_months(terms) ? step : step - most_months - 1);
    if (first < first_month || first >= end_of_months) return 1;
    const std::int64_t room = std::min(most_months, end_of_months - 1 - month);  // months without coming round
    const std::int64_t k = room / step + 1;
    return has_months(terms) ? k : k + k % 2;
}

}  // namespace

PeriodWalk::PeriodWalk(const CalendarDate& origin, const CouponTerms& terms)
    : origin_{origin}, terms_{terms}, from_{origin}, to_{origin}, comes_round_{first_round(origin, terms)} {}

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
    const std::int64_t months = months_of_year * (year + 1) - 1 - month_number(origin_);
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
