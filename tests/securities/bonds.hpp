// Securities for the tests of this folder: drawn, tied to their record, and priced at 200 bits.
#pragma once

#include "securities/security_record.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {

inline constexpr int frequencies[] = {1, 2, 4, 6, 12};
inline constexpr int bases[] = {BASIS_30_360, BASIS_ACTUAL, BASIS_ACT_360, BASIS_ACT_365, BASIS_EU30_360};

inline void set_terms(Security& bond, int frequency, int basis) { bond.terms = coupon_terms(frequency, basis); }

// A date as a handler leaves it, from a host date.
inline void set_date(CalendarDate& date, std::int64_t host_date) {
    date = {};
    date.julianDay = host_date + HOST_EPOCH_JULIAN_DAY;
}

// Settlement in 1980..2030, maturity up to 30 years later: 1 to 360 coupons.
inline void draw_regular_bond(Draws& draw, Security& bond) {
    const std::int64_t settlement = draw.whole(host_days(1980, 1, 1), host_days(2030, 12, 31));
    set_date(bond.settlement, settlement);
    set_date(bond.maturity, settlement + static_cast<std::int64_t>(draw.log_between(1.0, 10957.0)));
    const int frequency = draw.one_of(frequencies);
    set_terms(bond, frequency, draw.one_of(bases));
    bond.record.rate = draw.log_between(0.001, 0.3);
    bond.record.yield = draw.between(-0.2, 0.5);
    bond.record.redemption = draw.between(50.0, 150.0);
}

// Sum of v^k for k = first .. last, added term by term.
inline Precise powers(const Precise& v, const Precise& first, int last) {
    Precise term = power(v, first);
    Precise sum;
    for (int k = 0; k <= last; ++k) {
        sum = sum + term;
        term = term * v;
    }
    return sum;
}

// A price, and the sum of the sizes of what it is made of: where they cancel, only that is a measure of the error.
struct PreciseAmount {
    Precise value;
    double size;
};

// From the counts of days and coupons that the kernel left in the record.
inline PreciseAmount regular_price(const SecurityComputeRecord& record, const Precise& y) {
    const double f = record.terms->frequency;
    const Precise c = Precise{100.0} * record.rate / f;
    const Precise E = record.daysInPeriod;
    const Precise d = Precise{record.daysToNextCoupon} / E;
    const Precise accrued = c * record.daysAccrued / E;
    const Precise growth = y / f + 1.0;
    Precise dirty;
    if (record.couponCount == 1.0) {
        dirty = (c + record.redemption) / (y / f * d + 1.0);
    } else {
        const Precise v = Precise{1.0} / growth;
        const int N = static_cast<int>(record.couponCount);
        dirty = c * powers(v, d, N - 1) + power(v, d + (N - 1.0)) * record.redemption;
    }
    return {dirty - accrued, (dirty + accrued).rounded()};
}

// From the periods that the kernel left in the record.
inline PreciseAmount odd_first_price(const SecurityComputeRecord& record, const Precise& y) {
    const double f = record.terms->frequency;
    const Precise c = Precise{100.0} * record.rate / f;
    const Precise v = Precise{1.0} / (y / f + 1.0);
    const Precise e = Precise{record.wholeCoupons} + record.remainingFraction;
    const int N = static_cast<int>(record.couponCount);
    const Precise later = powers(v, e + 1.0, N - 1) * c;
    const Precise flows = later + c * record.firstPeriodLength * power(v, e) + power(v, e + N) * record.redemption;
    const Precise accrued = c * record.accruedFraction;
    return {flows - accrued, (flows + accrued).rounded()};
}

// Issue up to three years before settlement, first coupon on the maturity's schedule up to three years after it.
// Days 1..27 of the month, so that listing the schedule needs no month-end rule.
inline void draw_odd_first_bond(Draws& draw, Security& bond, int basis) {
    const int frequency = draw.one_of(frequencies);
    const int year = static_cast<int>(draw.whole(1990, 2030));
    const auto month = static_cast<unsigned>(draw.whole(1, 12));
    const auto day = static_cast<unsigned>(draw.whole(1, 27));
    const std::int64_t first = host_days(year, month, day);
    const int months = static_cast<int>(month) - 1 + static_cast<int>(draw.whole(1, 20 * frequency)) * (12 / frequency);
    set_date(bond.first_coupon, first);
    set_date(bond.maturity, host_days(year + months / 12, static_cast<unsigned>(months % 12) + 1, day));
    const std::int64_t settlement = first - draw.whole(1, 1000);
    set_date(bond.settlement, settlement);
    set_date(bond.issue, settlement - draw.whole(1, 1000));
    set_terms(bond, frequency, basis);
    bond.record.rate = draw.log_between(0.001, 0.3);
    bond.record.yield = draw.between(-0.2, 0.5);
    bond.record.redemption = draw.between(50.0, 150.0);
}

}  // namespace finance::test
