#include "calendar/calendar_date.hpp"

#include "abi/conversions.hpp"
#include "calendar/day_count.hpp"

namespace finance {

DateOrder zCompareDates(const CalendarDate* a, const CalendarDate* b) {
    if (a->julianDay < b->julianDay) return DATE_BEFORE;
    return a->julianDay == b->julianDay ? DATE_EQUAL : DATE_AFTER;
}

// ---- The years 1 to 9999, in 32 bits without a sign
//
// Both count from 1 March of the year 0, so that the leap day ends a year, and months from 3 (March) to 14 (February).
// The divisions by 146097 / 4 and 1461 / 4 days, and by 153 / 5 days for a month, are multiplications: 2939745 / 2^32 is
// 4 / 1461, and 2141 / 2^16 is 5 / 153, each near enough for every remainder that comes up.

namespace {

constexpr std::int64_t march_1_of_year_1 = 1721485;
constexpr std::int64_t end_of_year_9999 = 5373484;

bool is_usual_day(std::int64_t julian_day) { return julian_day >= march_1_of_year_1 && julian_day <= end_of_year_9999; }

std::int64_t usual_day(std::int32_t year, std::int32_t month, std::int32_t day) {
    const std::uint32_t next_year = month <= 2 ? 1 : 0;
    const std::uint32_t y = static_cast<std::uint32_t>(year) - next_year;
    const std::uint32_t m = static_cast<std::uint32_t>(month) + 12 * next_year;
    const std::uint32_t century = y / 100;
    const std::uint32_t days = 1461 * y / 4 - century + century / 4 + (979 * m - 2919) / 32;
    return MARCH_1_OF_YEAR_0 - 1 + std::int64_t{days} + day;
}

void split_usual_day(CalendarDate* date) {
    const std::uint32_t quarters = 4 * static_cast<std::uint32_t>(date->julianDay - MARCH_1_OF_YEAR_0) + 3;
    const std::uint32_t century = quarters / 146097;
    const std::uint32_t quarters_of_century = quarters % 146097 | 3;
    const std::uint64_t years = std::uint64_t{2939745} * quarters_of_century;
    const std::uint32_t day_of_year = static_cast<std::uint32_t>(years) / 2939745 / 4;  // 0: 1 March
    const std::uint32_t month_and_day = 2141 * day_of_year + 197913;
    const bool next_year = day_of_year >= 306;  // 1 January
    const std::uint32_t month = month_and_day >> 16;
    date->year =
        static_cast<std::int32_t>(100 * century + static_cast<std::uint32_t>(years >> 32) + (next_year ? 1 : 0));
    date->month = static_cast<std::int32_t>(next_year ? month - 12 : month);
    date->day = static_cast<std::int32_t>((month_and_day & 0xFFFF) / 2141 + 1);
}

}  // namespace

// ---- All years

// Counts from 1 March of the year -4800, so that the leap day ends a year: a is -1 for January and February.
// 1461 days are four years, 367/12 the rhythm of month lengths, 3 days in four centuries are no leap days.
// Bounds: |year| < 2^31, so no product reaches 2^43.
std::int64_t julian_day_of(std::int32_t year, std::int32_t month, std::int32_t day) {
    if (is_usual_month(year, month)) return usual_day(year, month, day);
    const std::int64_t y = year < 0 ? std::int64_t{year} + 1 : std::int64_t{year};
    const std::int64_t m = month;
    const std::int64_t a = (m - 14) / 12;
    return (1461 * (y + 4800 + a)) / 4 + (367 * (m - 2 - 12 * a)) / 12 - (3 * ((y + 4900 + a) / 100)) / 4 + day - 32075;
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
    const bool usual = is_usual_day(date->julianDay);
    if (usual) {
        split_usual_day(date);
    } else {
        ConvertJulianToDate(&date->year, &date->month, &date->day, date->julianDay);
    }
    date->endOfMonth = date->day == zlastDay(date->year, date->month) ? 1 : 0;
    date->anchorDay = date->day;
    if (!usual) ConvertDateToJulian(date);  // beyond the exact years the day number becomes that of the date
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

namespace {

struct Moved {
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;
};

Moved moved(const CalendarDate& date, std::int32_t year, std::int64_t count, const CouponTerms& terms) {
    const std::int32_t k = low_32_bits(wrapping_multiply(count, terms.monthsPerPeriod));
    Moved to{year, date.month, 0};
    if (terms.stepUnit == STEP_MONTHS) {
        const std::int64_t t = std::int64_t{date.month} + k;
        std::int64_t q = t / 12;
        std::int64_t r = t % 12;
        if (r < 1) {
            q -= 1;
            r += 12;
        }
        to.month = static_cast<std::int32_t>(r);
        to.year = low_32_bits(year + q);
    } else if (terms.stepUnit == STEP_YEARS) {
        to.year = wrapping_add(year, k);
    }
    const std::int32_t target_day = date.anchorDay >= 1 ? date.anchorDay : date.day;
    const std::int32_t last = zlastDay(to.year, to.month);
    to.day = date.endOfMonth == 0 && target_day <= last ? target_day : last;
    return to;
}

}  // namespace

CalendarDate* zAdvanceDate(CalendarDate* result, const CalendarDate* date, std::int64_t count,
                           const CouponTerms* terms) {
    const Moved to = moved(*date, date->year, count, *terms);
    *result = {.day = to.day,
               .month = to.month,
               .year = to.year,
               .julianDay = julian_day_of(to.year, to.month, to.day),
               .anchorDay = date->anchorDay,
               .endOfMonth = date->endOfMonth};
    return result;
}

std::int64_t advanced_day(const CalendarDate& date, std::int32_t year, std::int64_t count, const CouponTerms& terms) {
    const Moved to = moved(date, year, count, terms);
    return julian_day_of(to.year, to.month, to.day);
}

}  // namespace finance
