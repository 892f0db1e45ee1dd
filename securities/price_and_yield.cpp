// PRICE and YIELD: a security with N coupons to be paid, in regular periods.
//
//  (1) f is the number of coupons a year, c = 100 rate / f the coupon, R the redemption, v = 1 / (1 + y/f).
//  (2) A of the E days of the coupon period have accrued at settlement; E - A remain, whatever a count of them says. On
//      a coupon date, and where nothing would remain, nothing has accrued.
//  (3) Settlement on maturity: both answer 0, whatever the other arguments. Settlement after it is refused.
//  (4) With one coupon left interest is simple, and YIELD is a closed form; otherwise it is searched from 0.1.
#include <algorithm>
#include <cmath>

#include "calendar/coupon_schedule.hpp"
#include "elementary/functions.hpp"
#include "securities/kernels.hpp"
#include "securities/long_sums.hpp"

namespace finance {

// ---- Handlers

namespace {

// settlement, maturity, rate, given (yield or price), redemption, frequency, basis
template <auto Take, auto Given, auto Compute, auto Answer>
[[gnu::always_inline]] inline Status regular_bond(Arguments in) {
    Security bond;
    if (!read_settlement_and_maturity(in, bond)) return in.status();
    if (same_day(bond.settlement, bond.maturity)) return in.answer(0.0);
    if (!read_bond_terms(in, 3, Take, bond.record.*Given, bond)) return in.status();
    return in.answer_if(Compute(&bond.record), bond.record.*Answer);
}

}  // namespace

FINANCE_HANDLER(PRICE) {
    return regular_bond<&Arguments::number, &SecurityComputeRecord::yield, zComputePRICE,
                        &SecurityComputeRecord::price>({context, result, count});
}

FINANCE_HANDLER(YIELD) {
    return regular_bond<&Arguments::positive, &SecurityComputeRecord::price, zComputeYIELD,
                        &SecurityComputeRecord::yield>({context, result, count});
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

namespace {

// The quantities of (2).
void find_period_fractions(SecurityComputeRecord* record) {
    const bool on_coupon_date = find_coupon_quantities(record);
    const double E = record->daysInPeriod;
    const double A = record->daysAccrued;
    if ((E - A) / E <= 0.0 || on_coupon_date) {
        record->daysAccrued = 0.0;
        record->daysToNextCoupon = E;
        record->accruedFraction = 0.0 / E;
        record->remainingFraction = E / E;
    } else {
        record->daysToNextCoupon = E - A;
        record->accruedFraction = A / E;
        record->remainingFraction = (E - A) / E;
    }
}

// 1 + v + .. + v^(N-1), by a running product. Terms shrink, or grow beyond all bounds: where one no longer counts, none
// does. Ones add up to N exactly.
double sum_of_discounts(double v, double N) {
    if (v == 1.0) return N;
    struct Sums {
        double S = 0.0;
        double term = 1.0;  // the next one
    } sums;
    const auto step = [v](Sums& now) {
        now.S = now.S + now.term;
        now.term = now.term * v;
    };
    const auto at_rest = [](const Sums& now, double) { return now.S + now.term == now.S; };
    const auto closed = [v, N] { return Sums{sum_of_powers(v, N), 0.0}; };
    walk_terms(sums, 0.0, N, longest_literal_sum, step, at_rest, closed);
    return sums.S;
}

}  // namespace

// One coupon left   (R + c) / (1 + (y/f) d) - c a
// More              v^d (R v^(N-1) + c (1 + v + .. + v^(N-1))) - c a
//   with a and d the fractions of the period accrued and remaining
// Guard  1 + y/f at least 2^-26.5
// Error  one coupon left 2.3 ulp, more 307 ulp, of price plus twice c a: worst of 1e4 draws, 1 to 360 coupons, 200 bits
int zComputePRICE(SecurityComputeRecord* record) {
    find_period_fractions(record);
    const double f = clamped_frequency(*record->terms);
    const double y = record->yield;
    const double R = record->redemption;
    const double N = record->couponCount;
    const double d = record->remainingFraction;
    const double a = record->accruedFraction;
    if (1.0 + y / f < smallest_that_counts) return 2;
    const double c = 100.0 * record->rate / f;
    const double v = 1.0 / (1.0 + y / f);
    if (-(y / f) * v <= -1.0) return 1;
    if (N == 1.0) {
        record->price = (R + c) / (1.0 + (y / f) * d) - c * a;
    } else if (N > 1.0) {
        record->price = elementary::pow(v, d) * (R * elementary::pow(v, N - 1.0) + c * sum_of_discounts(v, N)) - c * a;
    } else {
        record->price = 0.0 * record->price - c * a;
    }
    return 0;
}

namespace {

// Simple interest to the one coupon left; the frequency as it is stored.
// Error  2.5 ulp of the yield with ratio + 1 for ratio - 1, worst of 1e4 draws, against 200 bits
double yield_of_last_period(const SecurityComputeRecord& record) {
    const double f0 = record.terms->frequency;
    const double E = record.daysInPeriod;
    const double a = record.daysAccrued / E;
    const double ratio = (record.redemption / 100.0 + record.rate / f0) / (record.price / 100.0 + a * record.rate / f0);
    return (ratio - 1.0) * f0 * E / record.daysToNextCoupon;
}

}  // namespace

int zComputeYIELD(SecurityComputeRecord* record) {
    find_period_fractions(record);
    if (record->couponCount == 1.0) {
        record->yield = yield_of_last_period(*record);
        return 0;
    }
    return find_rate(ComputeF_YIELD, record, 0.1, &record->yield) ? 0 : 1;
}

namespace {

struct Objective {
    double value;
    double derivative;
};

// F and F' of the sums, for a last power t and its derivative g.
Objective price_and_slope(const SecurityComputeRecord& record, double c, DiscountSums sums, double t, double g) {
    const double R = record.redemption;
    return {c * (sums.S - record.accruedFraction) + (R * t - record.price), c * sums.D + R * g};
}

// True where no term up to the one at largest_e changes a bit. Derivatives of later terms are no larger than that of the
// last power at largest_e; F and F' do not fall as t and g rise, and so are the same for all between none and those.
bool is_settled(const SecurityComputeRecord& record, double c, DiscountSums sums, double v, double f,
                double largest_e) {
    if (!std::isfinite(sums.t)) return true;
    if (!(v <= 1.0) || sums.S + sums.t != sums.S) return false;
    const double g = -(v * largest_e) * sums.t / f;
    if (sums.D + g != sums.D) return false;
    const Objective now = price_and_slope(record, c, sums, sums.t, g);
    const Objective without = price_and_slope(record, c, sums, 0.0, 0.0);
    return same_bits(now.value, without.value) && same_bits(now.derivative, without.derivative);
}

}  // namespace

// F(x)  = c (S - a) + (R t - P), the price at yield x less the price
// F'(x) = c D + R g
// Error  F 312 ulp of its terms added up, F' 340 ulp, worst of 1e4 draws, 2 to 360 coupons, against 200 bits
std::uint32_t ComputeF_YIELD(NewtonProblem* problem) {
    auto& record = record_of<SecurityComputeRecord>(problem);
    const double x = problem->x;
    record.yield = x;
    const double f = clamped_frequency(*record.terms);
    const double s = 1.0 + x / f;
    if (s < smallest_that_counts) return 2;
    const double c = 100.0 * record.rate / f;
    const double N = record.couponCount;
    const double v = 1.0 / s;
    double e = record.remainingFraction;
    const double first = elementary::pow(v, e);
    const double slope = first * v * (-e) / f;
    DiscountSums sums{first, first, slope, slope};
    const double cost = cost_of_term(first);
    const double limit = literal_terms_of_search(record.termsAdded, cost);
    with_division_by(f, [&](auto over_f) {
        const auto step = [&](DiscountSums& now) {
            now.t = now.t * v;
            e = e + 1.0;
            now.S = now.S + now.t;
            now.g = over_f(-(v * e) * now.t);
            now.D = now.D + now.g;
        };
        const auto at_rest = [&](const DiscountSums& now, double left) {
            return left > block_of_terms && is_settled(record, c, now, v, f, e + left + 2.0);
        };
        const auto closed = [&] { return closed_discount_sums(v, f, record.remainingFraction, N); };
        record.termsAdded += walk_terms(sums, 1.0, N, limit, step, at_rest, closed) * cost;
    });
    const Objective at = price_and_slope(record, c, sums, sums.t, sums.g);
    problem->value = at.value;
    problem->derivative = at.derivative;
    return 0;
}

}  // namespace finance
