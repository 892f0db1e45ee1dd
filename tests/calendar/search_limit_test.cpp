// Searches against their literal form, which takes every step: schedules without months per period, dates at the ends
// of the 32-bit years, dates around the year 0.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/calendar/literal_schedule.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

constexpr std::int32_t last_year = 2147483647;
constexpr std::int32_t first_year = -2147483647 - 1;

bool same_answers(const CouponInfo& a, const CouponInfo& b) {
    const bool coincide = a.coincidentCoupon != nullptr;
    return same_record(*a.previousCoupon, *b.previousCoupon) && same_record(*a.nextCoupon, *b.nextCoupon) &&
           coincide == (b.coincidentCoupon != nullptr) &&
           (!coincide || same_record(*a.coincidentCoupon, *b.coincidentCoupon)) &&
           same_value(a.daysSincePrevious, b.daysSincePrevious) && same_value(a.daysToNext, b.daysToNext) &&
           same_value(a.daysInPeriod, b.daysInPeriod) && same_terms(*a.terms, *b.terms);
}

void compare(const CalendarDate& settlement, const CalendarDate& maturity, std::int32_t frequency, std::int32_t basis,
             std::uint32_t requests) {
    CouponTerms terms = coupon_terms(frequency, basis);
    CouponTerms literal_terms = terms;
    CouponInfo got{};
    got.settlement = &settlement;
    got.maturity = &maturity;
    got.requests = requests;
    CouponInfo expected = got;
    got.terms = &terms;
    expected.terms = &literal_terms;
    FindCouponInfo(&got);
    literal::find_coupons(&expected);
    ASSERT_TRUE(same_answers(got, expected))
        << settlement << " to " << maturity << ", frequency " << frequency << ", basis " << basis << ": "
        << *got.previousCoupon << ' ' << *got.nextCoupon << ", expected " << *expected.previousCoupon << ' '
        << *expected.nextCoupon;
    ASSERT_EQ(CountTheCoupons(&settlement, &maturity, nullptr, &terms),
              literal::count_coupons(settlement, maturity, terms))
        << settlement << " to " << maturity << ", frequency " << frequency;
    ASSERT_EQ(CountWholeCoupons(&settlement, &maturity, nullptr, &terms),
              literal::count_whole_coupons(settlement, maturity, terms))
        << settlement << " to " << maturity << ", frequency " << frequency;
}

// Dates whose years lie within `around` of `middle`, wrapping where the fields do.
class Dates {
public:
    Dates(std::int32_t middle, std::int32_t around) : middle_{middle}, offset_{-around, around} {}
    CalendarDate operator()() {
        CalendarDate made{};
        const std::int64_t year = std::int64_t{middle_} + offset_(random_);
        made.year = static_cast<std::int32_t>(static_cast<std::uint32_t>(year));
        made.month = month_(random_);
        made.day = std::min(day_(random_), zlastDay(made.year, made.month));
        ConvertDateToJulian(&made);
        return date_of_julian(made.julianDay);
    }
    std::int32_t any(std::int32_t below) { return static_cast<std::int32_t>(random_() % static_cast<unsigned>(below)); }

private:
    std::int32_t middle_;
    std::mt19937_64 random_{20080229};
    std::uniform_int_distribution<std::int32_t> offset_;
    std::uniform_int_distribution<std::int32_t> month_{1, 12};
    std::uniform_int_distribution<std::int32_t> day_{1, 31};
};

void compare_draws(std::int32_t middle, std::int32_t around, std::int32_t frequency, int draws) {
    Dates any_date{middle, around};
    for (int i = 0; i < drawn(draws) && !testing::Test::HasFatalFailure(); ++i) {
        const CalendarDate settlement = any_date();
        const CalendarDate maturity = any_date();
        const std::int32_t basis = any_date.any(5);
        compare(settlement, maturity, frequency, basis, static_cast<std::uint32_t>(any_date.any(8)));
    }
}

class SearchLimit : public testing::TestWithParam<std::int32_t> {};

TEST_P(SearchLimit, OrdinaryYears) { compare_draws(2000, 60, GetParam(), GetParam() > 1000 ? 1000 : 100'000); }
TEST_P(SearchLimit, AroundTheYearZero) { compare_draws(0, 4, GetParam(), GetParam() > 1000 ? 1000 : 100'000); }
TEST_P(SearchLimit, BeforeTheCalendarIsExact) {
    compare_draws(-6000, 900, GetParam(), GetParam() > 1000 ? 600 : 20'000);
}
TEST_P(SearchLimit, AtTheEndsOfTheYears) {
    const int draws = GetParam() > 1000 ? 600 : 20'000;
    compare_draws(last_year, 0, GetParam(), draws);  // where searches find nothing
    compare_draws(first_year, 0, GetParam(), draws);
    compare_draws(last_year, 3, GetParam(), draws);
    compare_draws(first_year, 3, GetParam(), draws);
    compare_draws(last_year, 200, GetParam(), draws);
    compare_draws(last_year - 178956970, 20, GetParam(), draws);  // one step of 2^31 months away
    compare_draws(first_year + 178956970, 20, GetParam(), draws);
}

INSTANTIATE_TEST_SUITE_P(Frequency, SearchLimit,
                         testing::Values(1, 2, 4, 6, 12, 3, 5, 7, 63, 64, 65, 66, 67, 100, 365, 100000),
                         testing::PrintToStringParamName{});

// No steps at all.
TEST(SearchWithoutSteps, LikeTheLiteralOne) {
    for (const std::int32_t frequency : {0, -1, -12, first_year}) {
        compare_draws(2000, 60, frequency, 20'000);
        compare_draws(last_year, 3, frequency, 20'000);
    }
}

// Every pair of days of a year and the next, maturities at all ends of February.
TEST(SearchLimit, EveryDayOfAYearWithoutMonthsPerPeriod) {
    for (const std::int32_t frequency : {3, 7, 365}) {
        for (std::int64_t day = 0; day < 366; ++day) {
            const CalendarDate settlement = date_of_julian(date_of(2004, 1, 1).julianDay + day);
            for (std::int64_t later = 366; later < 366 + 365; ++later) {
                compare(settlement, date_of_julian(date_of(2004, 1, 1).julianDay + later), frequency, BASIS_ACTUAL, 7);
                if (HasFatalFailure()) return;
            }
        }
    }
}

}  // namespace
}  // namespace finance::test
