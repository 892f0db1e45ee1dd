// Coupon schedules: the coupon dates around a date, and how many are left.
//
//  (1) Coupon dates are the maturity moved by whole periods; none is stored.
//  (2) A maturity at a month's end makes every coupon date a month's end. A day that a month does not have becomes its
//      last day; the day aimed for is kept for the next step.
//  (3) A search starts from an anchor: the maturity's day and month in a year near the date asked for. From there it
//      steps by at most `frequency` periods.
//  (4) A frequency without months per period has a meaningless schedule. A search of it takes the first sixty-four
//      steps and as many last ones: where the dates have not come round by then they do not before.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/day_count.hpp"

namespace finance {

enum CouponRequest : std::uint32_t {
    REQUEST_DAYS_SINCE_PREVIOUS = 1,
    REQUEST_DAYS_TO_NEXT = 2,
    REQUEST_DAYS_IN_PERIOD = 4,  // and, on a coupon date, the period before it as the previous one
    // of coupons_around alone
    REQUEST_DATES = 8,  // nextCoupon, which is otherwise made only where days are counted to it
    REQUEST_COUNT = 16,
};

struct CouponInfo {
    const CalendarDate* settlement;  // in: the date whose coupons are wanted
    const CalendarDate* maturity;    // in: without it only the result pointers are set
    CalendarDate* previousCoupon;    // out
    CalendarDate* coincidentCoupon;  // out: null unless settlement is a coupon date
    CalendarDate* nextCoupon;        // out: after settlement
    CouponTerms* terms;              // in
    double daysSincePrevious;        // out on request: from previousCoupon to settlement
    double daysToNext;               // out on request: from settlement to nextCoupon
    double daysInPeriod;             // out on request
    std::uint32_t requests;          // in: CouponRequest bits
    CalendarDate previousCouponSlot;
    CalendarDate coincidentSlot;
    CalendarDate nextCouponSlot;
};

void FindCouponInfo(CouponInfo* info);

// The one door to a schedule: sets what goes out of info, and reads nothing of it. Answers the number of coupons as
// CountTheCoupons does, where that is requested, else 0.
double coupons_around(CouponInfo* info, const CalendarDate& settlement, const CalendarDate& maturity,
                      CouponTerms* terms, std::uint32_t requests = REQUEST_DATES);

// Coupon dates after settlement up to and including maturity. The third argument is not read.
double CountTheCoupons(const CalendarDate* settlement, const CalendarDate* maturity, const CalendarDate* spare,
                       const CouponTerms* terms);

// Whole periods from the first coupon date on or after date to maturity. The third argument is not read.
double CountWholeCoupons(const CalendarDate* date, const CalendarDate* maturity, const CalendarDate* spare,
                         const CouponTerms* terms);

}  // namespace finance
