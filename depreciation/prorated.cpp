// AMORLINC and AMORDEGRC: linear and degressive depreciation by accounting periods, the first prorated by days.
//
//  (1) The first period counts the year fraction from the purchase to its end, by the basis; ACT/360 is refused. The
//      end may lie before the purchase: the fraction then decides.
//  (2) Under ACTUAL a year has the length of the purchase's year. AMORDEGRC adds a day for an end on a 31st, AMORLINC
//      does not.
//  (3) AMORLINC's salvage is at most the cost; AMORDEGRC's is not bounded.
//  (4) AMORDEGRC multiplies the rate by 1.5 for a life of up to 4 periods, 2 up to 6, 2.5 beyond; a life below 3 has no
//      depreciation. Its last two periods take a half of what is left, and the rest. Its amounts are whole units.
#include "depreciation/prorated.hpp"

#include <cmath>

#include "calendar/date_arguments.hpp"
#include "depreciation/rounding.hpp"

namespace finance {

// ---- Handlers

namespace {

using Compute = int (*)(ProratedRecord* record);

enum class Salvage : bool { any, at_most_cost };

// cost, purchase, end of the first period, salvage, period, rate, basis
Status prorated_depreciation(Arguments&& in, Salvage allowed, Compute compute) {
    CalendarDate purchase{};
    CalendarDate end{};
    CouponTerms terms{};
    ProratedRecord record{};
    record.purchase = &purchase;
    record.firstPeriodEnd = &end;
    record.terms = &terms;
    if (!in.positive(1, record.cost) || !read_date(in, 2, purchase) || !read_date(in, 3, end) ||
        !in.number(4, record.salvage)) {
        return in.status();
    }
    if (record.salvage < 0.0 || (allowed == Salvage::at_most_cost && record.salvage > record.cost)) {
        return in.invalid(4);
    }
    std::int64_t period;
    if (!in.whole(5, period)) return in.status();
    if (period < 0) return in.invalid(5);
    record.period = low_32_bits(period);
    if (!in.positive(6, record.rate) || !read_one_period_terms(in, 7, terms, Day31::counted)) return in.status();
    if (terms.basis == BASIS_ACT_360) return in.invalid(7);
    return in.answer_if(compute(&record), record.result);
}

}  // namespace

FINANCE_HANDLER(AMORLINC) {
    return prorated_depreciation({context, result, count}, Salvage::at_most_cost, zComputeAMORLINC);
}

FINANCE_HANDLER(AMORDEGRC) { return prorated_depreciation({context, result, count}, Salvage::any, zComputeAMORDEGRC); }

// ---- Kernels

namespace {

// The life 1 / rate in whole periods; a fraction counts as one more.
std::int32_t whole_life(double L) {
    constexpr double allowance = 1.000000000001;
    const std::int32_t n = truncate_to_int32(L * allowance);
    return std::abs(n - L) > n * smallest_that_counts ? wrapping_add(n, 1) : n;
}

double first_period_fraction(ProratedRecord* record) {
    return ComputeTheAnnualRatio(record->purchase, record->firstPeriodEnd, record->terms);
}

}  // namespace

// f A in period 0, then A, until the last one takes what is left      A = cost rate
int zComputeAMORLINC(ProratedRecord* record) {
    record->terms->startYearLength = 1;
    record->terms->noDay31Adjust = 1;
    record->result = 0.0;
    std::int32_t period = record->period;
    if (whole_life(1.0 / record->rate) < period) return 0;
    zgetMonthDayYear(record->purchase);
    zgetMonthDayYear(record->firstPeriodEnd);
    if (same_day(*record->purchase, *record->firstPeriodEnd)) period = wrapping_add(period, 1);
    const double A = record->cost * record->rate;
    const double f = first_period_fraction(record);
    if (period == 0) {
        record->result = f * A;
        return 0;
    }
    const double left = record->cost - f * A - record->salvage - (static_cast<double>(period) - 1.0) * A;
    const double amount = A < left ? A : left;
    record->result = amount > 0.0 ? amount : 0.0;
    return 0;
}

int zComputeAMORDEGRC(ProratedRecord* record) {
    record->result = 0.0;
    const double L = 1.0 / record->rate;
    const std::int32_t n = truncate_to_int32(std::floor(L));
    if (n < 3) return 0;
    const double c = L <= 4.000000000004 ? 1.5 : L <= 6.0000000000060005 ? 2.0 : 2.5;
    if (n < record->period) return 0;
    zgetMonthDayYear(record->purchase);
    zgetMonthDayYear(record->firstPeriodEnd);
    record->terms->startYearLength = 1;
    double d0 = record->cost * c * record->rate * first_period_fraction(record);
    if (record->salvage > record->cost - d0) d0 = record->cost - record->salvage;
    d0 = round_half_away(d0);
    record->result = record->period < 1
                         ? d0
                         : degressive_amount(record->cost - d0, record->salvage, c * record->rate, n, record->period);
    return 0;
}

}  // namespace finance
