// The record that all calculations of coupon securities share. Handlers fill it from zero.
//
// Amounts are per 100 of face value; rates and yields are annual fractions (0.08 is 8 %).
#pragma once

#include <algorithm>
#include <type_traits>

#include "calendar/coupons_in_lanes.hpp"
#include "calendar/date_arguments.hpp"
#include "lanes/lanes.hpp"

namespace finance {

template <typename N>
struct SecurityComputeRecordOf {
    CalendarDateOf<N>* settlement;
    CalendarDateOf<N>* maturity;
    N rate;        // annual coupon rate
    N yield;       // annual; while a solver runs, its trial value
    N redemption;  // R
    N price;       // P of PRICE and YIELD
    CouponTerms* terms;
    N accruedFraction;    // days accrued in coupon periods; odd first period: periods since issue
    N remainingFraction;  // settlement to the next coupon, in coupon periods
    N daysToNextCoupon;   // DSC
    N daysInPeriod;       // E
    N daysAccrued;        // A
    N couponCount;        // N
    N duration;           // years
    N termsAdded;         // by the sums of a search so far (long_sums.hpp)
    // accrued interest
    CalendarDateOf<N>* issue;
    CalendarDateOf<N>* firstInterest;
    N par;
    N yearFraction;
    N accruedInterest;
    // odd first period
    CalendarDateOf<N>* firstCoupon;
    N oddFirstPrice;
    N issueToMaturity;    // in coupon periods
    N firstPeriodLength;  // DFC, in coupon periods
    N wholeCoupons;       // W, settlement to the first coupon
    // odd last period, all in coupon periods
    CalendarDateOf<N>* lastInterest;
    N oddLastPrice;
    N accruedPeriods;    // since the last interest date
    N lastPeriodLength;  // DC, the last interest date to maturity
    N remainingPeriods;  // settlement to maturity
    // interest at maturity
    N maturityPrice;
};
using SecurityComputeRecord = SecurityComputeRecordOf<double>;

// Coupons per year as most formulas take it: at least 1.
inline double clamped_frequency(const CouponTerms& terms) { return std::max<double>(terms.frequency, 1.0); }

// A security of one call: the dates, terms and record that a handler owns, tied together. A date is empty until it is
// read, and complete when it is split; clearing five of them costs a hundredth of a short call.
template <typename N>
struct SecurityOf {
    CalendarDateOf<N> settlement;
    CalendarDateOf<N> maturity;
    CalendarDateOf<N> issue;
    CalendarDateOf<N> first_coupon;  // or first interest date
    CalendarDateOf<N> last_interest;
    CouponTerms terms{};
    SecurityComputeRecordOf<N> record;

    SecurityOf() requires std::is_same_v<N, double> : record{} { tie(); }
    // Lanes set all figures before they read them; clearing them takes as long as half a sum.
    SecurityOf() { tie(); }
    SecurityOf(const SecurityOf&) = delete;
    SecurityOf& operator=(const SecurityOf&) = delete;

private:
    void tie() {
        record.settlement = &settlement;
        record.maturity = &maturity;
        record.issue = &issue;
        record.firstInterest = &first_coupon;
        record.firstCoupon = &first_coupon;
        record.lastInterest = &last_interest;
        record.terms = &terms;
    }
};
using Security = SecurityOf<double>;

// settlement and maturity, in order of time; equal dates pass.
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_settlement_and_maturity(In& in, SecurityOf<N>& security) {
    return read_date(in, 1, security.settlement) && read_date(in, 2, security.maturity) &&
           !in.refuses(2, before(security.maturity, security.settlement));
}

// From position i on: coupon rate, what is given (yield or price), redemption, frequency, basis.
template <typename In, typename N>
[[gnu::always_inline]] inline bool read_bond_terms(In& in, int i, bool (In::*take)(int, N&), N& given,
                                                   SecurityOf<N>& bond) {
    return in.positive(i, bond.record.rate) && (in.*take)(i + 1, given) && in.positive(i + 2, bond.record.redemption) &&
           read_coupon_terms(in, i + 3, bond.terms);
}

// What price, yield and duration need to know of the coupon period that holds settlement: splits both dates and fills
// couponCount; daysInPeriod and daysAccrued as counted. True where settlement is a coupon date.
bool find_coupon_quantities(SecurityComputeRecord* record);

template <typename Set>
[[gnu::always_inline]] inline LaneTruth<Set> find_coupon_quantities(SecurityComputeRecordOf<Lanes<Set>>* record) {
    const auto quantities = find_coupon_quantities(*record->settlement, *record->maturity, *record->terms);
    record->couponCount = quantities.couponCount;
    record->daysInPeriod = quantities.daysInPeriod;
    record->daysAccrued = quantities.daysAccrued;
    return quantities.onCouponDate;
}

}  // namespace finance
