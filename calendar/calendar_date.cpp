#include "calendar/calendar_date.hpp"

#include "abi/conversions.hpp"
#include "calendar/day_count.hpp"

namespace finance {

DateOrder zCompareDates(const CalendarDate* a, const CalendarDate* b) {
    if (a->julianDay < b->julianDay) return DATE_BEFORE;
    return a->julianDay == b->julianDay ? DATE_EQUAL : DATE_AFTER;
}

bool is_leap_year(std::int64_t year) { return year % 4 == 0 && (year % 400 == 0 || year % 100 != 0); }

std::int32_t zlastDay(std::int32_t year, std::int32_t month) {
    switch (month) {
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        case 2:
            return is_leap_year(year) ? 29 : 28;
        default:
            return 31;
    }
}

// Counts from 1 March of the year -4800, so that the leap day ends a year: a is -1 for January and February.
// 1461 days are four years, 367/12 the rhythm of month lengths, 3 days in four centuries are no leap days.
// Bounds: |year| < 2^31, so no product reaches 2^43.
void ConvertDateToJulian(CalendarDate* date) {
    const std::int64_t y = date->year < 0 ? std::int64_t{date->year} + 1 : std::int64_t{date->year};
    const std::int64_t m = date->month;
    const std::int64_t d = date->day;
    const std::int64_t a = (m - 14) / 12;
    date->julianDay =
        (1461 * (y + 4800 + a)) / 4 + (367 * (m - 2 - 12 * a)) / 12 - (3 * ((y + 4900 + a) / 100)) / 4 + d - 32075;
}

// The inverse: centuries (146097 days are 400 years), years (1461001 days are 4000 years), months (2447 days are 80).
// Products wrap for day numbers beyond 2^61; the dates are then meaningless, as their years are.
void ConvertJulianToDate(std::int32_t* year, std::int32_t* month, std::int32_t* day, std::int64_t julian_day) {
    std::int64_t L = wrapping_add(julian_day, std::int64_t{68569});
    const std::int64_t N = wrapping_multiply(4, L) / 146097;
    L = wrapping_add(L, -(wrapping_add(wrapping_multiply(146097, N), std::int64_t{3}) / 4));
    const std::int64_t I = wrapping_multiply(4000, wrapping_add(L, std::int64_t{1})) / 1461001;
    L = wrapping_add(wrapping_add(L, -(wrapping_multiply(1461, I) / 4)), std::int64_t{31});
    const std::int64_t K = wrapping_multiply(80, L) / 2447;
    *day = low_32_bits(wrapping_add(L, -(wrapping_multiply(2447, K) / 80)));
    L = K / 11;
    *month = low_32_bits(K + 2 - 12 * L);
    const std::int64_t astronomical = wrapping_add(wrapping_multiply(100, N - 49), wrapping_add(I, L));
    *year = low_32_bits(astronomical < 1 ? wrapping_add(astronomical, std::int64_t{-1}) : astronomical);
}

void zgetMonthDayYear(CalendarDate* date) {
    ConvertJulianToDate(&date->year, &date->month, &date->day, date->julianDay);
    date->endOfMonth = date->day == zlastDay(date->year, date->month) ? 1 : 0;
    date->anchorDay = date->day;
    ConvertDateToJulian(date);
}

void ToTheFirstOfTheNextMonth(std::int32_t* day, std::int32_t* month, std::int32_t* year) {
    *day = 1;
    if (*month < 12) {
        *month += 1;
    } else {
        *month = wrapping_add(*month, -11);
        *year = wrapping_add(*year, 1);
    }
}

CalendarDate* zAdvanceDate(CalendarDate* result, const CalendarDate* date, std::int64_t count,
                           const CouponTerms* terms) {
    const std::int32_t k = low_32_bits(wrapping_multiply(count, terms->monthsPerPeriod));
    const std::int32_t target_day = date->anchorDay >= 1 ? date->anchorDay : date->day;
    CalendarDate moved = *date;
    if (terms->stepUnit == STEP_MONTHS) {
        const std::int64_t t = std::int64_t{date->month} + k;
        std::int64_t q = t / 12;
        std::int64_t r = t % 12;
        if (r < 1) {
            q -= 1;
            r += 12;
        }
        moved.month = static_cast<std::int32_t>(r);
        moved.year = low_32_bits(date->year + q);
    } else if (terms->stepUnit == STEP_YEARS) {
        moved.year = wrapping_add(date->year, k);
    }
    const std::int32_t last = zlastDay(moved.year, moved.month);
    moved.day = date->endOfMonth == 0 && target_day <= last ? target_day : last;
    ConvertDateToJulian(&moved);
    *result = moved;
    return result;
}

}  // namespace finance
