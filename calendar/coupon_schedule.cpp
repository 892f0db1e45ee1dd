#include "calendar/coupon_schedule.hpp"

#include <algorithm>
#include <cstdlib>

#include "abi/conversions.hpp"
#include "calendar/coupon_days.hpp"
#include "calendar/plain_schedule.hpp"

namespace finance {

namespace {

// Steps after which a search that has found nothing goes to as many last ones (4). With months per period it has found
// its date after twelve; without, even steps move by as many months as they are counted, and odd ones by 2^31 less, so
// that a year has passed after twenty-six, or where the count comes to 2^31. Only dates at the end of the 32-bit years
// are found no sooner.
constexpr std::int64_t longest_search = 64;

std::int64_t next_step(std::int64_t k, std::int64_t last) {
    return k < longest_search ? k + 1 : std::max(k + 1, last - longest_search);
}

void take_coupons(CouponInfo* info, const PlainSchedule& plain) {
    const std::int32_t next = plain.later();
    plain.set_coupon(info->nextCoupon, next);
    if (plain.on_coupon()) {
        plain.set_coupon(&info->coincidentSlot, next + 1);
        info->coincidentCoupon = &info->coincidentSlot;
    }
    const bool period_before =
        plain.on_coupon() && !plain.on_anniversary() && (info->requests & REQUEST_DAYS_IN_PERIOD) != 0;
    plain.set_coupon(info->previousCoupon, period_before ? next + 2 : next + 1);
}

// The maturity's last anniversary, by day and month, that is not after settlement (3).
CalendarDate anchor_date(const CalendarDate& settlement, const CalendarDate& maturity) {
    const bool later_in_year =
        maturity.month > settlement.month || (maturity.month == settlement.month && maturity.day > settlement.day);
    const std::int32_t year = wrapping_add(settlement.year, later_in_year ? -1 : 0);
    const std::int32_t last = zlastDay(year, maturity.month);
    const bool month_end = maturity.day > last || maturity.endOfMonth != 0;
    const std::int32_t day = month_end ? last : maturity.day;
    return {.day = day,
            .month = maturity.month,
            .year = year,
            .julianDay = julian_day_of(year, maturity.month, day),
            .anchorDay = maturity.day,
            .endOfMonth = month_end ? 1 : 0};
}

// A moved by k periods; A itself for none.
void set_coupon(CalendarDate* date, const CalendarDate& A, std::int64_t k, const CouponTerms& terms) {
    if (k == 0) {
        *date = A;
    } else {
        zAdvanceDate(date, &A, k, &terms);
    }
}

// settlement is A moved by k periods.
void settle_on_coupon(CouponInfo* info, const CalendarDate& A, std::int64_t k) {
    const bool previous_period = (info->requests & REQUEST_DAYS_IN_PERIOD) != 0;
    set_coupon(info->previousCoupon, A, previous_period ? k - 1 : k, *info->terms);
    set_coupon(&info->coincidentSlot, A, k, *info->terms);
    set_coupon(info->nextCoupon, A, k + 1, *info->terms);
    info->coincidentCoupon = &info->coincidentSlot;
}

// Steps from A over settlement, forward or backward: `beyond` is where that succeeds, `near` the step before. Where it
// does not, they are the last two steps; without any step, A and no date at all.
void search(CouponInfo* info, const CalendarDate& A, std::int64_t direction, CalendarDate* near, CalendarDate* beyond) {
    const CouponTerms& terms = *info->terms;
    const std::int64_t frequency = terms.frequency;
    const std::int64_t settlement = info->settlement->julianDay;
    if (frequency < 1) {
        *beyond = A;
        ConvertDateToJulian(near);
        return;
    }
    std::int64_t k = 1;
    for (; k <= frequency; k = next_step(k, frequency)) {
        const std::int64_t day = advanced_day(A, A.year, direction * k, terms);
        if (day == settlement) return settle_on_coupon(info, A, direction * k);
        if (direction > 0 ? day > settlement : day < settlement) break;
    }
    k = std::min(k, frequency);
    set_coupon(near, A, direction * (k - 1), terms);
    set_coupon(beyond, A, direction * k, terms);
}

void find_coupons(CouponInfo* info) {
    if (PlainSchedule::applies(*info->settlement, *info->maturity, *info->terms)) {
        return take_coupons(info, {*info->settlement, *info->maturity, *info->terms});
    }
    const CalendarDate A = anchor_date(*info->settlement, *info->maturity);
    switch (zCompareDates(&A, info->settlement)) {
        case DATE_EQUAL:
            *info->previousCoupon = A;
            info->coincidentSlot = A;
            info->coincidentCoupon = &info->coincidentSlot;
            zAdvanceDate(info->nextCoupon, &A, 1, info->terms);
            break;
        case DATE_BEFORE:
            search(info, A, 1, info->previousCoupon, info->nextCoupon);
            break;
        case DATE_AFTER:  // only where the month's end moved the anchor past settlement
            search(info, A, -1, info->nextCoupon, info->previousCoupon);
            break;
    }
}

void answer_requests(CouponInfo* info) {
    if ((info->requests & REQUEST_DAYS_SINCE_PREVIOUS) != 0) {
        info->terms->dayCount = days_between(*info->previousCoupon, *info->settlement, *info->terms);
        info->daysSincePrevious = info->terms->dayCount;
    }
    if ((info->requests & REQUEST_DAYS_TO_NEXT) != 0) {
        info->terms->dayCount = days_between(*info->settlement, *info->nextCoupon, *info->terms);
        info->daysToNext = info->terms->dayCount;
    }
    if ((info->requests & REQUEST_DAYS_IN_PERIOD) != 0) {
        const CalendarDate* start = info->coincidentCoupon != nullptr ? info->coincidentCoupon : info->previousCoupon;
        info->daysInPeriod = period_days(*start, *info->nextCoupon, info->terms);
    }
}

// The maturity in another year, as it stands: 29 February of a common year compares as 1 March.
std::int64_t maturity_day_in(std::int32_t year, const CalendarDate& maturity) {
    return julian_day_of(year, maturity.month, maturity.day);
}

// Periods of the calendar years between the two dates.
std::int64_t periods_between_years(const CalendarDate& from, const CalendarDate& to, const CouponTerms& terms) {
    return std::max<std::int64_t>(std::int64_t{to.year} - from.year, 0) * terms.frequency;
}

}  // namespace

void FindCouponInfo(CouponInfo* info) {
    info->previousCoupon = &info->previousCouponSlot;
    info->nextCoupon = &info->nextCouponSlot;
    info->coincidentCoupon = nullptr;
    if (info->maturity == nullptr) return;
    find_coupons(info);
    answer_requests(info);
}

// k counts the steps taken; each one passed over is a coupon less, or one more.
double CountTheCoupons(const CalendarDate* settlement, const CalendarDate* maturity, const CalendarDate* /*spare*/,
                       const CouponTerms* terms) {
    if (PlainSchedule::applies(*settlement, *maturity, *terms) && before(*settlement, *maturity)) {
        return PlainSchedule{*settlement, *maturity, *terms}.later() + 1;
    }
    const std::int64_t n = periods_between_years(*settlement, *maturity, *terms);
    const std::int32_t year = settlement->year;
    const std::int64_t anchor = maturity_day_in(year, *maturity);
    const std::int64_t target = settlement->julianDay;
    if (anchor == target) return static_cast<double>(n);
    const std::int64_t frequency = terms->frequency;
    std::int64_t k = 1;
    if (anchor < target) {
        for (; k <= frequency; k = next_step(k, frequency)) {
            const std::int64_t day = advanced_day(*maturity, year, k, *terms);
            if (day >= target) return static_cast<double>(day > target ? n - (k - 1) : n - k);
        }
        return static_cast<double>(n - std::max<std::int64_t>(frequency, 0));
    }
    for (; k <= frequency; k = next_step(k, frequency)) {
        if (advanced_day(*maturity, year, -k, *terms) <= target) return static_cast<double>(n + k);
    }
    return static_cast<double>(n + std::max<std::int64_t>(frequency, 0));
}

double CountWholeCoupons(const CalendarDate* date, const CalendarDate* maturity, const CalendarDate* /*spare*/,
                         const CouponTerms* terms) {
    std::int64_t n = periods_between_years(*date, *maturity, *terms);
    std::int32_t year = date->year;
    const std::int64_t anchor = maturity_day_in(year, *maturity);
    const std::int64_t target = date->julianDay;
    if (anchor == target) return static_cast<double>(n);
    if (anchor < target) {
        year = wrapping_add(year, 1);
        n -= terms->frequency;
    }
    const std::int64_t frequency = terms->frequency;
    for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
        const std::int64_t day = advanced_day(*maturity, year, -k, *terms);
        if (day <= target) return static_cast<double>(day < target ? n + k - 1 : n + k);
    }
    return static_cast<double>(n + std::max<std::int64_t>(frequency, 0));
}

}  // namespace finance
