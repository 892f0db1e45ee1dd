// The coupon quantities of lanes against those of single calls, which search step by step, in every set of instructions:
// every settlement of a leap year and of a common one to every maturity of four years, and far ones.
#include <gtest/gtest.h>

#include <random>
#include <tuple>
#include <vector>

#include "calendar/coupon_schedule.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/calendar/lane_dates_of_test.hpp"

namespace finance::test {
namespace {

class CouponsInLanes : public testing::TestWithParam<std::tuple<const LaneDates*, int>> {};

// Rows of one call of the lanes, and its answers.
class Rows {
public:
    void add(std::int64_t settlement, std::int64_t maturity) {
        settlements_.push_back(static_cast<double>(settlement));
        maturities_.push_back(static_cast<double>(maturity));
    }

    // All rows under all bases; how many settle on a coupon date.
    int check(const LaneDates& lanes, std::int32_t frequency) {
        while (settlements_.size() % 4 != 0) add(date_of(2003, 1, 1).julianDay, date_of(2004, 1, 1).julianDay);
        int on_coupon = 0;
        for (std::int32_t basis = BASIS_30_360; basis <= BASIS_EU30_360; ++basis) {
            on_coupon += check_basis(lanes, coupon_terms(frequency, basis));
        }
        return on_coupon;
    }

private:
    int check_basis(const LaneDates& lanes, const CouponTerms& terms) {
        const std::size_t rows = settlements_.size();
        std::vector<double> found(4 * rows);
        double* count = found.data();
        double* in_period = count + rows;
        double* accrued = in_period + rows;
        double* on_coupon = accrued + rows;
        lanes.quantities({settlements_.data(), maturities_.data(), count, in_period, accrued, on_coupon}, rows, terms);
        int coincided = 0;
        for (std::size_t row = 0; row < rows; ++row) {
            const CalendarDate settlement = date_of_julian(static_cast<std::int64_t>(settlements_[row]));
            const CalendarDate maturity = date_of_julian(static_cast<std::int64_t>(maturities_[row]));
            CouponTerms of_call = terms;
            CouponInfo info{};
            const double of_search =
                coupons_around(&info, settlement, maturity, &of_call,
                               REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_IN_PERIOD | REQUEST_COUNT);
            const bool coincides = info.coincidentCoupon != nullptr;
            const bool same = count[row] == of_search && in_period[row] == info.daysInPeriod &&
                              accrued[row] == info.daysSincePrevious && on_coupon[row] == (coincides ? 1.0 : 0.0);
            EXPECT_TRUE(same) << settlement << " to " << maturity << ", frequency " << terms.frequency << ", basis "
                              << terms.basis << ": " << count[row] << ' ' << of_search << ' ' << accrued[row] << ' '
                              << info.daysSincePrevious << ' ' << in_period[row] << ' ' << info.daysInPeriod;
            if (!same) return coincided;
            coincided += coincides ? 1 : 0;
        }
        return coincided;
    }

    std::vector<double> settlements_;
    std::vector<double> maturities_;
};

// Every settlement of the year; a part of the maturities.
void check_year(const LaneDates& lanes, std::int32_t frequency, int year, std::int64_t stride) {
    const std::int64_t first_maturity = date_of(year, 1, 1).julianDay;
    const std::int64_t last_maturity = date_of(year + 4, 12, 31).julianDay;
    const std::int64_t last_settlement = date_of(year, 12, 31).julianDay;
    int on_coupon = 0;
    for (std::int64_t maturity = first_maturity; maturity <= last_maturity; maturity += stride) {
        Rows rows;
        for (std::int64_t day = first_maturity; day <= std::min(last_settlement, maturity); ++day) {
            rows.add(day, maturity);
        }
        on_coupon += rows.check(lanes, frequency);
        ASSERT_FALSE(testing::Test::HasFailure());
    }
    EXPECT_GT(on_coupon, 100);
}

TEST_P(CouponsInLanes, AreThoseOfCalls) {
    const auto [lanes, frequency] = GetParam();
    const std::int64_t stride = drawn(40) == 40 ? 1 : 11;
    check_year(*lanes, frequency, 2004, stride);
    check_year(*lanes, frequency, 2003, 3 * stride);
    check_year(*lanes, frequency, 1898, 7 * stride);
}

// Maturities at the ends of February, from settlements of many years at the ends of months.
TEST_P(CouponsInLanes, EndsOfFebruary) {
    const auto [lanes, frequency] = GetParam();
    Rows rows;
    for (const CalendarDate& maturity : {date_of(2104, 2, 29), date_of(2104, 2, 28), date_of(2103, 2, 28),
                                         date_of(2100, 2, 28), date_of(2100, 3, 1)}) {
        for (int year = 2000; year < 2100; ++year) {
            for (const unsigned month : {1U, 2U, 3U, 8U}) {
                const std::int64_t begin = date_of(year, month, 25).julianDay;
                for (std::int64_t day = begin; day < begin + 10; ++day) rows.add(day, maturity.julianDay);
            }
        }
    }
    EXPECT_GT(rows.check(*lanes, frequency), 1000);
}

TEST_P(CouponsInLanes, FarDates) {
    const auto [lanes, frequency] = GetParam();
    std::mt19937_64 random{7};
    std::uniform_int_distribution<std::int64_t> day{date_of(3, 1, 1).julianDay, date_of(9999, 12, 31).julianDay};
    Rows rows;
    for (int i = 0; i < drawn(20'000); ++i) {
        const std::int64_t a = day(random);
        const std::int64_t b = day(random);
        rows.add(std::min(a, b), std::max(a, b));
    }
    // the first days of all, whose coupons reach furthest back
    for (std::int64_t i = 0; i < 800; ++i) rows.add(date_of(3, 1, 1).julianDay + i, date_of(5, 3, 31).julianDay);
    EXPECT_GT(rows.check(*lanes, frequency), 10);
}

INSTANTIATE_TEST_SUITE_P(Sets, CouponsInLanes,
                         testing::Combine(testing::ValuesIn(sets_of_lanes()), testing::Values(1, 2, 4, 6, 12)),
                         [](const auto& of) {
                             return std::string{std::get<0>(of.param)->name} + "_" +
                                    std::to_string(std::get<1>(of.param));
                         });

}  // namespace
}  // namespace finance::test
