// Dates of lanes against those of single calls, in every set of instructions: all days of the years 3 to 9999, and the day
// counts of every two days around the ends of months and of far ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "abi/conversions.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/calendar/lane_dates_of_test.hpp"

namespace finance::test {
namespace {

class DatesInLanes : public testing::TestWithParam<const LaneDates*> {};

// A block of dates, and its arrays.
struct Block {
    static constexpr std::size_t rows = 4096;
    std::vector<double> values = std::vector<double>(7 * rows);

    double* array(std::size_t i) { return values.data() + i * rows; }
    DateFields fields() { return {array(0), array(1), array(2), array(3), array(4), array(5), array(6)}; }
};

bool same_fields(const DateFields& lanes, std::size_t row) {
    const auto julian_day = static_cast<std::int64_t>(lanes.julian_day[row]);
    const CalendarDate date = date_of_julian(julian_day);
    return lanes.day[row] == date.day && lanes.month[row] == date.month && lanes.year[row] == date.year &&
           lanes.ends_month[row] == date.endOfMonth && lanes.last_day[row] == zlastDay(date.year, date.month) &&
           lanes.joined[row] == lanes.julian_day[row];
}

TEST_P(DatesInLanes, SplitAndJoinEveryDay) {
    const std::int64_t first = date_of(3, 1, 1).julianDay;
    const std::int64_t last = date_of(9999, 12, 31).julianDay;
    Block block;
    const DateFields fields = block.fields();
    std::int64_t checked = 0;
    for (std::int64_t begin = first; begin <= last; begin += std::int64_t{Block::rows}) {
        for (std::size_t row = 0; row < Block::rows; ++row) {
            fields.julian_day[row] = static_cast<double>(std::min(begin + static_cast<std::int64_t>(row), last));
        }
        GetParam()->split(fields, Block::rows);
        for (std::size_t row = 0; row < Block::rows; ++row, ++checked) {
            ASSERT_TRUE(same_fields(fields, row)) << fields.julian_day[row];
        }
    }
    EXPECT_GT(checked, last - first);
}

// ---- Day counts

// Both orders of time: year lengths of spans that run backwards are not numbers.
struct Pairs {
    std::vector<double> start;
    std::vector<double> end;

    void add(std::int64_t a, std::int64_t b) {
        start.push_back(static_cast<double>(a));
        end.push_back(static_cast<double>(b));
    }
    // Whole lanes.
    void complete() {
        while (start.size() % 4 != 0) add(date_of(2000, 1, 1).julianDay, date_of(2001, 1, 1).julianDay);
    }
};

Pairs every_two_days(std::int64_t first, std::int64_t last, std::int64_t stride) {
    Pairs pairs;
    for (std::int64_t a = first; a <= last; ++a) {
        for (std::int64_t b = first; b <= last; b += stride) pairs.add(a, b);
    }
    pairs.complete();
    return pairs;
}

Pairs far_days(int count) {
    std::mt19937_64 random{19};
    std::uniform_int_distribution<std::int64_t> day{date_of(3, 1, 1).julianDay, date_of(9999, 12, 31).julianDay};
    Pairs pairs;
    for (int i = 0; i < count; ++i) pairs.add(day(random), day(random));
    pairs.complete();
    return pairs;
}

void check_counts(const LaneDates& lanes, const Pairs& pairs, const CouponTerms& terms) {
    const std::size_t rows = pairs.start.size();
    std::vector<double> days(rows);
    std::vector<double> ratio(rows);
    lanes.count({pairs.start.data(), pairs.end.data(), days.data(), ratio.data()}, rows, terms);
    for (std::size_t row = 0; row < rows; ++row) {
        const CalendarDate start = date_of_julian(static_cast<std::int64_t>(pairs.start[row]));
        const CalendarDate end = date_of_julian(static_cast<std::int64_t>(pairs.end[row]));
        CouponTerms of_call = terms;
        ASSERT_EQ(days[row], days_between(start, end, of_call)) << start << " to " << end << ", basis " << terms.basis;
        const double of_one = ComputeTheAnnualRatio(&start, &end, &of_call);
        ASSERT_TRUE(same_bits(ratio[row], of_one)) << start << " to " << end << ", basis " << terms.basis;
    }
}

// Every way that a year fraction is counted.
std::vector<CouponTerms> all_terms() {
    std::vector<CouponTerms> all;
    for (std::int32_t basis = BASIS_30_360; basis <= BASIS_EU30_360; ++basis) {
        for (unsigned flags = 0; flags < 16; ++flags) {
            CouponTerms terms = year_fraction_terms(basis);
            terms.day31Adjust = (flags & 1) != 0 ? 1 : 0;
            terms.noDay31Adjust = (flags & 2) != 0 ? 1 : 0;
            terms.allLeapYears = (flags & 4) != 0 ? 1 : 0;
            terms.startYearLength = (flags & 8) != 0 ? 1 : 0;
            all.push_back(terms);
        }
    }
    return all;
}

TEST_P(DatesInLanes, CountTheDaysOfCalls) {
    const Pairs near = every_two_days(date_of(1999, 12, 1).julianDay, date_of(2001, 4, 2).julianDay, drawn(20) / 2 + 1);
    const Pairs century = every_two_days(date_of(2099, 12, 25).julianDay, date_of(2100, 3, 5).julianDay, 1);
    const Pairs far = far_days(drawn(20'000));
    EXPECT_GT(far.start.size(), 900U);
    for (const CouponTerms& terms : all_terms()) {
        for (const Pairs* pairs : {&near, &century, &far}) check_counts(*GetParam(), *pairs, terms);
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, DatesInLanes, testing::ValuesIn(sets_of_lanes()), name_of_set);

}  // namespace
}  // namespace finance::test
