#include "calendar/coupon_schedule.hpp"

#include <algorithm>
#include <optional>

#include "abi/conversions.hpp"
#include "abi/steps.hpp"
#include "calendar/coupon_days.hpp"

namespace finance {

namespace {

// What coupons_around is asked.
struct Question {
    const CalendarDate& settlement;
    const CalendarDate& maturity;
    CouponTerms& terms;
    std::uint32_t requests;

    [[nodiscard]] bool about(std::uint32_t request) const { return (requests & request) != 0; }
};

// ---- By months

// A schedule on one day of the month: every month has the maturity's day, so that no coupon date is moved, and months
// alone tell what a search would find. Stands on the maturity that it is made of.
class PlainSchedule {
public:
    // Where settlement and maturity have such a schedule, in usual years.
    static std::optional<PlainSchedule> of(const CalendarDate& settlement, const CalendarDate& maturity,
                                           const CouponTerms& terms) {
        constexpr std::int32_t day_of_every_month = 28;
        const bool applies = terms.monthsPerPeriod > 0 && terms.stepUnit == STEP_MONTHS &&
                             maturity.day <= day_of_every_month && maturity.endOfMonth == 0 && settlement.year > 1 &&
                             is_usual_month(settlement.year, settlement.month) &&
                             is_usual_month(maturity.year, maturity.month);
        if (!applies) return std::nullopt;
        return PlainSchedule{settlement, maturity, terms};
    }

    PlainSchedule(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms)
        : maturity_{maturity}, period_{low_32_bits(terms.monthsPerPeriod)} {
        const std::int32_t months = month_number(maturity) - month_number(settlement);
        const bool this_month = maturity.day > settlement.day;  // a coupon is still to come in settlement's month
        later_ = whole_years((months - (this_month ? 0 : 1)) * terms.frequency);
        on_coupon_ = maturity.day == settlement.day && months == (later_ + 1) * period_;
        on_anniversary_ = on_coupon_ && months % months_of_year == 0;
    }

    // Periods from the next coupon date after settlement to maturity.
    [[nodiscard]] std::int32_t later() const { return later_; }
    [[nodiscard]] bool on_coupon() const { return on_coupon_; }
    // On a coupon date in the maturity's month.
    [[nodiscard]] bool on_anniversary() const { return on_anniversary_; }

    // The date so many periods before maturity, whole.
    void set_coupon(CalendarDate* date, std::int32_t periods) const {
        const std::int32_t number = month_number(maturity_) - periods * period_;
        date->day = maturity_.day;
        date->month = number % months_of_year + 1;
        date->year = number / months_of_year;
        date->julianDay = julian_day_of(date->year, date->month, date->day);
        date->anchorDay = maturity_.day;
        date->endOfMonth = 0;
    }

private:
    static constexpr std::int32_t months_of_year = 12;
    static std::int32_t month_number(const CalendarDate& date) { return months_of_year * date.year + date.month - 1; }
    static std::int32_t whole_years(std::int32_t months) {
        return months / months_of_year - (months % months_of_year < 0 ? 1 : 0);
    }

    const CalendarDate& maturity_;
    std::int32_t period_;  // months
    std::int32_t later_;
    bool on_coupon_;
    bool on_anniversary_;
};

void take_coupons(CouponInfo* info, const PlainSchedule& plain, const Question& asked) {
    const bool counts_days_of_period = asked.terms.basis == BASIS_ACTUAL && asked.about(REQUEST_DAYS_IN_PERIOD);
    const std::int32_t next = plain.later();
    if (counts_days_of_period || asked.about(REQUEST_DATES | REQUEST_DAYS_TO_NEXT)) {
        plain.set_coupon(info->nextCoupon, next);
    }
    if (plain.on_coupon()) {
        plain.set_coupon(&info->coincidentSlot, next + 1);
        info->coincidentCoupon = &info->coincidentSlot;
    }
    const bool period_before = plain.on_coupon() && !plain.on_anniversary() && asked.about(REQUEST_DAYS_IN_PERIOD);
    plain.set_coupon(info->previousCoupon, period_before ? next + 2 : next + 1);
}

// ---- By steps

// Steps after which a search that has found nothing goes to as many last ones (4). With months per period it has found
// its date after twelve; without, even steps move by as many months as they are counted, and odd ones by 2^31 less, so
// that a year has passed after twenty-six, or where the count comes to 2^31. Only dates at the end of the 32-bit years
// are found no sooner.
constexpr std::int64_t longest_search = 64;

std::int64_t next_step(std::int64_t k, std::int64_t last) {
    count_step();
    return k < longest_search ? k + 1 : std::max(k + 1, last - longest_search);
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
void settle_on_coupon(CouponInfo* info, const Question& asked, const CalendarDate& A, std::int64_t k) {
    set_coupon(info->previousCoupon, A, asked.about(REQUEST_DAYS_IN_PERIOD) ? k - 1 : k, asked.terms);
    set_coupon(&info->coincidentSlot, A, k, asked.terms);
    set_coupon(info->nextCoupon, A, k + 1, asked.terms);
    info->coincidentCoupon = &info->coincidentSlot;
}

// Steps from A over settlement, forward or backward: `beyond` is where that succeeds, `near` the step before. Where it
// does not, they are the last two steps; without any step, A and no date at all.
void search(CouponInfo* info, const Question& asked, const CalendarDate& A, std::int64_t direction, CalendarDate* near,
            CalendarDate* beyond) {
    const CouponTerms& terms = asked.terms;
    const std::int64_t frequency = terms.frequency;
    const std::int64_t settlement = asked.settlement.julianDay;
    if (frequency < 1) {
        *beyond = A;
        *near = {};
        ConvertDateToJulian(near);
        return;
    }
    std::int64_t k = 1;
    for (; k <= frequency; k = next_step(k, frequency)) {
        const std::int64_t day = advanced_day(A, A.year, direction * k, terms);
        if (day == settlement) return settle_on_coupon(info, asked, A, direction * k);
        if (direction > 0 ? day > settlement : day < settlement) break;
    }
    k = std::min(k, frequency);
    set_coupon(near, A, direction * (k - 1), terms);
    set_coupon(beyond, A, direction * k, terms);
}

void search_coupons(CouponInfo* info, Question asked) {
    const CalendarDate A = anchor_date(asked.settlement, asked.maturity);
    switch (zCompareDates(&A, &asked.settlement)) {
        case DATE_EQUAL:
            *info->previousCoupon = A;
            info->coincidentSlot = A;
            info->coincidentCoupon = &info->coincidentSlot;
            zAdvanceDate(info->nextCoupon, &A, 1, &asked.terms);
            break;
        case DATE_BEFORE:
            search(info, asked, A, 1, info->previousCoupon, info->nextCoupon);
            break;
        case DATE_AFTER:  // only where the month's end moved the anchor past settlement
            search(info, asked, A, -1, info->nextCoupon, info->previousCoupon);
            break;
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

// k counts the steps taken; each one passed over is a coupon less, or one more.
double count_by_steps(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms) {
    const std::int64_t n = periods_between_years(settlement, maturity, terms);
    const std::int32_t year = settlement.year;
    const std::int64_t anchor = maturity_day_in(year, maturity);
    const std::int64_t target = settlement.julianDay;
    if (anchor == target) return static_cast<double>(n);
    const std::int64_t frequency = terms.frequency;
    std::int64_t k = 1;
    if (anchor < target) {
        for (; k <= frequency; k = next_step(k, frequency)) {
            const std::int64_t day = advanced_day(maturity, year, k, terms);
            if (day >= target) return static_cast<double>(day > target ? n - (k - 1) : n - k);
        }
        return static_cast<double>(n - std::max<std::int64_t>(frequency, 0));
    }
    for (; k <= frequency; k = next_step(k, frequency)) {
        if (advanced_day(maturity, year, -k, terms) <= target) return static_cast<double>(n + k);
    }
    return static_cast<double>(n + std::max<std::int64_t>(frequency, 0));
}

// ---- Both

// Dates beyond all years may come out of order from their splitting; the plain count is for settlement before maturity.
double count_in_schedule(const CalendarDate& settlement, const CalendarDate& maturity, const CouponTerms& terms,
                         const PlainSchedule& plain) {
    return before(settlement, maturity) ? plain.later() + 1 : count_by_steps(settlement, maturity, terms);
}

double days_counted(const CalendarDate& start, const CalendarDate& end, CouponTerms* terms) {
    const double days = days_between(start, end, *terms);
    terms->dayCount = days;
    return days;
}

void answer_requests(CouponInfo* info, const Question& asked) {
    if (asked.about(REQUEST_DAYS_SINCE_PREVIOUS)) {
        info->daysSincePrevious = days_counted(*info->previousCoupon, asked.settlement, &asked.terms);
    }
    if (asked.about(REQUEST_DAYS_TO_NEXT)) {
        info->daysToNext = days_counted(asked.settlement, *info->nextCoupon, &asked.terms);
    }
    if (asked.about(REQUEST_DAYS_IN_PERIOD)) {
        const CalendarDate* start = info->coincidentCoupon != nullptr ? info->coincidentCoupon : info->previousCoupon;
        info->daysInPeriod = period_days(*start, *info->nextCoupon, &asked.terms);
    }
}

void set_results(CouponInfo* info) {
    info->previousCoupon = &info->previousCouponSlot;
    info->nextCoupon = &info->nextCouponSlot;
    info->coincidentCoupon = nullptr;
}

}  // namespace

double coupons_around(CouponInfo* info, const CalendarDate& settlement, const CalendarDate& maturity,
                      CouponTerms* terms, std::uint32_t requests) {
    const Question asked{settlement, maturity, *terms, requests};
    set_results(info);
    double count = 0.0;
    if (const auto plain = PlainSchedule::of(settlement, maturity, *terms)) {
        if (asked.about(REQUEST_COUNT)) count = count_in_schedule(settlement, maturity, *terms, *plain);
        take_coupons(info, *plain, asked);
    } else {
        if (asked.about(REQUEST_COUNT)) count = count_by_steps(settlement, maturity, *terms);
        search_coupons(info, asked);
    }
    answer_requests(info, asked);
    return count;
}

void FindCouponInfo(CouponInfo* info) {
    if (info->maturity == nullptr) return set_results(info);
    coupons_around(info, *info->settlement, *info->maturity, info->terms, info->requests | REQUEST_DATES);
}

double CountTheCoupons(const CalendarDate* settlement, const CalendarDate* maturity, const CalendarDate* /*spare*/,
                       const CouponTerms* terms) {
    const auto plain = PlainSchedule::of(*settlement, *maturity, *terms);
    return plain ? count_in_schedule(*settlement, *maturity, *terms, *plain)
                 : count_by_steps(*settlement, *maturity, *terms);
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
