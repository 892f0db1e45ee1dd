// YEARFRAC: the time between two dates in years, by a day-count basis.
//
//  (1) The start may not be after the end. Equal dates are 0 years apart; the basis is then not looked at.
//  (2) Under 30/360 an end date on a 31st counts one day more than the rule.
#include "calendar/date_arguments.hpp"
#include "calendar/kernels.hpp"

namespace finance {

FINANCE_HANDLER(YEARFRAC) {
    Arguments in{context, result, count};
    YearFractionRecord record{};
    if (!read_date(in, 1, record.start) || !read_date(in, 2, record.end)) return in.status();
    if (before(record.end, record.start)) return in.invalid(2);
    if (same_day(record.start, record.end)) return in.answer(0.0);
    if (!read_one_period_terms(in, 3, record.terms, Day31::counted)) return in.status();
    return in.answer_if(zComputeYEARFRAC(&record), record.fraction);
}

int zComputeYEARFRAC(YearFractionRecord* record) {
    zgetMonthDayYear(&record->start);
    zgetMonthDayYear(&record->end);
    record->fraction = ComputeTheAnnualRatio(&record->start, &record->end, &record->terms);
    return record->fraction < 0.0 ? 1 : 0;
}

}  // namespace finance
