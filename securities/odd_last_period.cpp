// ODDLPRICE and ODDLYIELD: the last period runs from the last interest date to a maturity that is not a period away.
//
//  (1) Last interest date before settlement before maturity. Settlement on either: both answer 0, whatever the other
//      arguments. The last interest date is not compared with maturity.
//  (2) Time is counted in coupon periods: A' from the last interest date to settlement, DC in the whole last period,
//      DSC' from settlement to maturity. The first is counted from the last interest date, the others along the
//      maturity's schedule.
//  (3) ACT/360 and ACT/365 count as ACTUAL here.
#include "calendar/coupon_days.hpp"
#include "calendar/proportion_sum.hpp"
#include "securities/kernels.hpp"

namespace finance {

// ---- Handlers

namespace {

// settlement, maturity, last interest date, rate, given (yield or price), redemption, frequency, basis
Status odd_last_period(Arguments&& in, double SecurityComputeRecord::*given, int (*compute)(SecurityComputeRecord*),
                       double SecurityComputeRecord::*answer) {
    Security bond;
    if (!read_date(in, 1, bond.settlement) || !read_date(in, 2, bond.maturity) ||
        !read_date(in, 3, bond.last_interest)) {
        return in.status();
    }
    if (before(bond.maturity, bond.settlement)) return in.invalid(2);
    if (same_day(bond.settlement, bond.maturity)) return in.answer(0.0);
    if (before(bond.settlement, bond.last_interest)) return in.invalid(3);
    if (same_day(bond.settlement, bond.last_interest)) return in.answer(0.0);
    if (!read_bond_terms(in, 4, &Arguments::number, bond.record.*given, bond)) return in.status();
    return in.answer_if(compute(&bond.record), bond.record.*answer);
}

}  // namespace

FINANCE_HANDLER(ODDLPRICE) {
    return odd_last_period({context, result, count}, &SecurityComputeRecord::yield, zComputeODDLPRICE,
                           &SecurityComputeRecord::oddLastPrice);
}

FINANCE_HANDLER(ODDLYIELD) {
    return odd_last_period({context, result, count}, &SecurityComputeRecord::oddLastPrice, zComputeODDLYIELD,
                           &SecurityComputeRecord::yield);
}

// ---- Kernels

namespace {

// The quantities of (2).
void find_odd_last_quantities(SecurityComputeRecord* record) {
    CouponTerms* terms = record->terms;
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    zgetMonthDayYear(record->lastInterest);
    if (terms->basis == BASIS_ACT_360 || terms->basis == BASIS_ACT_365) terms->basis = BASIS_ACTUAL;
    record->accruedPeriods = sum_of_proportions(0.0, *record->lastInterest, *record->settlement, WalkEnd::after, terms);
    record->lastPeriodLength =
        ComputeCouponProportions(record->lastInterest, record->maturity, record->maturity, terms);
    record->remainingPeriods = ComputeCouponProportions(record->settlement, record->maturity, record->maturity, terms);
}

}  // namespace

// (DC c + R) / (1 + (y/f) DSC') - c A'
// Guard  the divisor at least 2^-26.5
// Error  2.6 ulp of price plus twice c A', worst of 1e4 draws, against 200 bits
int zComputeODDLPRICE(SecurityComputeRecord* record) {
    find_odd_last_quantities(record);
    const double f = clamped_frequency(*record->terms);
    const double c = 100.0 * record->rate / f;
    const double den = 1.0 + (record->yield / f) * record->remainingPeriods;
    if (den < smallest_that_counts) return 2;
    record->oddLastPrice = (record->lastPeriodLength * c + record->redemption) / den - c * record->accruedPeriods;
    return 0;
}

// (f / DSC') ((c DC + R) / (A' c + P) - 1)
// Error  2 ulp of the yield with + 1 for - 1, worst of 1e4 draws, against 200 bits
int zComputeODDLYIELD(SecurityComputeRecord* record) {
    find_odd_last_quantities(record);
    const double f = clamped_frequency(*record->terms);
    const double c = 100.0 * record->rate / f;
    const double den = record->accruedPeriods * c + record->oddLastPrice;
    if (den == 0.0 || record->remainingPeriods == 0.0) return 1;
    record->yield = (f / record->remainingPeriods) * ((c * record->lastPeriodLength + record->redemption) / den - 1.0);
    return 0;
}

}  // namespace finance
