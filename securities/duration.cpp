// The durations of duration.hpp for one call.
#include "securities/duration.hpp"

#include <algorithm>
#include <cmath>

#include "elementary/functions.hpp"
#include "securities/kernels.hpp"

namespace finance {

// ---- Handlers

FINANCE_HANDLER(DURATION) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_duration(in, bond)) return in.status();
    return in.answer_if(zComputeDURATION(&bond.record), bond.record.duration);
}

FINANCE_HANDLER(MDURATION) {
    Arguments in{context, result, count};
    Security bond;
    if (!read_duration(in, bond)) return in.status();
    const double s = modified_divisor(bond);
    if (s < smallest_that_counts || zComputeDURATION(&bond.record) != 0) return in.fail();
    return in.answer(bond.record.duration / s);
}

// ---- Kernel

int zComputeDURATION(SecurityComputeRecord* record) {
    if (duration_of_bond(*record)) return 0;
    return 1.0 + record->yield / clamped_frequency(*record->terms) < smallest_that_counts ? 2 : 1;
}

namespace {

// For more coupons than are added one by one: all weights as a multiple of the largest one, and coupons so small that
// their sums would be denormal as a multiple of 2^-600, neither of which their ratio shows.
CashFlowSums closed_cash_flows(double c, double t, double v, double f, double N) {
    const PowerSums sums = sums_from_largest(v, N);
    const double last_t = t + (N - 1.0) / f;
    const double scale = c < 0x1p-500 ? 0x1p+600 : c > 0x1p+500 ? 0x1p-600 : 1.0;
    const double coupon = c * scale;
    if (v > 1.0 || c == 0.0) {
        return {coupon * sums.plain, coupon * (last_t * sums.plain - sums.weighted / f), scale, last_t};
    }
    const double half = elementary::pow(v, (N - 1.0) / 2.0);
    return {coupon * sums.plain, coupon * (t * sums.plain + sums.weighted / f), half * scale * half, last_t};
}

// True where no later coupon changes a bit, nor the redemption at any later weight and time: of both the largest is taken,
// twice the last time for all that adding up times may round.
bool is_settled(const CashFlowSums& sums, double c, double v, double years_left) {
    if (!std::isfinite(sums.w)) return true;
    if (!(v <= 1.0) || !hides(sums.PV, c * sums.w)) return false;
    const double time = std::max(std::abs(sums.t), 2.0 * (sums.t + years_left));
    return hides(sums.TW, c * sums.w * time) && hides(sums.PV, 100.0 * sums.w) && hides(sums.TW, 100.0 * sums.w * time);
}

}  // namespace

CashFlowSums sum_cash_flows(double c, double w, double t, double v, double f, double n) {
    CashFlowSums sums{c * w, t * c * w, w, t};
    const double limit = n > block_of_terms ? longest_literal_sum / cost_of_term(c * w) : n;
    const auto step = [=](CashFlowSums& now) { now.step(c, v, f); };
    const auto at_rest = [=](const CashFlowSums& now, double left) { return is_settled(now, c, v, left / f); };
    walk_terms(sums, 1.0, n, limit, step, at_rest, [=] { return closed_cash_flows(c, t, v, f, n); });
    return {sums.PV, sums.TW, sums.w, sums.t};  // not sums itself, whose place would be the caller's memory
}

}  // namespace finance
