// Bonds with many coupons, and the sums over them at 200 bits.
#pragma once

#include "tests/securities/bonds.hpp"

namespace finance::test {

// 1 + v + .. + v^(n-1) as (1 - v^n) / (1 - v); cancellation takes no more than 100 of the bits here.
inline Precise powers_of(double v, double n) {
    if (v == 1.0) return n;
    return (power(Precise{v}, n) - 1.0) / (Precise{v} - 1.0);
}

inline Precise weighted_powers_of(double v, double n) {
    if (v == 1.0) return Precise{n} * (n - 1.0) / 2.0;
    return (Precise{n} * power(Precise{v}, n) - Precise{v} * powers_of(v, n)) / (Precise{v} - 1.0);
}

// Sum of the slopes of v^e, v^(e+1), .. by x, for v = 1 / (1 + x/f).
inline Precise slopes_of(double v, double f, double e, double n) {
    const Precise slopes = Precise{e} * powers_of(v, n) + weighted_powers_of(v, n);
    return Precise{0.0} - power(Precise{v}, Precise{e} + 1.0) / f * slopes;
}

inline double relative_error(double got, const Precise& exact) { return std::abs(((exact - got) / exact).rounded()); }

// A bond with monthly coupons from 2 January 2001 on, for `coupons` months after a first one.
inline void set_long_bond(Security& bond, std::int64_t coupons, double yield) {
    set_date(bond.issue, host_days(2000, 11, 20));
    set_date(bond.settlement, host_days(2001, 1, 2));
    set_date(bond.first_coupon, host_days(2001, 3, 15));
    CalendarDate maturity = date_of(2001, 3, 15);
    set_terms(bond, 12, BASIS_ACTUAL);
    maturity.year += static_cast<std::int32_t>(coupons / 12);
    zAdvanceDate(&maturity, &maturity, coupons % 12, &bond.terms);
    set_date(bond.maturity, maturity.julianDay - HOST_EPOCH_JULIAN_DAY);
    bond.record.rate = 0.07;
    bond.record.yield = yield;
    bond.record.redemption = 101.0;
    bond.record.price = 90.0;
    bond.record.oddFirstPrice = 90.0;
}

}  // namespace finance::test
