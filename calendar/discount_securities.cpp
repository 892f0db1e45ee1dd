// DISC, INTRATE, PRICEDISC, RECEIVED, YIELDDISC: simple interest over the one period from settlement to maturity.
//
//  (1) t is the year fraction from settlement to maturity by the basis.
//  (2) Settlement may not be after maturity. On maturity itself each answers 0, whatever the other arguments.
//  (3) Both amounts are above 0; nothing bounds them from above.
//  (4) DISC adds no day for a maturity on a 31st. RECEIVED counts every leap year touched as 366 days.
//  (5) DISC refuses t = 0, INTRATE only a negative t; PRICEDISC and YIELDDISC refuse none.
#include <cmath>

#include "calendar/date_arguments.hpp"
#include "calendar/kernels.hpp"

namespace finance {

// ---- Handlers

namespace {

using Compute = int (*)(DiscountRecord* record);

// settlement, maturity, two amounts, basis
Status discount_security(Arguments&& in, Compute compute, std::int8_t no_day_31 = 0) {
    DiscountRecord record{};
    if (!read_date(in, 1, record.settlement) || !read_date(in, 2, record.maturity)) return in.status();
    if (before(record.maturity, record.settlement)) return in.invalid(2);
    if (same_day(record.settlement, record.maturity)) return in.answer(0.0);
    if (!in.positive(3, record.first) || !in.positive(4, record.second) ||
        !read_one_period_terms(in, 5, record.terms, Day31::counted)) {
        return in.status();
    }
    record.terms.noDay31Adjust = no_day_31;
    return in.answer_if(compute(&record), record.answer);
}

}  // namespace

FINANCE_HANDLER(DISC) { return discount_security({context, result, count}, zComputeDISC, 1); }

FINANCE_HANDLER(INTRATE) { return discount_security({context, result, count}, zComputeINTRATE); }

FINANCE_HANDLER(PRICEDISC) { return discount_security({context, result, count}, zComputePRICEDISC); }

FINANCE_HANDLER(RECEIVED) { return discount_security({context, result, count}, zComputeRECEIVED); }

FINANCE_HANDLER(YIELDDISC) { return discount_security({context, result, count}, zComputeYIELDDISC); }

// ---- Kernels

namespace {

double years_to_maturity(DiscountRecord* record) {
    zgetMonthDayYear(&record->settlement);
    zgetMonthDayYear(&record->maturity);
    return ComputeTheAnnualRatio(&record->settlement, &record->maturity, &record->terms);
}

}  // namespace

// (r - p) / r / t
int zComputeDISC(DiscountRecord* record) {
    const double p = record->first;
    const double r = record->second;
    const double t = years_to_maturity(record);
    if (t <= 0.0 || r == 0.0) return 1;
    record->answer = (r - p) / r / t;
    return 0;
}

// (r - i) / i / t
int zComputeINTRATE(DiscountRecord* record) {
    const double i = record->first;
    const double r = record->second;
    const double t = years_to_maturity(record);
    if (t < 0.0) return 1;
    record->answer = (r - i) / i / t;
    return 0;
}

// (1 - d t) r
int zComputePRICEDISC(DiscountRecord* record) {
    const double d = record->first;
    const double r = record->second;
    const double t = years_to_maturity(record);
    record->answer = (1.0 - d * t) * r;
    return 0;
}

// i / (1 - d t)
// Guard  a divisor below 1 that would take the quotient beyond the largest double
int zComputeRECEIVED(DiscountRecord* record) {
    const double i = record->first;
    const double d = record->second;
    record->terms.allLeapYears = 1;
    const double q = d * years_to_maturity(record);
    const double divisor = std::abs(1.0 - q);
    if (divisor < 1.0 && i > divisor * largest_double) return 1;
    record->answer = i / (1.0 - q);
    return 0;
}

// (r - p) / p / t
int zComputeYIELDDISC(DiscountRecord* record) {
    const double p = record->first;
    const double r = record->second;
    const double t = years_to_maturity(record);
    record->answer = (r - p) / p / t;
    return 0;
}

}  // namespace finance
