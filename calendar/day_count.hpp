// Day-count bases: how days between two dates are counted, how long a year and a coupon period are.
//
// Three routines count, for three kinds of caller. They share their primitives (30/360, actual days, leap years) and
// differ in this:
//
//                     CountTheDays              ComputeTheAnnualRatio             CountTheCouponDays (coupon_days.hpp)
//   used by           days to and from coupons  year fractions                    days inside a coupon period
//   30/360            zdays360 method 0         zdays360 method 0                 month-end variant, at most a period;
//                                                                                 or zdays360 method 0 (couponDayRule)
//   + 1 for day 31    if day31Adjust            if day31Adjust, unless            never
//                                               noDay31Adjust
//   ACTUAL, year      average of the calendar   the same, without leap years      1, to be divided by a period's days
//                     years touched             cut before or after February,
//                                               unless allLeapYears; or the
//                                               start year's, if startYearLength
//   EU30/360          zdays360 method 4         zdays360 method 4                 days 31 count as 30
//   capped at period  no                        no                                beside the count, for bases 2 to 4
//   unknown basis     changes nothing           largest double                    the last count
#pragma once

#include <cstdint>

#include "abi/basis.hpp"
#include "abi/limits.hpp"
#include "calendar/calendar_date.hpp"

namespace finance {

// Frequency, period and basis of a date calculation. Handlers fill it from zero.
struct CouponTerms {
    std::int32_t day31Adjust;      // flag: 30/360 counts one day more when the end date is a 31st
    std::int32_t proportionFloor;  // flag: Compute1CouponProportion is at least 1
    std::int32_t frequency;        // coupons per year
    std::int32_t stepUnit;         // StepUnit
    std::int64_t monthsPerPeriod;  // or no_months_per_period
    double periodDays;             // days of a coupon period; the counting routines leave their year length here
    std::int32_t basis;            // DayCountBasis
    std::int32_t couponDayRule;    // flag: 30/360 days inside a coupon period by zdays360
    double dayCount;               // the last count
    double cappedDayCount;         // the last count of coupon days, at most periodDays
    double countYearLength;        // the year length of that count: 360, 365; 1 for ACTUAL
    std::int8_t startYearLength;   // flag: ACTUAL takes the start year's length
    std::int8_t noDay31Adjust;     // flag: switches day31Adjust off in ComputeTheAnnualRatio
    std::int8_t allLeapYears;      // flag: ACTUAL counts every leap year touched as 366 days
};

// What frequencies other than 1, 2, 4, 6 and 12 have instead of months. Such schedules mean nothing, and end.
inline constexpr std::int64_t no_months_per_period = -2147483647;

// monthsPerPeriod from frequency. (Both in place: in lanes, terms are to stay in registers.)
[[gnu::always_inline]] inline void zComputePeriod(CouponTerms* terms) {
    switch (terms->frequency) {
        case 1:
        case 2:
        case 4:
        case 6:
        case 12:
            terms->monthsPerPeriod = 12 / terms->frequency;
            break;
        default:
            terms->monthsPerPeriod = no_months_per_period;
    }
}

// periodDays from frequency and basis: 360 or 365 over the frequency; ACTUAL: the largest double.
[[gnu::always_inline]] inline void zComputeDaysInPeriod(CouponTerms* terms) {
    switch (terms->basis) {
        case BASIS_30_360:
        case BASIS_ACT_360:
        case BASIS_EU30_360:
            terms->periodDays = 360.0 / terms->frequency;
            break;
        case BASIS_ACT_365:
            terms->periodDays = 365.0 / terms->frequency;
            break;
        default:
            terms->periodDays = largest_double;
    }
}

// 30/360 days. method 0: with the month-end rules of the US; 4: European. Any other: 2^53.
//   method 0: a start on a 31st before an end below the 30th moves to the 1st of the next month; the end of February
//   counts as a 30th as an end date only.
std::int64_t zdays360(const CalendarDate* start, const CalendarDate* end, std::int32_t method);

// Days of the basis, into dayCount; the year's length, into periodDays.
void CountTheDays(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms);

// The days alone.
double days_between(const CalendarDate& start, const CalendarDate& end, const CouponTerms& terms);

// Days over year length, both left in terms as by CountTheDays.
double ComputeTheAnnualRatio(const CalendarDate* start, const CalendarDate* end, CouponTerms* terms);

// Whether 30/360 counts a day more when the end date is a 31st.
enum class Day31 : std::int32_t { as_30, counted };

// Makes empty terms those of a calculation over one stretch of time.
inline void set_one_period(CouponTerms& terms, Day31 day_31) {
    terms.day31Adjust = static_cast<std::int32_t>(day_31);
    terms.frequency = 1;
    terms.stepUnit = STEP_YEARS;
    terms.monthsPerPeriod = 12;
}

}  // namespace finance
