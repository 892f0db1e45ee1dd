// The coupon periods that a stretch of time touches: the first, the last, and how many.
#pragma once

#include "calendar/calendar_date.hpp"
#include "calendar/coupon_schedule.hpp"
#include "calendar/day_count.hpp"

namespace finance {

struct CouponPeriod {
    std::int64_t reserved;  // stays 0
    CalendarDate start;
    CalendarDate end;
    double days;
};

enum CouponBoundary : std::uint32_t {
    START_ON_COUPON = 1,
    END_ON_COUPON = 2,
};

struct CouponList {
    const CalendarDate* startDate;  // in
    const CalendarDate* endDate;    // in
    const CalendarDate* maturity;   // in: fixes the coupon dates
    CouponTerms* terms;             // in
    std::int32_t partialPeriods;    // cut by startDate or endDate: 0, 1 or 2
    std::int32_t wholePeriods;
    std::int32_t periodsStored;   // all of them
    std::uint32_t boundaryFlags;  // CouponBoundary bits
    CouponPeriod firstPeriod;
    CouponPeriod lastPeriod;             // where there is more than one
    const CouponPeriod* exactEndPeriod;  // the later period that ends exactly on endDate, or null
    const CouponPeriod* currentPeriod;   // the last one written
};

// The first period may end exactly on endDate: exactEndPeriod then stays null.
void MakeTheCouponList(CouponList* list);

// The same where the coupons around startDate have been found already, for lists that begin on one day.
void MakeTheCouponList(CouponList* list, const CouponInfo& start);

}  // namespace finance
