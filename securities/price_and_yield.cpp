// The regular bonds of regular_bond.hpp for one call.
#include <algorithm>
#include <cmath>

#include "calendar/coupon_schedule.hpp"
#include "securities/kernels.hpp"
#include "securities/regular_bond.hpp"

namespace finance {

// ---- Handlers

FINANCE_HANDLER(PRICE) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_regular_bond(in, bond, &Arguments::number, bond.record.yield)) return in.status();
    return in.answer_if(zComputePRICE(&bond.record), bond.record.price);
}

FINANCE_HANDLER(YIELD) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_regular_bond(in, bond, &Arguments::positive, bond.record.price)) return in.status();
    return in.answer_if(zComputeYIELD(&bond.record), bond.record.yield);
}

// ---- Kernels

bool find_coupon_quantities(SecurityComputeRecord* record) {
    constexpr std::uint32_t quantities = REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_IN_PERIOD | REQUEST_COUNT;
    zgetMonthDayYear(record->settlement);
    zgetMonthDayYear(record->maturity);
    CouponInfo info;
    record->couponCount = coupons_around(&info, *record->settlement, *record->maturity, record->terms, quantities);
    record->daysInPeriod = info.daysInPeriod;
    record->daysAccrued = info.daysSincePrevious;
    return info.coincidentCoupon != nullptr;
}

int zComputePRICE(SecurityComputeRecord* record) {
    if (price_of_regular_bond(*record)) return 0;
    return 1.0 + record->yield / clamped_frequency(*record->terms) < smallest_that_counts ? 2 : 1;
}

int zComputeYIELD(SecurityComputeRecord* record) {
    find_period_fractions(*record);
    if (record->couponCount == 1.0) {
        record->yield = yield_of_last_period(*record);
        return 0;
    }
    return find_rate(ComputeF_YIELD, record, 0.1, &record->yield) ? 0 : 1;
}

// Terms shrink, or grow beyond all bounds: where one no longer counts, none does. Ones add up to n exactly.
double sum_of_discounts(double v, double n) {
    if (v == 1.0) return n;
    PowersSum<double> sums;
    const auto step = [v](PowersSum<double>& now) { now.step(v); };
    const auto at_rest = [](const PowersSum<double>& now, double) { return now.S + now.term == now.S; };
    const auto closed = [v, n] { return PowersSum<double>{sum_of_powers(v, n), 0.0}; };
    walk_terms(sums, 0.0, n, longest_literal_sum, step, at_rest, closed);
    return sums.S;
}

namespace {

// True where no term up to the one at largest_e changes a bit. Derivatives of later terms are no larger than that of the
// last power at largest_e; F and F' do not fall as t and g rise, and so are the same for all between none and those.
bool is_settled(const SecurityComputeRecord& record, double c, DiscountSums sums, double v, double f,
                double largest_e) {
    if (!std::isfinite(sums.t)) return true;
    if (!(v <= 1.0) || sums.S + sums.t != sums.S) return false;
    const double g = -(v * largest_e) * sums.t / f;
    if (sums.D + g != sums.D) return false;
    const YieldObjective<double> now = price_and_slope(record, c, sums, sums.t, g);
    const YieldObjective<double> without = price_and_slope(record, c, sums, 0.0, 0.0);
    return same_bits(now.value, without.value) && same_bits(now.derivative, without.derivative);
}

}  // namespace

std::uint32_t ComputeF_YIELD(NewtonProblem* problem) {
    auto& record = record_of<SecurityComputeRecord>(problem);
    record.yield = problem->x;
    const double s = 1.0 + problem->x / clamped_frequency(*record.terms);
    if (s < smallest_that_counts) return 2;
    const auto add = [&record](DiscountSums& sums, double v, double f, double c) {
        double e = record.remainingFraction;
        const double cost = cost_of_term(sums.t);
        const double limit = literal_terms_of_search(record.termsAdded, cost);
        with_division_by(f, [&](auto over_f) {
            const auto step = [&](DiscountSums& now) {
                e = e + 1.0;
                now.step(v, e, over_f);
            };
            const auto at_rest = [&](const DiscountSums& now, double left) {
                return left > block_of_terms && is_settled(record, c, now, v, f, e + left + 2.0);
            };
            const auto closed = [&] {
                return closed_discount_sums(v, f, record.remainingFraction, record.couponCount);
            };
            record.termsAdded += walk_terms(sums, 1.0, record.couponCount, limit, step, at_rest, closed) * cost;
        });
    };
    const YieldObjective<double> at = price_less_given(record, s, add);
    problem->value = at.value;
    problem->derivative = at.derivative;
    return 0;
}

}  // namespace finance
