// PRICEMAT and YIELDMAT: all interest is paid at maturity, simple interest to settlement and from there.
//
//  (1) PRICEMAT refuses a maturity on settlement; YIELDMAT answers 0 for it, once the issue date has been read.
//  (2) Issue after maturity is refused; issue on maturity: both answer 0. Issue is not compared with settlement.
//  (3) Times are year fractions by the basis: Bim issue to maturity, Bsm settlement to maturity, Bis issue to
//      settlement. No day is added for a 31st.
#pragma once

#include "calendar/date_arguments.hpp"
#include "calendar/day_count_in_lanes.hpp"

namespace finance {

template <typename N>
struct InterestAtMaturityOf {
    CalendarDateOf<N> settlement;  // of the dates only julianDay need be set
    CalendarDateOf<N> maturity;
    CalendarDateOf<N> issue;
    CouponTerms terms;
    N rate;
    N yield;
    N price;
};

// ---- Kernels: each leaves its answer in the field named beside it, and says whether there is one.

template <typename N>
struct YearFractionsOf {
    N Bim;
    N Bsm;
    N Bis;
};

template <typename N>
YearFractionsOf<N> year_fractions(InterestAtMaturityOf<N>& record) {
    split_for_ratio(&record.settlement);
    split_for_ratio(&record.maturity);
    split_for_ratio(&record.issue);
    YearFractionsOf<N> b{};
    b.Bim = ComputeTheAnnualRatio(&record.issue, &record.maturity, &record.terms);
    b.Bsm = ComputeTheAnnualRatio(&record.settlement, &record.maturity, &record.terms);
    b.Bis = ComputeTheAnnualRatio(&record.issue, &record.settlement, &record.terms);
    return b;
}

// (Bim rate 100 + 100) / (Bsm y + 1) - Bis rate 100: price
// Error  2.2 ulp of price plus twice the interest since issue, worst of 1e4 draws, against 200 bits
template <typename N>
TruthOf<N> price_at_maturity(InterestAtMaturityOf<N>& record) {
    const YearFractionsOf<N> b = year_fractions(record);
    const N rate = record.rate;
    const N den = b.Bsm * record.yield + 1.0;
    const auto none = den == 0.0;
    record.price = choose(
        none, [&] { return record.price; },
        [&] { return (b.Bim * rate * 100.0 + 100.0) / den - b.Bis * rate * 100.0; });
    return !none;
}

// ((100 + r Bim 100) / (Bis r 100 + P) - 1) / Bsm       r = rate / frequency, the frequency being 1: yield
// Error  1.5 ulp of the yield with + 1 for - 1, worst of 1e4 draws, against 200 bits
template <typename N>
TruthOf<N> yield_at_maturity(InterestAtMaturityOf<N>& record) {
    const YearFractionsOf<N> b = year_fractions(record);
    const N r = record.rate / static_cast<double>(record.terms.frequency);
    const N den = b.Bis * r * 100.0 + record.price;
    const auto none = den == 0.0;
    record.yield = choose(
        none, [&] { return record.yield; }, [&] { return ((100.0 + r * b.Bim * 100.0) / den - 1.0) / b.Bsm; });
    return !none;
}

// ---- Calculations

// settlement, maturity, issue, rate, yield, basis
FINANCE_CALCULATION(PRICEMAT) {
    InterestAtMaturityOf<typename In::Number> x{};
    if (!read_date(in, 1, x.settlement) || !read_date(in, 2, x.maturity) ||
        in.refuses(2, !before(x.settlement, x.maturity)) || !read_date(in, 3, x.issue) ||
        in.refuses(3, before(x.maturity, x.issue)) || in.settles(same_day(x.issue, x.maturity), 0.0) ||
        !in.positive(4, x.rate) || !in.number(5, x.yield) || !read_one_period_terms(in, 6, x.terms, Day31::as_30)) {
        return in.status();
    }
    return in.answer_where(price_at_maturity(x), x.price);
}

// settlement, maturity, issue, rate, price, basis: all dates are read before any is compared
FINANCE_CALCULATION(YIELDMAT) {
    InterestAtMaturityOf<typename In::Number> x{};
    if (!read_date(in, 1, x.settlement) || !read_date(in, 2, x.maturity) || !read_date(in, 3, x.issue) ||
        in.refuses(2, before(x.maturity, x.settlement)) || in.settles(same_day(x.maturity, x.settlement), 0.0) ||
        in.refuses(3, before(x.maturity, x.issue)) || in.settles(same_day(x.maturity, x.issue), 0.0) ||
        !in.positive(4, x.rate) || !in.positive(5, x.price) || !read_one_period_terms(in, 6, x.terms, Day31::as_30)) {
        return in.status();
    }
    return in.answer_where(yield_at_maturity(x), x.yield);
}

}  // namespace finance
