// ODDFPRICE and ODDFYIELD: the first period runs from issue to a first coupon date that is not a period away.
//
//  (1) issue, settlement, first coupon and maturity stand in this order of time. Two neighbours on one day: both answer
//      0, whatever the other arguments.
//  (2) The first coupon date must be a date of the maturity's schedule; if not, it is the argument at fault.
//  (3) Time is counted in coupon periods: A1 since issue, DFC in the first period, W + DSC1 from settlement to the
//      first coupon, and N periods from there to maturity.
#include <algorithm>
#include <cmath>

#include "calendar/coupon_days.hpp"
#include "calendar/coupon_schedule.hpp"
#include "elementary/functions.hpp"
#include "securities/accrual.hpp"
#include "securities/kernels.hpp"
#include "securities/long_sums.hpp"

namespace finance {

// ---- Handlers

namespace {

// The four dates; all are read before any is compared.
bool read_dates(Arguments& in, Security& bond) {
    return read_date(in, 1, bond.settlement) && read_date(in, 2, bond.maturity) && read_date(in, 3, bond.issue) &&
           read_date(in, 4, bond.first_coupon);
}

struct OrderVerdict {
    int out_of_order;  // the argument at fault, or 0
    bool same_day;     // two neighbours on one day
};

OrderVerdict order_of_dates(const Security& bond) {
    if (before(bond.settlement, bond.issue)) return {3, false};
    if (same_day(bond.settlement, bond.issue)) return {0, true};
    if (before(bond.first_coupon, bond.settlement)) return {4, false};
    if (same_day(bond.settlement, bond.first_coupon)) return {0, true};
    if (before(bond.maturity, bond.first_coupon)) return {4, false};
    return {0, same_day(bond.first_coupon, bond.maturity)};
}

// settlement, maturity, issue, first coupon date, rate, given (yield or price), redemption, frequency, basis
Status odd_first_period(Arguments&& in, double SecurityComputeRecord::*given, int (*compute)(SecurityComputeRecord*),
                        double SecurityComputeRecord::*answer) {
    Security bond;
    if (!read_dates(in, bond)) return in.status();
    const OrderVerdict order = order_of_dates(bond);
    if (order.out_of_order != 0) return in.invalid(order.out_of_order);
    if (order.same_day) return in.answer(0.0);
    if (!read_bond_terms(in, 5, &Arguments::number, bond.record.*given, bond)) return in.status();
    const int failure = compute(&bond.record);
    if (failure == ODDF_NO_REFERENCE_DATE) return in.invalid(4);
    return in.answer_if(failure, bond.record.*answer);
}

}  // namespace

FINANCE_HANDLER(ODDFPRICE) {
    return odd_first_period({context, result, count}, &SecurityComputeRecord::yield, zComputeODDFPRICE,
                            &SecurityComputeRecord::oddFirstPrice);
}

FINANCE_HANDLER(ODDFYIELD) {
    return odd_first_period({context, result, count}, &SecurityComputeRecord::oddFirstPrice, zComputeODDFYIELD,
                            &SecurityComputeRecord::yield);
}

// ---- Quantities

namespace {

// Coupon periods from issue to the target; how ACCRINT differs: accrual.hpp.
double periods_since_issue(SecurityComputeRecord* record, const CouponInfo& issue, const CalendarDate* target) {
    CouponList list{};
    list.startDate = record->issue;
    list.endDate = target;
    list.maturity = record->maturity;
    list.terms = record->terms;
    MakeTheCouponList(&list, issue);
    if (!before(list.firstPeriod.end, *target)) {
        return CountTheCouponDays(record->issue, target, record->terms) / list.currentPeriod->days;
    }
    const double whole_and_first = whole_and_first_periods(list);
    const CouponPeriod& last_period = last_accrual_period(list);
    const double last = CountTheCouponDays(&last_period.start, target, record->terms) / last_period.days;
    return whole_and_first + last;
}

// The quantities of (3). False where the first coupon date is on no schedule (2).
bool find_odd_first_quantities(SecurityComputeRecord* record) {
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    zgetMonthDayYear(record->issue);
    zgetMonthDayYear(record->firstCoupon);
    CouponInfo first_coupon;
    coupons_around(&first_coupon, *record->firstCoupon, *record->maturity, record->terms);
    if (first_coupon.coincidentCoupon == nullptr) return false;
    CouponInfo issue;
    coupons_around(&issue, *record->issue, *record->maturity, record->terms);
    record->accruedFraction = periods_since_issue(record, issue, record->settlement);
    record->issueToMaturity = periods_since_issue(record, issue, record->maturity);
    record->terms->proportionFloor = 0;
    record->firstPeriodLength = periods_since_issue(record, issue, record->firstCoupon);
    record->wholeCoupons = CountWholeCoupons(record->settlement, record->firstCoupon, record->maturity, record->terms);
    record->remainingFraction =
        ComputeFromSettlementToNextCoupon(record->settlement, record->firstCoupon, record->maturity, record->terms);
    record->couponCount = CountTheCoupons(record->firstCoupon, record->maturity, record->maturity, record->terms);
    return true;
}

// ---- Kernels

struct LaterCoupons {
    double sum;  // v^(e+1) + .. + v^(e+N)
    double t;    // the last of them; v^e where there are none
};

double odd_first_price(const SecurityComputeRecord& record, double c, double first, double sum, double t) {
    return (sum - record.accruedFraction) * c + first * record.firstPeriodLength + t * record.redemption;
}

// True where no later coupon changes a bit, nor the redemption at any later power: the price does not fall as t rises.
bool is_settled(const SecurityComputeRecord& record, double c, double first, const LaterCoupons& now, double v) {
    if (!std::isfinite(now.t)) return true;
    return v <= 1.0 && now.sum + now.t == now.sum &&
           same_bits(odd_first_price(record, c, first, now.sum, now.t),
                     odd_first_price(record, c, first, now.sum, 0.0));
}

// k counts one ahead of the terms added, so that N terms are added for a whole N. Ones add up to N exactly.
LaterCoupons sum_later_coupons(const SecurityComputeRecord& record, double c, double first_t, double v) {
    const double N = record.couponCount;
    if (v == 1.0) return {std::max(N, 0.0), first_t};
    const double first = c * first_t;
    LaterCoupons sums{0.0, first_t};
    const double limit = longest_literal_sum / cost_of_term(first_t) + 1.0;
    const auto step = [v](LaterCoupons& now) {
        now.t = now.t * v;
        now.sum = now.sum + now.t;
    };
    const auto at_rest = [&](const LaterCoupons& now, double left) {
        return left - 1.0 > block_of_terms && is_settled(record, c, first, now, v);
    };
    const auto closed = [=] {
        return LaterCoupons{first_t * v * sum_of_powers(v, N), first_t * elementary::pow(v, N)};
    };
    walk_terms(sums, 1.0, N + 1.0, limit, step, at_rest, closed);
    return sums;
}

}  // namespace

// (sum of v^(e+1) .. v^(e+N) - A1) c + c v^e DFC + v^(e+N) R         e = W + DSC1
// Guard  1 + y/f at least 2^-26.5
// Error  278 ulp of price plus twice c A1, worst of 1e4 draws, N from 1 to 240, against 200 bits
int zComputeODDFPRICE(SecurityComputeRecord* record) {
    if (!find_odd_first_quantities(record)) return ODDF_NO_REFERENCE_DATE;
    const double f = clamped_frequency(*record->terms);
    const double s = record->yield / f + 1.0;
    if (s < smallest_that_counts) return 2;
    const double v = 1.0 / s;
    const double c = 100.0 * record->rate / f;
    const double e = record->wholeCoupons + record->remainingFraction;
    const double t = elementary::pow(v, e);
    const LaterCoupons later = sum_later_coupons(*record, c, t, v);
    record->oddFirstPrice = odd_first_price(*record, c, c * t, later.sum, later.t);
    return 0;
}

int zComputeODDFYIELD(SecurityComputeRecord* record) {
    if (!find_odd_first_quantities(record)) return ODDF_NO_REFERENCE_DATE;
    return find_rate(ComputeF_ODDFYIELD, record, 0.1, &record->yield) ? 0 : 1;
}

namespace {

// F and F' of the sums over later coupons, for a last power t and its derivative g; of the first one: v^e, its derivative.
double price_less_given(const SecurityComputeRecord& record, double c, double first_t, double S, double t) {
    return c * (record.firstPeriodLength * first_t + S - record.accruedFraction) + record.redemption * t -
           record.oddFirstPrice;
}

double slope_of_price(const SecurityComputeRecord& record, double c, double first_g, double D, double g) {
    return c * record.firstPeriodLength * first_g + c * D + record.redemption * g;
}

// True where none of the terms left changes a bit. A step adds at most t v / f to the size of the derivative, twice as
// much is more than all roundings make of it; F and F' do not fall as t and g rise, and so are the same for all between
// none and those.
bool is_settled(const SecurityComputeRecord& record, double c, double first_t, double first_g, DiscountSums sums,
                double v, double f, double left) {
    if (!std::isfinite(sums.t)) return true;
    if (!(v <= 1.0) || sums.S + sums.t != sums.S) return false;
    const double g = 2.0 * (std::abs(sums.g) + left * (sums.t * v / f));
    return hides(sums.D, g) &&
           same_bits(price_less_given(record, c, first_t, sums.S, sums.t),
                     price_less_given(record, c, first_t, sums.S, 0.0)) &&
           same_bits(slope_of_price(record, c, first_g, sums.D, -g), slope_of_price(record, c, first_g, sums.D, g));
}

}  // namespace

// F(x)  = c (DFC v^e + S - A1) + R v^(e+N) - P, the price at yield x less the price
// F'(x) = c DFC g0 + c G + R g
// Error  F 216 ulp of its terms added up, F' 279 ulp, worst of 1e4 draws, N from 1 to 240, against 200 bits
std::uint32_t ComputeF_ODDFYIELD(NewtonProblem* problem) {
    auto& record = record_of<SecurityComputeRecord>(problem);
    const double x = problem->x;
    record.yield = x;
    const double f = clamped_frequency(*record.terms);
    const double s = x / f + 1.0;
    if (s < smallest_that_counts) return 2;
    const double v = 1.0 / s;
    const double c = 100.0 * record.rate / f;
    const double N = record.couponCount;
    const double e = record.wholeCoupons + record.remainingFraction;
    const double t0 = elementary::pow(v, e);
    const double g0 = -e * t0 * v / f;
    DiscountSums sums{0.0, t0, 0.0, g0};
    const double cost = cost_of_term(t0);
    const double limit = literal_terms_of_search(record.termsAdded, cost) + 1.0;
    with_division_by(f, [&](auto over_f) {
        const auto step = [&](DiscountSums& now) {
            now.t = now.t * v;
            now.S = now.S + now.t;
            now.g = now.g * v - over_f(now.t * v);
            now.D = now.D + now.g;
        };
        const auto at_rest = [&](const DiscountSums& now, double left) {
            return left - 1.0 > block_of_terms && is_settled(record, c, t0, g0, now, v, f, left - 1.0);
        };
        const auto closed = [&] { return closed_discount_sums(v, f, e + 1.0, N); };
        record.termsAdded += (walk_terms(sums, 1.0, N + 1.0, limit, step, at_rest, closed) - 1.0) * cost;
    });
    problem->value = price_less_given(record, c, t0, sums.S, sums.t);
    problem->derivative = slope_of_price(record, c, g0, sums.D, sums.g);
    return 0;
}

}  // namespace finance
