// The list of coupon periods: single stretches, and long ones against a list made period by period.
#include "calendar/coupon_list.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/calendar/literal_schedule.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

// ---- Single stretches, coupon dates 15 May and 15 November

struct Row {
    std::string id;
    CalendarDate start;
    CalendarDate end;
    std::int32_t partial;
    std::int32_t whole;
    std::int32_t stored;
    std::uint32_t boundaries;
    bool exact_end;
    CalendarDate first_start;
    CalendarDate last_end;  // of the period written last
    double last_days;       // of its days, under ACTUAL
};

const std::vector<Row> rows{
    {"within one period", date_of(2001, 6, 1), date_of(2001, 9, 1), 1, 0, 1, 0, false, date_of(2001, 5, 15),
     date_of(2001, 11, 15), 184},
    {"to the coupon date", date_of(2001, 6, 1), date_of(2001, 11, 15), 1, 0, 1, END_ON_COUPON, false,
     date_of(2001, 5, 15), date_of(2001, 11, 15), 184},
    {"over a coupon date", date_of(2001, 6, 1), date_of(2002, 1, 1), 2, 0, 2, 0, false, date_of(2001, 5, 15),
     date_of(2002, 5, 15), 181},
    {"to the second coupon date", date_of(2001, 6, 1), date_of(2002, 5, 15), 1, 1, 2, END_ON_COUPON, true,
     date_of(2001, 5, 15), date_of(2002, 5, 15), 181},
    {"over two coupon dates", date_of(2001, 6, 1), date_of(2002, 6, 1), 2, 1, 3, 0, false, date_of(2001, 5, 15),
     date_of(2002, 11, 15), 184},
    {"from a coupon date, within its period", date_of(2001, 5, 15), date_of(2001, 9, 1), 0, 1, 1, START_ON_COUPON,
     false, date_of(2001, 5, 15), date_of(2001, 11, 15), 184},
    {"from a coupon date to the next", date_of(2001, 5, 15), date_of(2001, 11, 15), 0, 1, 1,
     START_ON_COUPON | END_ON_COUPON, false, date_of(2001, 5, 15), date_of(2001, 11, 15), 184},
    {"from a coupon date to a later one", date_of(2001, 5, 15), date_of(2004, 5, 15), 0, 6, 6,
     START_ON_COUPON | END_ON_COUPON, true, date_of(2001, 5, 15), date_of(2004, 5, 15), 182},
    {"from the anniversary", date_of(2001, 11, 15), date_of(2002, 9, 1), 1, 1, 2, START_ON_COUPON, false,
     date_of(2001, 11, 15), date_of(2002, 11, 15), 184},
};

struct Listed {
    CouponList list{};
    CouponTerms terms;
    explicit Listed(const CouponTerms& of) : terms{of} { list.terms = &terms; }
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;
};

TEST(CouponList, SingleStretches) {
    const CalendarDate maturity = date_of(2010, 11, 15);
    for (const Row& row : rows) {
        for (const std::int32_t basis : {0, 1, 2, 3, 4}) {
            Listed got{coupon_terms(2, basis)};
            got.list.startDate = &row.start;
            got.list.endDate = &row.end;
            got.list.maturity = &maturity;
            MakeTheCouponList(&got.list);
            const CouponList& list = got.list;
            EXPECT_EQ(list.partialPeriods, row.partial) << row.id;
            EXPECT_EQ(list.wholePeriods, row.whole) << row.id;
            EXPECT_EQ(list.periodsStored, row.stored) << row.id;
            EXPECT_EQ(list.boundaryFlags, row.boundaries) << row.id;
            EXPECT_EQ(list.exactEndPeriod, row.exact_end ? &list.lastPeriod : nullptr) << row.id;
            ASSERT_EQ(list.currentPeriod, row.stored == 1 ? &list.firstPeriod : &list.lastPeriod) << row.id;
            EXPECT_TRUE(same_date(list.firstPeriod.start, row.first_start)) << row.id;
            EXPECT_TRUE(same_date(list.currentPeriod->end, row.last_end)) << row.id << list.currentPeriod->end;
            EXPECT_EQ(list.currentPeriod->days, basis == BASIS_ACTUAL ? row.last_days
                                                : basis == 3          ? 182.5
                                                                      : 180)
                << row.id;
            EXPECT_EQ(list.firstPeriod.reserved, 0);
            EXPECT_EQ(list.lastPeriod.reserved, 0);
        }
    }
}

// ---- Against the list made period by period

bool same_period(const CouponPeriod& a, const CouponPeriod& b) {
    return a.reserved == b.reserved && same_record(a.start, b.start) && same_record(a.end, b.end) &&
           same_value(a.days, b.days);
}

void compare(const CalendarDate& start, const CalendarDate& end, const CalendarDate& maturity,
             const CouponTerms& terms) {
    Listed got{terms};
    Listed expected{terms};
    for (Listed* listed : {&got, &expected}) {
        listed->list.startDate = &start;
        listed->list.endDate = &end;
        listed->list.maturity = &maturity;
    }
    MakeTheCouponList(&got.list);
    literal::list_coupons(&expected.list);
    const CouponList& a = got.list;
    const CouponList& b = expected.list;
    const bool same = a.partialPeriods == b.partialPeriods && a.wholePeriods == b.wholePeriods &&
                      a.periodsStored == b.periodsStored && a.boundaryFlags == b.boundaryFlags &&
                      same_period(a.firstPeriod, b.firstPeriod) && same_period(a.lastPeriod, b.lastPeriod) &&
                      (a.exactEndPeriod == nullptr) == (b.exactEndPeriod == nullptr) &&
                      (a.currentPeriod == &a.firstPeriod) == (b.currentPeriod == &b.firstPeriod) &&
                      same_terms(got.terms, expected.terms);
    ASSERT_TRUE(same) << start << " to " << end << ", maturity " << maturity << ", frequency " << terms.frequency
                      << ", basis " << terms.basis << ": " << a.partialPeriods << ' ' << a.wholePeriods << ' '
                      << a.periodsStored << ' ' << a.boundaryFlags << ' ' << a.lastPeriod.end << ", expected "
                      << b.partialPeriods << ' ' << b.wholePeriods << ' ' << b.periodsStored << ' ' << b.boundaryFlags
                      << ' ' << b.lastPeriod.end;
}

constexpr std::array<std::int32_t, 5> frequencies{1, 2, 4, 6, 12};

// Stretches of up to `longest` days from a start within `around` of a day; one of three ends on a coupon date.
void compare_draws(std::int64_t middle, std::int64_t around, std::int64_t longest, int draws) {
    std::mt19937_64 random{20010531};
    const auto below = [&](std::int64_t bound) {
        return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(bound));
    };
    int on_coupon = 0;
    for (int i = 0; i < drawn(draws) && !testing::Test::HasFatalFailure(); ++i) {
        const CalendarDate start = date_of_julian(middle - around + below(2 * around + 1));
        const CouponTerms terms =
            coupon_terms(frequencies[static_cast<std::size_t>(below(5))], static_cast<std::int32_t>(below(5)));
        CalendarDate end = date_of_julian(start.julianDay + below(longest));
        CalendarDate maturity = date_of_julian(end.julianDay + below(3000));
        if (below(3) == 0) {
            maturity = end;
            ++on_coupon;
        }
        compare(start, end, maturity, terms);
    }
    EXPECT_GT(on_coupon, 0);
}

TEST(CouponList, ShortStretches) { compare_draws(2453000, 20000, 4000, 500'000); }
TEST(CouponList, LongStretches) { compare_draws(2453000, 20000, 3000 * 365, 1000); }
TEST(CouponList, ShortStretchesAroundTheYearZero) { compare_draws(1721426, 2500, 4000, 500'000); }
TEST(CouponList, LongStretchesOverTheYearZero) { compare_draws(1721426 - 500'000, 300'000, 3000 * 365, 1000); }
TEST(CouponList, FarYears) { compare_draws(700'000'000'000, 20000, 4000, 50'000); }

// Where 2^31 months lead below the first year of 32 bits, the next date lies in the far future, and ends the list: 15 May
// of the year -2135604065, moved by 178,956,971 years in months of 32 bits, is 15 January 1980406261.
TEST(CouponList, EndsInTheFarFuture) {
    CalendarDate start{.day = 15, .month = 5, .year = -2135604066, .julianDay = 0, .anchorDay = 15, .endOfMonth = 0};
    ConvertDateToJulian(&start);
    const CalendarDate end = date_of(1905, 3, 30);
    const CalendarDate maturity = date_of(2001, 5, 15);
    Listed got{coupon_terms(1, 0)};
    got.list.startDate = &start;
    got.list.endDate = &end;
    got.list.maturity = &maturity;
    MakeTheCouponList(&got.list);
    EXPECT_EQ(got.list.wholePeriods, 1 + 178956970);
    EXPECT_EQ(got.list.partialPeriods, 1);
    EXPECT_EQ(got.list.periodsStored, 2 + 178956970);
    EXPECT_EQ(got.list.boundaryFlags, static_cast<std::uint32_t>(START_ON_COUPON));
    EXPECT_EQ(got.list.lastPeriod.start.year, -2135604065 + 178956970);
    EXPECT_EQ(got.list.lastPeriod.end.year, 1980406261);
    EXPECT_EQ(got.list.lastPeriod.end.month, 1);
}

// Lists without months per period are those of the literal walk, which ends where an even step reaches the end. (Where
// the first coupon date lies 2^31 months back, it would take as many steps.)
TEST(CouponList, WithoutMonthsPerPeriod) {
    std::mt19937_64 random{20000131};
    int compared = 0;
    for (int i = 0; i < drawn(20'000) && !HasFatalFailure(); ++i) {
        CouponTerms terms =
            coupon_terms(std::array{3, 5, 7, 24, 64, 65}[random() % 6], static_cast<std::int32_t>(random() % 5));
        const CalendarDate start = date_of_julian(2453000 + static_cast<std::int64_t>(random() % 40'000));
        const CalendarDate end = date_of_julian(start.julianDay + static_cast<std::int64_t>(random() % 60'000));
        const CalendarDate maturity = date_of_julian(end.julianDay + static_cast<std::int64_t>(random() % 3000));
        CouponInfo info{};
        info.settlement = &start;
        info.maturity = &maturity;
        info.terms = &terms;
        literal::find_coupons(&info);
        if (info.nextCoupon->julianDay < start.julianDay - 1'000'000) continue;
        compare(start, end, maturity, terms);
        ++compared;
    }
    EXPECT_GT(compared, drawn(5'000));
}

std::int64_t day_in(std::int32_t year) { return julian_day_of(year, 5, 15); }

// Beyond the ends of the 32-bit years day numbers are those of the wrapped years.
TEST(CouponList, AtTheEndsOfTheYears) {
    for (const std::int32_t frequency : frequencies) {
        for (const std::int32_t years : {1, 2, 3, 4, 5, 30}) {
            const CalendarDate start = date_of_julian(day_in(2147483600));
            compare(start, date_of_julian(day_in(2147483600 + years) + 3), date_of_julian(day_in(2147483640)),
                    coupon_terms(frequency, 0));
            const CalendarDate early = date_of_julian(day_in(-2147483600));
            compare(early, date_of_julian(day_in(-2147483600 + years)), date_of_julian(day_in(2000)),
                    coupon_terms(frequency, 1));
        }
    }
}

// A list to the last years, out of reach, ends where the walk comes round.
TEST(CouponList, EndsWithTheYears) {
    const CalendarDate start = date_of(2001, 6, 20);
    CalendarDate end = date_of(2001, 6, 15);
    end.year = 2147483647;
    ConvertDateToJulian(&end);
    for (const std::int32_t frequency : {1, 12, 3, 2147483647}) {
        Listed got{coupon_terms(frequency, BASIS_ACTUAL)};
        got.list.startDate = &start;
        got.list.endDate = &end;
        got.list.maturity = &end;
        MakeTheCouponList(&got.list);
        EXPECT_EQ(got.list.exactEndPeriod, nullptr) << frequency;
        EXPECT_EQ(got.list.partialPeriods, 1) << frequency;  // the first; none reaches the end
        EXPECT_EQ(got.list.boundaryFlags, 0U) << frequency;
        EXPECT_LT(got.list.currentPeriod->end.julianDay, end.julianDay) << frequency;
    }
}

}  // namespace
}  // namespace finance::test
