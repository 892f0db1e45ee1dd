// The kernels of year fractions, coupon dates and securities without coupons. Each takes a record whose arguments have
// been checked.
#pragma once

#include "calendar/coupon_schedule.hpp"

namespace finance {

// ---- The fraction of a year between two dates

template <typename N>
struct YearFractionRecordOf {
    CalendarDateOf<N> start;
    CalendarDateOf<N> end;
    CouponTerms terms;
    N fraction;
};
using YearFractionRecord = YearFractionRecordOf<double>;

// fraction from the two dates, of which only julianDay need be set. Returns 0, or 1 for a negative fraction.
int zComputeYEARFRAC(YearFractionRecord* record);

// ---- Questions about the coupon period that holds a settlement date

template <typename N>
struct CouponDateRecordOf {
    CalendarDateOf<N> settlement;
    CalendarDateOf<N> maturity;
    CouponTerms terms;
};
template <>
struct CouponDateRecordOf<double> {
    CalendarDate settlement;
    CalendarDate maturity;
    CouponTerms terms;
    CouponInfo info;
};
using CouponDateRecord = CouponDateRecordOf<double>;

double zComputeCOUPDAYBS(CouponDateRecord* record);   // days from the previous coupon date to settlement
double zComputeCOUPDAYS(CouponDateRecord* record);    // days in the coupon period
double zComputeCOUPDAYSNC(CouponDateRecord* record);  // days from settlement to the next coupon date
double zComputeCOUPNCD(CouponDateRecord* record);     // next coupon date, as the host's date value
double zComputeCOUPNUM(CouponDateRecord* record);     // coupons still to be paid
double zComputeCOUPPCD(CouponDateRecord* record);     // previous coupon date, as the host's date value

// ---- Securities that pay no coupon between settlement and maturity

template <typename N>
struct DiscountRecordOf {
    CalendarDateOf<N> settlement;  // of both dates only julianDay need be set
    CalendarDateOf<N> maturity;
    N first;  // arguments 3 and 4, both above 0
    N second;
    N answer;
    CouponTerms terms;
};
using DiscountRecord = DiscountRecordOf<double>;

// Each leaves its answer in the record and returns 0, or 1 where there is none.
int zComputeDISC(DiscountRecord* record);       // price, redemption -> discount rate
int zComputeINTRATE(DiscountRecord* record);    // investment, redemption -> interest rate
int zComputePRICEDISC(DiscountRecord* record);  // discount rate, redemption -> price
int zComputeRECEIVED(DiscountRecord* record);   // investment, discount rate -> amount received
int zComputeYIELDDISC(DiscountRecord* record);  // price, redemption -> yield

}  // namespace finance
