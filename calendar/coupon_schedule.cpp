#include "calendar/coupon_schedule.hpp"

#include <algorithm>

#include "abi/conversions.hpp"
#include "calendar/coupon_days.hpp"

namespace finance {

namespace {

// Steps after which a search that has found nothing goes to its last two steps (4). With months per period it has found
// its date after twelve; without, even steps move by as many months as they are counted, and odd ones out of reach, so
// that a year has passed after twenty-six. Only dates at the end of the 32-bit years do not come round.
constexpr std::int64_t longest_search = 64;

std::int64_t next_step(std::int64_t k, std::int64_t last) {
    return k < longest_search ? k + 1 : std::max(k + 1, last - 1);
}

// The maturity's last anniversary, by day and month, that is not after settlement (3).
CalendarDate anchor_date(const CalendarDate& settlement, const CalendarDate& maturity) {
    CalendarDate a = maturity;
    const bool later_in_year =
        maturity.month > settlement.month || (maturity.month == settlement.month && maturity.day > settlement.day);
    a.year = wrapping_add(settlement.year, later_in_year ? -1 : 0);
    a.anchorDay = maturity.day;
    const std::int32_t last = zlastDay(a.year, a.month);
    if (a.day > last || maturity.endOfMonth != 0) {
        a.day = last;
        a.endOfMonth = 1;
    }
    ConvertDateToJulian(&a);
    return a;
}

// settlement is A moved by k periods.
void settle_on_coupon(CouponInfo* info, const CalendarDate& A, std::int64_t k) {
    info->coincidentCoupon = zAdvanceDate(&info->coincidentSlot, &A, k, info->terms);
    if ((info->requests & REQUEST_DAYS_IN_PERIOD) == 0) {
        *info->previousCoupon = info->coincidentSlot;
    } else if (k < 0) {
        zAdvanceDate(info->previousCoupon, &A, k - 1, info->terms);
    }  // forward it is that date already
    zAdvanceDate(info->nextCoupon, &A, k + 1, info->terms);
}

void search_forward(CouponInfo* info, const CalendarDate& A) {
    const std::int64_t frequency = info->terms->frequency;
    *info->nextCoupon = A;
    for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
        *info->previousCoupon = *info->nextCoupon;
        zAdvanceDate(info->nextCoupon, &A, k, info->terms);
        const DateOrder order = zCompareDates(info->nextCoupon, info->settlement);
        if (order == DATE_EQUAL) return settle_on_coupon(info, A, k);
        if (order == DATE_AFTER) return;
    }
}

// Only where the month's end moved the anchor past settlement.
void search_backward(CouponInfo* info, const CalendarDate& A) {
    const std::int64_t frequency = info->terms->frequency;
    *info->previousCoupon = A;
    for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
        *info->nextCoupon = *info->previousCoupon;
        zAdvanceDate(info->previousCoupon, &A, -k, info->terms);
        const DateOrder order = zCompareDates(info->previousCoupon, info->settlement);
        if (order == DATE_EQUAL) return settle_on_coupon(info, A, -k);
        if (order == DATE_BEFORE) return;
    }
}

void find_coupons(CouponInfo* info) {
    const CalendarDate A = anchor_date(*info->settlement, *info->maturity);
    switch (zCompareDates(&A, info->settlement)) {
        case DATE_EQUAL:
            *info->previousCoupon = A;
            info->coincidentSlot = A;
            info->coincidentCoupon = &info->coincidentSlot;
            zAdvanceDate(info->nextCoupon, &A, 1, info->terms);
            break;
        case DATE_BEFORE:
            search_forward(info, A);
            break;
        case DATE_AFTER:
            search_backward(info, A);
            break;
    }
    ConvertDateToJulian(info->previousCoupon);
    ConvertDateToJulian(info->nextCoupon);
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
CalendarDate maturity_in(std::int32_t year, const CalendarDate& maturity) {
    CalendarDate a = maturity;
    a.year = year;
    ConvertDateToJulian(&a);
    return a;
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

double CountTheCoupons(const CalendarDate* settlement, const CalendarDate* maturity, const CalendarDate* /*spare*/,
                       const CouponTerms* terms) {
    std::int64_t n = periods_between_years(*settlement, *maturity, *terms);
    const CalendarDate A = maturity_in(settlement->year, *maturity);
    const DateOrder order = zCompareDates(&A, settlement);
    const std::int64_t frequency = terms->frequency;
    CalendarDate D;
    // k counts the steps taken; each one passed over is a coupon less, or one more.
    if (order == DATE_BEFORE) {
        for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
            zAdvanceDate(&D, &A, k, terms);
            if (zCompareDates(&D, settlement) == DATE_AFTER) return static_cast<double>(n - (k - 1));
            if (same_day(D, *settlement)) return static_cast<double>(n - k);
        }
        n -= std::max<std::int64_t>(frequency, 0);
    } else if (order == DATE_AFTER) {
        for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
            zAdvanceDate(&D, &A, -k, terms);
            if (zCompareDates(&D, settlement) != DATE_AFTER) return static_cast<double>(n + k);
        }
        n += std::max<std::int64_t>(frequency, 0);
    }
    return static_cast<double>(n);
}

double CountWholeCoupons(const CalendarDate* date, const CalendarDate* maturity, const CalendarDate* /*spare*/,
                         const CouponTerms* terms) {
    std::int64_t n = periods_between_years(*date, *maturity, *terms);
    CalendarDate A = maturity_in(date->year, *maturity);
    if (same_day(A, *date)) return static_cast<double>(n);
    if (before(A, *date)) {
        A = maturity_in(wrapping_add(date->year, 1), *maturity);
        n -= terms->frequency;
    }
    const std::int64_t frequency = terms->frequency;
    CalendarDate D;
    for (std::int64_t k = 1; k <= frequency; k = next_step(k, frequency)) {
        zAdvanceDate(&D, &A, -k, terms);
        if (before(D, *date)) return static_cast<double>(n + k - 1);
        if (same_day(D, *date)) return static_cast<double>(n + k);
    }
    return static_cast<double>(n + std::max<std::int64_t>(frequency, 0));
}

}  // namespace finance
