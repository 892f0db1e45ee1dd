#include "tests/calendar/literal_schedule.hpp"

#include "calendar/coupon_days.hpp"

namespace finance::test::literal {

namespace {

// Beyond the last year of 32 bits, or 2^31 months on, lies the far past: a walk that has not come to its end ends there, but
// for one to an end that lies there too. The far future, where months led there, is not walked on from either.
bool comes_round(std::int64_t k, const CalendarDate& date, const CalendarDate& before, std::int64_t end,
                 const CouponTerms& terms) {
    constexpr std::int64_t a_million_years = 365'000'000;  // about the year 0 dates go back by months
    if (terms.monthsPerPeriod < 1 || date.julianDay >= end) return false;
    if (date.julianDay < before.julianDay - a_million_years) return before.julianDay <= end;
    return k > 1 && date.julianDay > before.julianDay + a_million_years;
}

CalendarDate advanced(const CalendarDate& date, std::int64_t k, const CouponTerms& terms) {
    CalendarDate result{};
    zAdvanceDate(&result, &date, k, &terms);
    return result;
}

CalendarDate anchor(const CalendarDate& settlement, const CalendarDate& maturity) {
    CalendarDate a = maturity;
    std::int64_t year = settlement.year;
    if (maturity.month > settlement.month) year -= 1;
    if (maturity.month == settlement.month && maturity.day > settlement.day) year -= 1;
    a.year = static_cast<std::int32_t>(static_cast<std::uint32_t>(year));
    a.anchorDay = a.day;
    const std::int32_t last = zlastDay(a.year, a.month);
    if (a.day > last || maturity.endOfMonth != 0) {
        a.day = last;
        a.endOfMonth = 1;
    }
    ConvertDateToJulian(&a);
    return a;
}

void coincide(CouponInfo* info, const CalendarDate& A, std::int64_t k) {
    info->coincidentSlot = advanced(A, k, *info->terms);
    info->coincidentCoupon = &info->coincidentSlot;
    const bool period_before = (info->requests & REQUEST_DAYS_IN_PERIOD) != 0;
    // forward, the date before is there already
    if (!period_before || k < 0) *info->previousCoupon = advanced(A, period_before ? k - 1 : k, *info->terms);
    *info->nextCoupon = advanced(A, k + 1, *info->terms);
}

void search(CouponInfo* info) {
    const CalendarDate A = anchor(*info->settlement, *info->maturity);
    const std::int64_t settlement = info->settlement->julianDay;
    if (A.julianDay == settlement) {
        info->coincidentSlot = A;
        info->coincidentCoupon = &info->coincidentSlot;
        *info->previousCoupon = A;
        *info->nextCoupon = advanced(A, 1, *info->terms);
    } else if (A.julianDay < settlement) {
        *info->nextCoupon = A;
        for (std::int64_t k = 1; k <= info->terms->frequency; ++k) {
            *info->previousCoupon = *info->nextCoupon;
            *info->nextCoupon = advanced(A, k, *info->terms);
            if (info->nextCoupon->julianDay > settlement) break;
            if (info->nextCoupon->julianDay == settlement) {
                coincide(info, A, k);
                break;
            }
        }
    } else {
        *info->previousCoupon = A;
        for (std::int64_t k = -1; k >= -std::int64_t{info->terms->frequency}; --k) {
            *info->nextCoupon = *info->previousCoupon;
            *info->previousCoupon = advanced(A, k, *info->terms);
            if (info->previousCoupon->julianDay < settlement) break;
            if (info->previousCoupon->julianDay == settlement) {
                coincide(info, A, k);
                break;
            }
        }
    }
}

double counted_days(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    const double period = terms->periodDays;
    CountTheDays(&start, &end, terms);
    terms->periodDays = period;
    return terms->dayCount;
}

double length(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    return terms->basis == BASIS_ACTUAL ? CountTheCouponDays(&start, &end, terms) : terms->periodDays;
}

CalendarDate in_year(std::int32_t year, CalendarDate date) {
    date.year = year;
    ConvertDateToJulian(&date);
    return date;
}

std::int64_t periods_of_years(const CalendarDate& from, const CalendarDate& to, const CouponTerms& terms) {
    const std::int64_t years = std::int64_t{to.year} - from.year;
    return (years < 0 ? 0 : years) * terms.frequency;
}

CouponPeriod period(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    return {0, start, end, length(start, end, terms)};
}

}  // namespace

void find_coupons(CouponInfo* info) {
    info->previousCoupon = &info->previousCouponSlot;
    info->nextCoupon = &info->nextCouponSlot;
    info->coincidentCoupon = nullptr;
    search(info);
    ConvertDateToJulian(info->previousCoupon);
    ConvertDateToJulian(info->nextCoupon);
    if (info->coincidentCoupon != nullptr) ConvertDateToJulian(info->coincidentCoupon);
    const CalendarDate& previous = *info->previousCoupon;
    const CalendarDate& next = *info->nextCoupon;
    if ((info->requests & 1) != 0) info->daysSincePrevious = counted_days(previous, *info->settlement, info->terms);
    if ((info->requests & 2) != 0) info->daysToNext = counted_days(*info->settlement, next, info->terms);
    if ((info->requests & 4) != 0) {
        info->daysInPeriod =
            length(info->coincidentCoupon != nullptr ? *info->coincidentCoupon : previous, next, info->terms);
    }
}

double count_coupons(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms) {
    std::int64_t n = periods_of_years(settlement, maturity, terms);
    const CalendarDate A = in_year(settlement.year, maturity);
    if (A.julianDay < settlement.julianDay) {
        for (std::int64_t k = 1; k <= terms.frequency; ++k) {
            const CalendarDate D = advanced(A, k, terms);
            if (D.julianDay > settlement.julianDay) break;
            n -= 1;
            if (D.julianDay == settlement.julianDay) break;
        }
    } else if (A.julianDay > settlement.julianDay) {
        for (std::int64_t k = -1; k >= -std::int64_t{terms.frequency}; --k) {
            const CalendarDate D = advanced(A, k, terms);
            n += 1;
            if (D.julianDay <= settlement.julianDay) break;
        }
    }
    return static_cast<double>(n);
}

double count_whole_coupons(const CalendarDate& date, const CalendarDate& maturity, const CouponTerms& terms) {
    std::int64_t n = periods_of_years(date, maturity, terms);
    CalendarDate A = in_year(date.year, maturity);
    if (A.julianDay == date.julianDay) return static_cast<double>(n);
    if (A.julianDay < date.julianDay) {
        A = in_year(static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{date.year} + 1)), maturity);
        n -= terms.frequency;
    }
    for (std::int64_t k = -1; k >= -std::int64_t{terms.frequency}; --k) {
        const CalendarDate D = advanced(A, k, terms);
        if (D.julianDay < date.julianDay) break;
        n += 1;
        if (D.julianDay == date.julianDay) break;
    }
    return static_cast<double>(n);
}

namespace {

void add_first_period(CouponList* list, const CouponInfo& info) {
    list->currentPeriod = &list->firstPeriod;
    if (info.coincidentCoupon != nullptr) {
        list->boundaryFlags |= START_ON_COUPON;
        list->wholePeriods = 1;
        list->firstPeriod = period(*info.coincidentCoupon, *info.nextCoupon, list->terms);
    } else {
        const bool cut = info.previousCoupon->julianDay != list->startDate->julianDay;
        (cut ? list->partialPeriods : list->wholePeriods) = 1;
        if (!cut) list->boundaryFlags |= START_ON_COUPON;
        list->firstPeriod = period(*info.previousCoupon, *info.nextCoupon, list->terms);
    }
    list->periodsStored += 1;
    if (info.nextCoupon->julianDay == list->endDate->julianDay) list->boundaryFlags |= END_ON_COUPON;
}

void add_later_periods(CouponList* list, const CalendarDate& first_end) {
    const std::int64_t end = list->endDate->julianDay;
    CalendarDate last = first_end;
    for (std::int64_t k = 1;; ++k) {
        const CalendarDate D = advanced(first_end, k, *list->terms);
        if (comes_round(k, D, last, end, *list->terms)) return;
        list->lastPeriod = period(last, D, list->terms);
        list->currentPeriod = &list->lastPeriod;
        list->periodsStored += 1;
        if (D.julianDay > end) {
            list->partialPeriods += 1;
            return;
        }
        list->wholePeriods += 1;
        if (D.julianDay == end) {
            list->boundaryFlags |= END_ON_COUPON;
            list->exactEndPeriod = &list->lastPeriod;
            return;
        }
        last = D;
    }
}

}  // namespace

void list_coupons(CouponList* list) {
    list->firstPeriod = {};
    list->lastPeriod = {};
    CouponInfo info{};
    info.settlement = list->startDate;
    info.maturity = list->maturity;
    info.terms = list->terms;
    find_coupons(&info);
    add_first_period(list, info);
    if (info.nextCoupon->julianDay < list->endDate->julianDay) add_later_periods(list, *info.nextCoupon);
}

double sum_of_proportions(double total, const CalendarDate& origin, const CalendarDate& end, WalkEnd until,
                          CouponTerms* terms) {
    CalendarDate P = origin;
    for (std::int64_t k = 1;; ++k) {
        const CalendarDate D = advanced(origin, k, *terms);
        const bool reached = until == WalkEnd::after ? D.julianDay > end.julianDay : D.julianDay >= end.julianDay;
        if (reached || comes_round(k, D, P, end.julianDay, *terms))
            return total + Compute1CouponProportion(&P, &end, &P, &D, terms);
        total += Compute1CouponProportion(&P, &D, &P, &D, terms);
        P = D;
    }
}

}  // namespace finance::test::literal
