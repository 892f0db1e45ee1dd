// COUPDAYBS, COUPDAYS, COUPDAYSNC, COUPNCD, COUPNUM, COUPPCD: the coupon period around a settlement date.
//
//  (1) Settlement before maturity, or for three of the six at most equal to it.
//  (2) A settlement out of order is the fault of the maturity; COUPDAYBS alone names the frequency.
//  (3) Every frequency of at least 1 is taken; schedules mean something for 1, 2, 4, 6 and 12.
//  (4) A settlement on a coupon date begins its period: its coupon is the previous one and is not counted.
#include "abi/host_services.hpp"
#include "calendar/date_arguments.hpp"
#include "calendar/kernels.hpp"

namespace finance {

// ---- Handlers

namespace {

enum class EqualDates : bool { refused, accepted };

using Compute = double (*)(CouponDateRecord* record);

// settlement, maturity, frequency, basis
Status coupon_question(Arguments&& in, EqualDates equal_dates, int flagged_for_order, Compute compute) {
    CouponDateRecord record{};
    if (!read_date(in, 1, record.settlement) || !read_date(in, 2, record.maturity)) return in.status();
    if (before(record.maturity, record.settlement) ||
        (equal_dates == EqualDates::refused && same_day(record.settlement, record.maturity))) {
        return in.invalid(flagged_for_order);
    }
    if (!read_coupon_terms(in, 3, record.terms)) return in.status();
    return in.answer(compute(&record));
}

}  // namespace

FINANCE_HANDLER(COUPDAYBS) {
    return coupon_question({context, result, count}, EqualDates::refused, 3, zComputeCOUPDAYBS);
}

FINANCE_HANDLER(COUPDAYS) {
    return coupon_question({context, result, count}, EqualDates::accepted, 2, zComputeCOUPDAYS);
}

FINANCE_HANDLER(COUPDAYSNC) {
    return coupon_question({context, result, count}, EqualDates::accepted, 2, zComputeCOUPDAYSNC);
}

FINANCE_HANDLER(COUPNCD) { return coupon_question({context, result, count}, EqualDates::refused, 2, zComputeCOUPNCD); }

FINANCE_HANDLER(COUPNUM) { return coupon_question({context, result, count}, EqualDates::accepted, 2, zComputeCOUPNUM); }

FINANCE_HANDLER(COUPPCD) { return coupon_question({context, result, count}, EqualDates::refused, 2, zComputeCOUPPCD); }

// ---- Answers

namespace {

double find_coupons(CouponDateRecord* record, std::uint32_t requests) {
    zgetMonthDayYear(&record->settlement);
    zgetMonthDayYear(&record->maturity);
    return coupons_around(&record->info, record->settlement, record->maturity, &record->terms, requests);
}

double host_date(const CalendarDate& date) { return zmdy(date.month, date.day, date.year); }

}  // namespace

double zComputeCOUPDAYBS(CouponDateRecord* record) {
    find_coupons(record, REQUEST_DAYS_SINCE_PREVIOUS);
    return record->info.daysSincePrevious;
}

// All bases but ACTUAL answer from the frequency, whatever the dates.
double zComputeCOUPDAYS(CouponDateRecord* record) {
    switch (record->terms.basis) {
        case BASIS_30_360:
        case BASIS_ACT_360:
        case BASIS_EU30_360:
            return 360.0 / record->terms.frequency;
        case BASIS_ACT_365:
            return 365.0 / record->terms.frequency;
        case BASIS_ACTUAL:
            find_coupons(record, REQUEST_DAYS_IN_PERIOD);
            return record->info.daysInPeriod;
        default:
            return MISSING_VALUE;
    }
}

double zComputeCOUPDAYSNC(CouponDateRecord* record) {
    find_coupons(record, REQUEST_DAYS_TO_NEXT);
    return record->info.daysToNext;
}

double zComputeCOUPNCD(CouponDateRecord* record) {
    find_coupons(record, REQUEST_DATES);
    return host_date(*record->info.nextCoupon);
}

double zComputeCOUPNUM(CouponDateRecord* record) {
    zgetMonthDayYear(&record->settlement);
    zgetMonthDayYear(&record->maturity);
    return CountTheCoupons(&record->settlement, &record->maturity, &record->maturity, &record->terms);
}

double zComputeCOUPPCD(CouponDateRecord* record) {
    find_coupons(record, REQUEST_DATES);
    return host_date(*record->info.previousCoupon);
}

}  // namespace finance
