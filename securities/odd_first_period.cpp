// The odd first periods of odd_first_period.hpp for one call, and their walks from date to date.
#include "securities/odd_first_period.hpp"

#include <algorithm>
#include <cmath>

#include "calendar/coupon_days.hpp"
#include "calendar/coupon_schedule.hpp"
#include "lanes/call_of_row.hpp"
#include "securities/accrual.hpp"
#include "securities/kernels.hpp"
#include "securities/long_sums.hpp"

namespace finance {

// ---- Handlers

namespace {

// settlement, maturity, issue, first coupon date, rate, given (yield or price), redemption, frequency, basis. The four
// dates are read before any is compared (1).
bool read_odd_first_period(Arguments& in, double& given, Security& bond) {
    return read_date(in, 1, bond.settlement) && read_date(in, 2, bond.maturity) && read_date(in, 3, bond.issue) &&
           read_date(in, 4, bond.first_coupon) && !in.refuses(3, before(bond.settlement, bond.issue)) &&
           !in.settles(same_day(bond.settlement, bond.issue), 0.0) &&
           !in.refuses(4, before(bond.first_coupon, bond.settlement)) &&
           !in.settles(same_day(bond.settlement, bond.first_coupon), 0.0) &&
           !in.refuses(4, before(bond.maturity, bond.first_coupon)) &&
           !in.settles(same_day(bond.first_coupon, bond.maturity), 0.0) &&
           read_bond_terms(in, 5, &Arguments::number, given, bond);
}

Status odd_first_period(Arguments&& in, double SecurityComputeRecord::*given, int (*compute)(SecurityComputeRecord*),
                        double SecurityComputeRecord::*answer) {
    Security bond;
    if (!read_odd_first_period(in, bond.record.*given, bond)) return in.status();
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

// A walk to maturity beside them is written to the record, and read by nothing.
enum class ToMaturity : std::uint8_t { counted, left_out };

// The quantities of (3). False where the first coupon date is on no schedule (2).
bool find_odd_first_quantities(SecurityComputeRecord* record, ToMaturity to_maturity) {
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    zgetMonthDayYear(record->issue);
    zgetMonthDayYear(record->firstCoupon);
    CouponInfo first_coupon;
    record->couponCount =
        coupons_around(&first_coupon, *record->firstCoupon, *record->maturity, record->terms, REQUEST_COUNT);
    if (first_coupon.coincidentCoupon == nullptr) return false;
    CouponInfo issue;
    coupons_around(&issue, *record->issue, *record->maturity, record->terms);
    record->accruedFraction = periods_since_issue(record, issue, record->settlement);
    if (to_maturity == ToMaturity::counted) {
        record->issueToMaturity = periods_since_issue(record, issue, record->maturity);
    }
    record->terms->proportionFloor = 0;
    record->firstPeriodLength = periods_since_issue(record, issue, record->firstCoupon);
    record->wholeCoupons = CountWholeCoupons(record->settlement, record->firstCoupon, record->maturity, record->terms);
    record->remainingFraction =
        ComputeFromSettlementToNextCoupon(record->settlement, record->firstCoupon, record->maturity, record->terms);
    return true;
}

}  // namespace

// ---- Kernels

namespace {

// Of which the quantities have been found.
OddFirstBond<double> bond_of(const SecurityComputeRecord& record) {
    const double f = clamped_frequency(*record.terms);
    return {f,
            100.0 * record.rate / f,
            record.redemption,
            record.accruedFraction,
            record.firstPeriodLength,
            record.wholeCoupons + record.remainingFraction,
            record.couponCount};
}

}  // namespace

bool read_odd_first_row(const RowBlock& block, std::size_t row, OddFirstRow& read) {
    CallOfRow call{block, row};
    Security bond;
    Arguments in = call.arguments();
    if (!read_odd_first_period(in, read.given, bond) || bond.terms.monthsPerPeriod == no_months_per_period ||
        !find_odd_first_quantities(&bond.record, ToMaturity::left_out)) {
        return false;
    }
    read.bond = bond_of(bond.record);
    return read.bond.later <= most_coupons_in_lanes;
}

namespace {

using LaterCoupons = LaterCouponsOf<double>;

// True where no later coupon changes a bit, nor the redemption at any later power: the price does not fall as t rises.
bool is_settled(const OddFirstBond<double>& bond, double first, const LaterCoupons& now, double v) {
    if (!std::isfinite(now.t)) return true;
    return v <= 1.0 && now.sum + now.t == now.sum &&
           same_bits(odd_first_price(bond, first, now.sum, now.t), odd_first_price(bond, first, now.sum, 0.0));
}

// k counts one ahead of the terms added, so that N terms are added for a whole N. Ones add up to N exactly.
LaterCoupons sum_later_coupons(const OddFirstBond<double>& bond, double v, double first_t, double first) {
    const double N = bond.later;
    if (v == 1.0) return {std::max(N, 0.0), first_t};
    LaterCoupons sums{0.0, first_t};
    const double limit = longest_literal_sum / cost_of_term(first_t) + 1.0;
    const auto step = [v](LaterCoupons& now) { now.step(v); };
    const auto at_rest = [&](const LaterCoupons& now, double left) {
        return left - 1.0 > block_of_terms && is_settled(bond, first, now, v);
    };
    const auto closed = [=] {
        return LaterCoupons{first_t * v * sum_of_powers(v, N), first_t * elementary::pow(v, N)};
    };
    walk_terms(sums, 1.0, N + 1.0, limit, step, at_rest, closed);
    return sums;
}

}  // namespace

int zComputeODDFPRICE(SecurityComputeRecord* record) {
    if (!find_odd_first_quantities(record, ToMaturity::counted)) return ODDF_NO_REFERENCE_DATE;
    const OddFirstBond<double> bond = bond_of(*record);
    const double s = record->yield / bond.f + 1.0;
    if (s < smallest_that_counts) return 2;
    const double v = 1.0 / s;
    const double t = elementary::pow(v, bond.e);
    const auto later = [&bond, v, t](double first) { return sum_later_coupons(bond, v, t, first); };
    record->oddFirstPrice = odd_first_price(bond, t, later);
    return 0;
}

int zComputeODDFYIELD(SecurityComputeRecord* record) {
    if (!find_odd_first_quantities(record, ToMaturity::counted)) return ODDF_NO_REFERENCE_DATE;
    return find_rate(ComputeF_ODDFYIELD, record, 0.1, &record->yield) ? 0 : 1;
}

namespace {

// True where none of the terms left changes a bit. A step adds at most t v / f to the size of the derivative, twice as
// much is more than all roundings make of it; F and F' do not fall as t and g rise, and so are the same for all between
// none and those.
bool is_settled(const OddFirstBond<double>& bond, double price, double t0, double g0, DiscountSums sums, double v,
                double left) {
    if (!std::isfinite(sums.t)) return true;
    if (!(v <= 1.0) || sums.S + sums.t != sums.S) return false;
    const double g = 2.0 * (std::abs(sums.g) + left * (sums.t * v / bond.f));
    return hides(sums.D, g) &&
           same_bits(odd_first_excess(bond, price, t0, sums.S, sums.t),
                     odd_first_excess(bond, price, t0, sums.S, 0.0)) &&
           same_bits(odd_first_slope(bond, g0, sums.D, -g), odd_first_slope(bond, g0, sums.D, g));
}

}  // namespace

std::uint32_t ComputeF_ODDFYIELD(NewtonProblem* problem) {
    auto& record = record_of<SecurityComputeRecord>(problem);
    record.yield = problem->x;
    const OddFirstBond<double> bond = bond_of(record);
    const double s = problem->x / bond.f + 1.0;
    if (s < smallest_that_counts) return 2;
    const double price = record.oddFirstPrice;
    const double v = 1.0 / s;
    const double t0 = elementary::pow(v, bond.e);
    const auto add = [&](DiscountSums& sums, double g0) {
        const double cost = cost_of_term(t0);
        const double limit = literal_terms_of_search(record.termsAdded, cost) + 1.0;
        with_division_by(bond.f, [&](auto over_f) {
            const auto step = [&](DiscountSums& now) { add_later_coupon(now, v, over_f); };
            const auto at_rest = [&](const DiscountSums& now, double left) {
                return left - 1.0 > block_of_terms && is_settled(bond, price, t0, g0, now, v, left - 1.0);
            };
            const auto closed = [&] { return closed_discount_sums(v, bond.f, bond.e + 1.0, bond.later); };
            const double end = walk_terms(sums, 1.0, bond.later + 1.0, limit, step, at_rest, closed);
            record.termsAdded += (end - 1.0) * cost;
        });
    };
    const YieldObjective<double> at = odd_first_price_less_given(bond, price, v, t0, add);
    problem->value = at.value;
    problem->derivative = at.derivative;
    return 0;
}

}  // namespace finance
