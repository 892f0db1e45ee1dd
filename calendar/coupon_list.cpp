#include "calendar/coupon_list.hpp"

#include "abi/conversions.hpp"
#include "abi/steps.hpp"
#include "calendar/coupon_days.hpp"
#include "calendar/period_walk.hpp"

namespace finance {

namespace {

void count_periods(std::int32_t* field, std::int64_t periods) { *field = low_32_bits(*field + periods); }

void write_period(CouponList* list, CouponPeriod* period, const CalendarDate& start, const CalendarDate& end) {
    period->start = start;
    period->end = end;
    period->days = period_days(start, end, list->terms);
    list->currentPeriod = period;
    count_periods(&list->periodsStored, 1);
}

// The period that holds the start date.
void begin_list(CouponList* list, const CouponInfo& info) {
    const CalendarDate* start = info.coincidentCoupon != nullptr ? info.coincidentCoupon : info.previousCoupon;
    if (same_day(*start, *list->startDate)) {
        list->boundaryFlags |= START_ON_COUPON;
        list->wholePeriods = 1;
    } else {
        list->boundaryFlags &= ~static_cast<std::uint32_t>(START_ON_COUPON);
        list->partialPeriods = 1;
    }
    write_period(list, &list->firstPeriod, *start, *info.nextCoupon);
}

// The later ones, up to the period that reaches the end date. A walk that comes round before has none that does.
void walk_to_end(CouponList* list, const CalendarDate& first_end) {
    PeriodWalk walk{first_end, *list->terms};
    const std::int64_t skipped = walk.sure_steps(*list->endDate);
    walk.skip(skipped);
    count_periods(&list->periodsStored, skipped);
    count_periods(&list->wholePeriods, skipped);
    while (walk.step() || !before(walk.to(), *list->endDate)) {
        count_step();
        write_period(list, &list->lastPeriod, walk.from(), walk.to());
        switch (zCompareDates(&walk.to(), list->endDate)) {
            case DATE_BEFORE:
                count_periods(&list->wholePeriods, 1);
                break;
            case DATE_EQUAL:
                list->boundaryFlags |= END_ON_COUPON;
                count_periods(&list->wholePeriods, 1);
                list->exactEndPeriod = &list->lastPeriod;
                return;
            case DATE_AFTER:
                list->boundaryFlags &= ~static_cast<std::uint32_t>(END_ON_COUPON);
                count_periods(&list->partialPeriods, 1);
                return;
        }
    }
}

}  // namespace

void MakeTheCouponList(CouponList* list) {
    CouponInfo info;
    coupons_around(&info, *list->startDate, *list->maturity, list->terms);
    MakeTheCouponList(list, info);
}

void MakeTheCouponList(CouponList* list, const CouponInfo& start) {
    list->firstPeriod = {};
    list->lastPeriod = {};
    begin_list(list, start);
    switch (zCompareDates(start.nextCoupon, list->endDate)) {
        case DATE_BEFORE:
            walk_to_end(list, *start.nextCoupon);
            break;
        case DATE_EQUAL:
            list->boundaryFlags |= END_ON_COUPON;
            break;
        case DATE_AFTER:
            break;
    }
}

}  // namespace finance
