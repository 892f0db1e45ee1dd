// Walks by whole periods: what may be skipped, and where a walk comes round.
#include "calendar/period_walk.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "tests/calendar/dates.hpp"

namespace finance::test {
namespace {

constexpr std::array<std::int32_t, 5> frequencies{1, 2, 4, 6, 12};

// Skipping some periods, all that may be, or none leads to the same dates.
TEST(PeriodWalk, SkippedPeriodsLieWellBeforeTheEnd) {
    std::mt19937_64 random{19990101};
    int skipped = 0;
    for (int i = 0; i < drawn(100'000); ++i) {
        const CouponTerms terms = coupon_terms(frequencies[random() % 5], 0);
        const CalendarDate origin = date_of_julian(1500000 + static_cast<std::int64_t>(random() % 1'000'000));
        const CalendarDate end = date_of_julian(origin.julianDay + static_cast<std::int64_t>(random() % 20'000));
        PeriodWalk walk{origin, terms};
        const std::int64_t most = walk.sure_steps(end);
        ASSERT_GE(most, 0);
        if (most == 0) continue;
        const std::int64_t some = 1 + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(most));
        walk.skip(some);
        CalendarDate expected{};
        zAdvanceDate(&expected, &origin, some, &terms);
        ASSERT_TRUE(same_record(walk.to(), expected)) << origin << ' ' << some;
        ASSERT_LT(walk.to().julianDay + 365, end.julianDay) << origin << ' ' << end;
        ASSERT_TRUE(walk.step());
        ASSERT_TRUE(same_record(walk.from(), expected)) << origin << ' ' << some;
        zAdvanceDate(&expected, &origin, some + 1, &terms);
        ASSERT_TRUE(same_record(walk.to(), expected)) << origin << ' ' << some;
        ++skipped;
    }
    EXPECT_GT(skipped, drawn(50'000));
}

// Where the next step would go back by all years, or by 2^31 months (178,956,970 years and 8 months), the walk comes
// round; without months per period where the even steps do, or odd ones that began in the far future: 124 months before
// the end of the years.
TEST(PeriodWalk, ComesRound) {
    struct Walk {
        const char* id;
        std::int32_t year;
        std::int32_t frequency;
        std::int64_t step;  // the first that does, by hand
        bool goes_back;     // before the origin; else the years wrap, and it leads to the far future
    };
    const std::vector<Walk> walks{
        {"years, annual", 2147483600, 1, 48, true},  // 2147483647 is 47 years on
        {"years, monthly", 2147483640, 12, 7 * 12 + 8, true},
        {"years, half-years", 2147483647, 2, 2, true},
        {"years, annual, at once", 2147483647, 1, 1, true},
        {"months, annual", 2001, 1, 178956971, true},
        {"months, monthly", 2001, 12, 2147483648, true},
        {"months, quarters", 1000, 4, 715827883, true},
        {"without months", 2001, 3, 2147483648, true},
        {"without months, years", 2147483640, 3, 7 * 12 + 8, true},
        {"without months, odd ones in the far future", -2147483648 + 178956960, 3, 125, true},
        {"without months, odd ones in the past", -2147483648 + 178956980, 3, 2147483648, true},
    };
    for (const Walk& row : walks) {
        CalendarDate origin{.day = 15, .month = 5, .year = row.year, .julianDay = 0, .anchorDay = 15, .endOfMonth = 0};
        ConvertDateToJulian(&origin);
        const CouponTerms terms = coupon_terms(row.frequency, 0);
        PeriodWalk walk{origin, terms};
        walk.skip(row.step - 2);
        EXPECT_TRUE(row.step == 1 || walk.step()) << row.id;
        EXPECT_FALSE(walk.step()) << row.id;
        CalendarDate round{};
        zAdvanceDate(&round, &origin, row.step, &terms);
        EXPECT_TRUE(same_record(walk.to(), round)) << row.id;
        EXPECT_EQ(round.julianDay < origin.julianDay, row.goes_back) << row.id;
    }
}

// Without months per period: every date up to the sure steps lies before the end, and the walk ends soon behind them.
TEST(PeriodWalk, SureStepsWithoutMonths) {
    std::mt19937_64 random{20240229};
    int sure = 0;
    for (int i = 0; i < drawn(2000); ++i) {
        const CouponTerms terms = coupon_terms(3, 0);
        const CalendarDate origin = date_of_julian(1500000 + static_cast<std::int64_t>(random() % 1'000'000));
        const CalendarDate end = date_of_julian(origin.julianDay + static_cast<std::int64_t>(random() % 100'000));
        PeriodWalk walk{origin, terms};
        const std::int64_t steps = walk.sure_steps(end);
        for (std::int64_t k = 1; k <= steps; ++k) {
            ASSERT_TRUE(walk.step());
            ASSERT_LT(walk.to().julianDay, end.julianDay);
            ++sure;
        }
        int more = 0;
        while (walk.step() && before(walk.to(), end)) ++more;
        ASSERT_LT(more, 6 * 12);
    }
    EXPECT_GT(sure, drawn(1'000'000));
}

}  // namespace
}  // namespace finance::test
