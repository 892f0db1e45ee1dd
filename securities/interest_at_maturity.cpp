// PRICEMAT and YIELDMAT: all interest is paid at maturity, simple interest to settlement and from there.
//
//  (1) PRICEMAT refuses a maturity on settlement; YIELDMAT answers 0 for it, once the issue date has been read.
//  (2) Issue after maturity is refused; issue on maturity: both answer 0. Issue is not compared with settlement.
//  (3) Times are year fractions by the basis: Bim issue to maturity, Bsm settlement to maturity, Bis issue to
//      settlement. No day is added for a 31st.
#include "securities/kernels.hpp"

namespace finance {

// ---- Handlers

// settlement, maturity, issue, rate, yield, basis
FINANCE_HANDLER(PRICEMAT) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_date(in, 1, bond.settlement) || !read_date(in, 2, bond.maturity)) return in.status();
    if (!before(bond.settlement, bond.maturity)) return in.invalid(2);
    if (!read_date(in, 3, bond.issue)) return in.status();
    if (before(bond.maturity, bond.issue)) return in.invalid(3);
    if (same_day(bond.issue, bond.maturity)) return in.answer(0.0);
    if (!in.positive(4, bond.record.rate) || !in.number(5, bond.record.yield) ||
        !read_one_period_terms(in, 6, bond.terms, Day31::as_30)) {
        return in.status();
    }
    return in.answer_if(zComputePRICEMAT(&bond.record), bond.record.maturityPrice);
}

// settlement, maturity, issue, rate, price, basis: all dates are read before any is compared
FINANCE_HANDLER(YIELDMAT) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_date(in, 1, bond.settlement) || !read_date(in, 2, bond.maturity) || !read_date(in, 3, bond.issue)) {
        return in.status();
    }
    if (before(bond.maturity, bond.settlement)) return in.invalid(2);
    if (same_day(bond.maturity, bond.settlement)) return in.answer(0.0);
    if (before(bond.maturity, bond.issue)) return in.invalid(3);
    if (same_day(bond.maturity, bond.issue)) return in.answer(0.0);
    if (!in.positive(4, bond.record.rate) || !in.positive(5, bond.record.maturityPrice) ||
        !read_one_period_terms(in, 6, bond.terms, Day31::as_30)) {
        return in.status();
    }
    return in.answer_if(zComputeYIELDMAT(&bond.record), bond.record.yield);
}

// ---- Kernels

namespace {

struct YearFractions {
    double Bim;
    double Bsm;
    double Bis;
};

YearFractions year_fractions(SecurityComputeRecord* record) {
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    zgetMonthDayYear(record->issue);
    YearFractions b{};
    b.Bim = ComputeTheAnnualRatio(record->issue, record->maturity, record->terms);
    b.Bsm = ComputeTheAnnualRatio(record->settlement, record->maturity, record->terms);
    b.Bis = ComputeTheAnnualRatio(record->issue, record->settlement, record->terms);
    return b;
}

}  // namespace

// (Bim rate 100 + 100) / (Bsm y + 1) - Bis rate 100
// Error  2.2 ulp of price plus twice the interest since issue, worst of 1e4 draws, against 200 bits
int zComputePRICEMAT(SecurityComputeRecord* record) {
    const auto [Bim, Bsm, Bis] = year_fractions(record);
    const double rate = record->rate;
    const double den = Bsm * record->yield + 1.0;
    if (den == 0.0) return 1;
    record->maturityPrice = (Bim * rate * 100.0 + 100.0) / den - Bis * rate * 100.0;
    return 0;
}

// ((100 + r Bim 100) / (Bis r 100 + P) - 1) / Bsm       r = rate / frequency, the frequency being 1
// Error  1.5 ulp of the yield with + 1 for - 1, worst of 1e4 draws, against 200 bits
int zComputeYIELDMAT(SecurityComputeRecord* record) {
    const auto [Bim, Bsm, Bis] = year_fractions(record);
    const double r = record->rate / record->terms->frequency;
    const double den = Bis * r * 100.0 + record->maturityPrice;
    if (den == 0.0) return 1;
    record->yield = ((100.0 + r * Bim * 100.0) / den - 1.0) / Bsm;
    return 0;
}

}  // namespace finance
