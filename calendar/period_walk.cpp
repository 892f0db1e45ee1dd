#include "calendar/period_walk.hpp"

#include <algorithm>
#include <limits>

namespace finance {

bool PeriodWalk::step() {
    from_ = to_;
    ++k_;
    zAdvanceDate(&to_, &origin_, k_, &terms_);
    const bool stands_in_year_0 = terms_.monthsPerPeriod > 0 && from_.year == -1 && to_.year == 0;
    return before(from_, to_) || stands_in_year_0;
}

void PeriodWalk::skip(std::int64_t periods) {
    k_ += periods;
    zAdvanceDate(&to_, &origin_, k_, &terms_);
}

std::int64_t PeriodWalk::skippable(const CalendarDate& end) const {
    if (terms_.monthsPerPeriod <= 0) return 0;
    constexpr std::int64_t years_kept = 3;
    const std::int64_t years = std::int64_t{end.year} - to_.year - years_kept;
    const std::int64_t to_end = years * 12 / terms_.monthsPerPeriod;
    const std::int64_t countable = std::numeric_limits<std::int32_t>::max() / terms_.monthsPerPeriod - 1 - k_;
    return std::max<std::int64_t>(std::min(to_end, countable) - 1, 0);
}

}  // namespace finance
