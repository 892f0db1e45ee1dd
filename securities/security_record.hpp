// The record that all calculations of coupon securities share. Handlers fill it from zero.
//
// Amounts are per 100 of face value; rates and yields are annual fractions (0.08 is 8 %).
#pragma once

#include <algorithm>

#include "calendar/date_arguments.hpp"

namespace finance {

struct SecurityComputeRecord {
    CalendarDate* settlement;
    CalendarDate* maturity;
    double rate;        // annual coupon rate
    double yield;       // annual; while a solver runs, its trial value
    double redemption;  // R
    double price;       // P of PRICE and YIELD
    CouponTerms* terms;
    double accruedFraction;    // days accrued in coupon periods; odd first period: periods since issue
    double remainingFraction;  // settlement to the next coupon, in coupon periods
    double daysToNextCoupon;   // DSC
    double daysInPeriod;       // E
    double daysAccrued;        // A
    double couponCount;        // N
    double duration;           // years
    double termsAdded;         // by the sums of a search so far (long_sums.hpp)
    // accrued interest
    CalendarDate* issue;
    CalendarDate* firstInterest;
    double par;
    double yearFraction;
    double accruedInterest;
    // odd first period
    CalendarDate* firstCoupon;
    double oddFirstPrice;
    double issueToMaturity;    // in coupon periods
    double firstPeriodLength;  // DFC, in coupon periods
    double wholeCoupons;       // W, settlement to the first coupon
    // odd last period, all in coupon periods
    CalendarDate* lastInterest;
    double oddLastPrice;
    double accruedPeriods;    // since the last interest date
    double lastPeriodLength;  // DC, the last interest date to maturity
    double remainingPeriods;  // settlement to maturity
    // interest at maturity
    double maturityPrice;
};

// Coupons per year as most formulas take it: at least 1.
inline double clamped_frequency(const CouponTerms& terms) { return std::max<double>(terms.frequency, 1.0); }

// A security of one call: the dates, terms and record that a handler owns, tied together. A date is empty until it is
// read, and complete when it is split; clearing five of them costs a hundredth of a short call.
struct Security {
    CalendarDate settlement;
    CalendarDate maturity;
    CalendarDate issue;
    CalendarDate first_coupon;  // or first interest date
    CalendarDate last_interest;
    CouponTerms terms{};
    SecurityComputeRecord record{};

    Security() {
        record.settlement = &settlement;
        record.maturity = &maturity;
        record.issue = &issue;
        record.firstInterest = &first_coupon;
        record.firstCoupon = &first_coupon;
        record.lastInterest = &last_interest;
        record.terms = &terms;
    }
    Security(const Security&) = delete;
    Security& operator=(const Security&) = delete;
};

// settlement and maturity, in order of time; equal dates pass.
inline bool read_settlement_and_maturity(Arguments& in, Security& security) {
    if (!read_date(in, 1, security.settlement) || !read_date(in, 2, security.maturity)) return false;
    return !before(security.maturity, security.settlement) || in.reject(2);
}

// From position i on: coupon rate, what is given (yield or price), redemption, frequency, basis.
inline bool read_bond_terms(Arguments& in, int i, bool (Arguments::*take)(int, double&), double& given,
                            Security& bond) {
    return in.positive(i, bond.record.rate) && (in.*take)(i + 1, given) && in.positive(i + 2, bond.record.redemption) &&
           read_coupon_terms(in, i + 3, bond.terms);
}

}  // namespace finance
