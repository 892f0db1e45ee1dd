// Questions about the coupon period that holds a settlement date.
#pragma once

#include "calendar/coupon_schedule.hpp"

namespace finance {

struct CouponDateRecord {
    CalendarDate settlement;
    CalendarDate maturity;
    CouponTerms terms;
    CouponInfo info;
};

double zComputeCOUPDAYBS(CouponDateRecord* record);   // days from the previous coupon date to settlement
double zComputeCOUPDAYS(CouponDateRecord* record);    // days in the coupon period
double zComputeCOUPDAYSNC(CouponDateRecord* record);  // days from settlement to the next coupon date
double zComputeCOUPNCD(CouponDateRecord* record);     // next coupon date, as the host's date value
double zComputeCOUPNUM(CouponDateRecord* record);     // coupons still to be paid
double zComputeCOUPPCD(CouponDateRecord* record);     // previous coupon date, as the host's date value

}  // namespace finance
