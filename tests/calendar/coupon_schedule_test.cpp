// Schedules against a list of coupon dates made the slow way: every maturity day of four years, every frequency, every
// basis, every settlement day of a leap year.
#include "calendar/coupon_schedule.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/calendar/day_rules.hpp"

namespace finance::test {
namespace {

// A release build takes every maturity; others, sanitized ones among them, every eleventh.
#ifdef NDEBUG
constexpr std::int64_t maturity_stride = 1;
#else
constexpr std::int64_t maturity_stride = 11;
#endif

// All coupon dates from before `first` up to maturity, ascending: from month to month backwards; the maturity's day,
// the month's last where it has no such day or where the maturity ends its month.
std::vector<CalendarDate> coupon_dates(const CalendarDate& maturity, int months, const CalendarDate& first) {
    std::vector<CalendarDate> dates;
    std::chrono::year_month in{std::chrono::year{maturity.year},
                               std::chrono::month{static_cast<unsigned>(maturity.month)}};
    do {
        const auto last = static_cast<unsigned>((in / std::chrono::last).day());
        const auto day = maturity.endOfMonth != 0 ? last : std::min(last, static_cast<unsigned>(maturity.day));
        dates.push_back(date_of(static_cast<int>(in.year()), static_cast<unsigned>(in.month()), day));
        in -= std::chrono::months{months};
    } while (dates.back().julianDay >= first.julianDay);
    std::reverse(dates.begin(), dates.end());
    return dates;
}

// Where a settlement stands in the list.
struct Place {
    const CalendarDate* before_previous;  // of a settlement on a coupon date
    const CalendarDate* previous;         // on or before settlement
    const CalendarDate* next;             // after settlement
    bool coincides;
    bool anniversary;        // in the maturity's month, and not before its day: where a search starts
    std::int64_t left;       // coupon dates after settlement
    std::int64_t left_from;  // coupon dates on or after it
};

Place find(const std::vector<CalendarDate>& dates, const CalendarDate& settlement, const CalendarDate& maturity) {
    const auto later = [](std::int64_t day, const CalendarDate& coupon) { return day < coupon.julianDay; };
    const auto next = std::upper_bound(dates.begin(), dates.end(), settlement.julianDay, later);
    Place place{};
    place.next = &*next;
    place.previous = place.next - 1;
    place.coincides = place.previous->julianDay == settlement.julianDay;
    place.before_previous = place.coincides ? place.previous - 1 : nullptr;
    place.anniversary = place.coincides && settlement.month == maturity.month && settlement.day >= maturity.day;
    place.left = dates.end() - next;
    place.left_from = place.left + (place.coincides ? 1 : 0);
    return place;
}

double days_of_basis(std::int32_t basis, const CalendarDate& start, const CalendarDate& end) {
    if (basis == BASIS_30_360) return static_cast<double>(us_days(start, end));
    if (basis == BASIS_EU30_360) return static_cast<double>(european_days(start, end));
    return static_cast<double>(end.julianDay - start.julianDay);
}

// The counts compare settlement with the maturity's day and month as they stand: 28 February is the anniversary also
// where the coupon is due on the 29th, and a 29 February that the year does not have is 1 March.
std::int64_t plain_anniversary(const CalendarDate& maturity, int year) {
    return date_of(year, static_cast<unsigned>(maturity.month), 1).julianDay + maturity.day - 1;
}

// Coupons after settlement.
std::int64_t coupons_left(const Place& place, const CalendarDate& settlement, const CalendarDate& maturity,
                          std::int64_t frequency) {
    const std::int64_t anniversary = plain_anniversary(maturity, settlement.year);
    const std::int64_t from_anniversary = (maturity.year - settlement.year) * frequency;
    if (settlement.julianDay == anniversary) return from_anniversary;
    const bool paid_before_it =
        place.coincides && settlement.month == maturity.month && settlement.julianDay < anniversary;
    return place.left + (paid_before_it ? 1 : 0);
}

std::int64_t whole_periods_left(const Place& place, const CalendarDate& settlement, const CalendarDate& maturity,
                                std::int64_t frequency) {
    const std::int64_t anniversary = plain_anniversary(maturity, settlement.year);
    if (settlement.julianDay == anniversary) return (maturity.year - settlement.year) * frequency;
    return place.left_from - 1;
}

class Schedules : public testing::TestWithParam<int> {};

// One settlement under one basis, without and with the request for the days of the period.
bool agrees(const CalendarDate& settlement, const CalendarDate& maturity, const Place& place, CouponTerms terms) {
    CouponInfo info{};
    info.settlement = &settlement;
    info.maturity = &maturity;
    info.terms = &terms;
    const double period = terms.periodDays;
    const double in_period =
        terms.basis == BASIS_ACTUAL ? days_of_basis(BASIS_ACTUAL, *place.previous, *place.next) : period;
    for (const std::uint32_t request : {0U, std::uint32_t{REQUEST_DAYS_IN_PERIOD}}) {
        info.requests = request | REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_TO_NEXT;
        FindCouponInfo(&info);
        // on a coupon date, but for the anniversary, the period before it is shown with that request
        const bool earlier = request != 0 && place.coincides && !place.anniversary;
        const CalendarDate& previous = earlier ? *place.before_previous : *place.previous;
        const bool right = same_date(*info.previousCoupon, previous) && same_date(*info.nextCoupon, *place.next) &&
                           (info.coincidentCoupon != nullptr) == place.coincides &&
                           (!place.coincides || same_date(*info.coincidentCoupon, settlement)) &&
                           info.daysSincePrevious == days_of_basis(terms.basis, previous, settlement) &&
                           info.daysToNext == days_of_basis(terms.basis, settlement, *place.next) &&
                           (request == 0 || info.daysInPeriod == in_period) && terms.periodDays == period;
        if (!right) return false;
    }
    return true;
}

void check_year(int frequency, int settlement_year, std::int64_t stride) {
    const std::int64_t settlements = host_days(settlement_year + 1, 1, 1) - host_days(settlement_year, 1, 1);
    std::vector<CalendarDate> days;
    for (std::int64_t i = 0; i < settlements; ++i) {
        days.push_back(date_of_julian(date_of(settlement_year, 1, 1).julianDay + i));
    }
    std::int64_t checked = 0;
    std::int64_t coincided = 0;
    const std::int64_t first_maturity = date_of(settlement_year + 1, 1, 1).julianDay;
    const std::int64_t last_maturity = date_of(settlement_year + 5, 1, 1).julianDay - 1;
    for (std::int64_t day = first_maturity; day <= last_maturity; day += stride) {
        const CalendarDate maturity = date_of_julian(day);
        // back to a whole period before the year's first
        const std::vector<CalendarDate> dates =
            coupon_dates(maturity, 12 / frequency, date_of(settlement_year - 1, 1, 1));
        for (const CalendarDate& settlement : days) {
            const Place place = find(dates, settlement, maturity);
            for (std::int32_t basis = 0; basis <= 4; ++basis, ++checked) {
                ASSERT_TRUE(agrees(settlement, maturity, place, coupon_terms(frequency, basis)))
                    << settlement << " to " << maturity << ", basis " << basis;
            }
            const CouponTerms terms = coupon_terms(frequency, BASIS_30_360);
            ASSERT_EQ(CountTheCoupons(&settlement, &maturity, nullptr, &terms),
                      static_cast<double>(coupons_left(place, settlement, maturity, frequency)))
                << settlement << " to " << maturity;
            ASSERT_EQ(CountWholeCoupons(&settlement, &maturity, nullptr, &terms),
                      static_cast<double>(whole_periods_left(place, settlement, maturity, frequency)))
                << settlement << " to " << maturity;
            if (place.coincides) ++coincided;
        }
    }
    EXPECT_EQ(checked, 5 * settlements * ((last_maturity - first_maturity) / stride + 1));
    EXPECT_GT(coincided, 0);
}

TEST_P(Schedules, EveryMaturityAndSettlement) { check_year(GetParam(), 2004, maturity_stride); }

// The other years of the cycle, for some maturities; 2007 has a maturity on 29 February ahead of it.
TEST_P(Schedules, CommonYears) {
    for (const int year : {2005, 2006, 2007, 1899}) check_year(GetParam(), year, 12 * maturity_stride + 1);
}

// Every settlement of a common year and of a leap year to the ends of February.
TEST_P(Schedules, EndsOfFebruary) {
    const int frequency = GetParam();
    int checked = 0;
    for (const int year : {2003, 2004, 2007, 2008}) {
        for (const CalendarDate& maturity : {date_of(2009, 2, 28), date_of(2012, 2, 28), date_of(2012, 2, 29)}) {
            const std::vector<CalendarDate> dates = coupon_dates(maturity, 12 / frequency, date_of(year - 1, 1, 1));
            for (std::int64_t day = host_days(year, 1, 1); day < host_days(year + 1, 1, 1); ++day, ++checked) {
                const CalendarDate settlement = date_of_julian(day + HOST_EPOCH_JULIAN_DAY);
                const Place place = find(dates, settlement, maturity);
                const CouponTerms terms = coupon_terms(frequency, BASIS_ACTUAL);
                ASSERT_TRUE(agrees(settlement, maturity, place, terms)) << settlement << " to " << maturity;
                ASSERT_EQ(CountTheCoupons(&settlement, &maturity, nullptr, &terms),
                          static_cast<double>(coupons_left(place, settlement, maturity, frequency)))
                    << settlement << " to " << maturity;
                ASSERT_EQ(CountWholeCoupons(&settlement, &maturity, nullptr, &terms),
                          static_cast<double>(whole_periods_left(place, settlement, maturity, frequency)))
                    << settlement << " to " << maturity;
            }
        }
    }
    EXPECT_EQ(checked, 3 * (4 * 365 + 2));
}

INSTANTIATE_TEST_SUITE_P(Frequency, Schedules, testing::Values(1, 2, 4, 6, 12), testing::PrintToStringParamName{});

// A period of one year, counted in years instead of months: 15 March of each. By hand.
TEST(SchedulesOfYears, StepByTheirUnit) {
    const CalendarDate settlement = date_of(2010, 5, 10);
    const CalendarDate maturity = date_of(2015, 3, 15);
    CouponTerms terms = coupon_terms(1, BASIS_30_360);
    terms.stepUnit = STEP_YEARS;
    terms.monthsPerPeriod = 1;
    CouponInfo info{};
    EXPECT_EQ(coupons_around(&info, settlement, maturity, &terms, REQUEST_DATES | REQUEST_COUNT), 5.0);
    EXPECT_TRUE(same_date(*info.previousCoupon, date_of(2010, 3, 15))) << *info.previousCoupon;
    EXPECT_TRUE(same_date(*info.nextCoupon, date_of(2011, 3, 15))) << *info.nextCoupon;
    EXPECT_EQ(info.coincidentCoupon, nullptr);
}

}  // namespace
}  // namespace finance::test
