// YEARFRAC: the time between two dates in years, by a day-count basis.
//
//  (1) The start may not be after the end. Equal dates are 0 years apart; the basis is then not looked at.
//  (2) Under 30/360 an end date on a 31st counts one day more than the rule.
#pragma once

#include "calendar/date_arguments.hpp"
#include "calendar/day_count_in_lanes.hpp"
#include "calendar/kernels.hpp"

namespace finance {

// False for a negative fraction.
template <typename N>
TruthOf<N> year_fraction(YearFractionRecordOf<N>& record) {
    record.fraction = years_between(record.start, record.end, record.terms);
    return !(record.fraction < 0.0);
}

FINANCE_CALCULATION(YEARFRAC) {
    YearFractionRecordOf<typename In::Number> record{};
    if (!read_date(in, 1, record.start) || !read_date(in, 2, record.end) ||
        in.refuses(2, before(record.end, record.start)) || in.settles(same_day(record.start, record.end), 0.0) ||
        !read_one_period_terms(in, 3, record.terms, Day31::counted)) {
        return in.status();
    }
    return in.answer_where(year_fraction(record), record.fraction);
}

}  // namespace finance
