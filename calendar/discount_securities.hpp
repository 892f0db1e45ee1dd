// DISC, INTRATE, PRICEDISC, RECEIVED, YIELDDISC: simple interest over the one period from settlement to maturity.
//
//  (1) t is the year fraction from settlement to maturity by the basis.
//  (2) Settlement may not be after maturity. On maturity itself each answers 0, whatever the other arguments.
//  (3) Both amounts are above 0; nothing bounds them from above.
//  (4) DISC adds no day for a maturity on a 31st. RECEIVED counts every leap year touched as 366 days.
//  (5) DISC refuses t = 0, INTRATE only a negative t; PRICEDISC and YIELDDISC refuse none.
#pragma once

#include "calendar/date_arguments.hpp"
#include "calendar/day_count_in_lanes.hpp"
#include "calendar/kernels.hpp"

namespace finance {

// ---- Kernels: each leaves its answer in the record, and says whether there is one.

template <typename N>
N years_to_maturity(DiscountRecordOf<N>& record) {
    return years_between(record.settlement, record.maturity, record.terms);
}

// (r - p) / r / t
template <typename N>
TruthOf<N> discount_rate(DiscountRecordOf<N>& record) {
    const N p = record.first;
    const N r = record.second;
    const N t = years_to_maturity(record);
    const auto none = either(t <= 0.0, r == 0.0);
    record.answer = choose(
        none, [&] { return record.answer; }, [&] { return (r - p) / r / t; });
    return !none;
}

// (r - i) / i / t
template <typename N>
TruthOf<N> interest_rate(DiscountRecordOf<N>& record) {
    const N i = record.first;
    const N r = record.second;
    const N t = years_to_maturity(record);
    record.answer = (r - i) / i / t;
    return !(t < 0.0);
}

// (1 - d t) r
template <typename N>
void discounted_price(DiscountRecordOf<N>& record) {
    const N d = record.first;
    const N r = record.second;
    const N t = years_to_maturity(record);
    record.answer = (1.0 - d * t) * r;
}

// i / (1 - d t)
// Guard  a divisor below 1 that would take the quotient beyond the largest double
template <typename N>
TruthOf<N> amount_received(DiscountRecordOf<N>& record) {
    const N i = record.first;
    const N d = record.second;
    record.terms.allLeapYears = 1;
    const N q = d * years_to_maturity(record);
    const N divisor = abs(1.0 - q);
    const auto none = both(divisor<1.0, i> divisor * largest_double);
    record.answer = choose(
        none, [&] { return record.answer; }, [&] { return i / (1.0 - q); });
    return !none;
}

// (r - p) / p / t
template <typename N>
void discount_yield(DiscountRecordOf<N>& record) {
    const N p = record.first;
    const N r = record.second;
    const N t = years_to_maturity(record);
    record.answer = (r - p) / p / t;
}

// ---- Calculations

// settlement, maturity, two amounts, basis
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_discount_security(In& in, DiscountRecordOf<N>& record) {
    return read_date(in, 1, record.settlement) && read_date(in, 2, record.maturity) &&
           !in.refuses(2, before(record.maturity, record.settlement)) &&
           !in.settles(same_day(record.settlement, record.maturity), 0.0) && in.positive(3, record.first) &&
           in.positive(4, record.second) && read_one_period_terms(in, 5, record.terms, Day31::counted);
}

FINANCE_CALCULATION(DISC) {
    DiscountRecordOf<typename In::Number> record{};
    if (!read_discount_security(in, record)) return in.status();
    record.terms.noDay31Adjust = 1;
    return in.answer_where(discount_rate(record), record.answer);
}

FINANCE_CALCULATION(INTRATE) {
    DiscountRecordOf<typename In::Number> record{};
    if (!read_discount_security(in, record)) return in.status();
    return in.answer_where(interest_rate(record), record.answer);
}

FINANCE_CALCULATION(PRICEDISC) {
    DiscountRecordOf<typename In::Number> record{};
    if (!read_discount_security(in, record)) return in.status();
    discounted_price(record);
    return in.answer(record.answer);
}

FINANCE_CALCULATION(RECEIVED) {
    DiscountRecordOf<typename In::Number> record{};
    if (!read_discount_security(in, record)) return in.status();
    return in.answer_where(amount_received(record), record.answer);
}

FINANCE_CALCULATION(YIELDDISC) {
    DiscountRecordOf<typename In::Number> record{};
    if (!read_discount_security(in, record)) return in.status();
    discount_yield(record);
    return in.answer(record.answer);
}

}  // namespace finance
