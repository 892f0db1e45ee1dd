#include "calendar/coupon_dates.hpp"

namespace finance {

FINANCE_HANDLER_OF(COUPDAYBS)
FINANCE_HANDLER_OF(COUPDAYS)
FINANCE_HANDLER_OF(COUPDAYSNC)
FINANCE_HANDLER_OF(COUPNCD)
FINANCE_HANDLER_OF(COUPNUM)
FINANCE_HANDLER_OF(COUPPCD)

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
