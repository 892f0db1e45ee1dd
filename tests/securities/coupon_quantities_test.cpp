// Coupons left, days accrued and days of the period, counted by months where the schedule allows, against the schedule
// walked date by date.
#include <gtest/gtest.h>

#include "securities/kernels.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/calendar/literal_schedule.hpp"

namespace finance::test {
namespace {

struct Case {
    std::int32_t frequency;
    std::int32_t basis;
};

class CouponQuantities : public testing::TestWithParam<Case> {};

CouponTerms terms_of(const Case& one) {
    CouponTerms terms{};
    terms.frequency = one.frequency;
    terms.basis = one.basis;
    terms.stepUnit = STEP_MONTHS;
    zComputePeriod(&terms);
    zComputeDaysInPeriod(&terms);
    return terms;
}

// Every day of three years, a leap year among them, to maturities on all days of two months.
TEST_P(CouponQuantities, AsTheScheduleHasThem) {
    int compared = 0;
    int on_coupon_dates = 0;
    for (std::int64_t maturity_day = date_of(2029, 8, 1).julianDay; maturity_day < date_of(2029, 10, 1).julianDay;
         ++maturity_day) {
        for (std::int64_t day = date_of(2023, 1, 1).julianDay; day < date_of(2026, 1, 1).julianDay; ++day) {
            Security bond;
            bond.settlement.julianDay = day;
            bond.maturity.julianDay = maturity_day;
            bond.terms = terms_of(GetParam());
            const bool on_coupon = find_coupon_quantities(&bond.record);

            CouponTerms terms = terms_of(GetParam());
            CouponInfo info{};
            info.settlement = &bond.settlement;
            info.maturity = &bond.maturity;
            info.terms = &terms;
            info.requests = REQUEST_DAYS_SINCE_PREVIOUS | REQUEST_DAYS_TO_NEXT | REQUEST_DAYS_IN_PERIOD;
            literal::find_coupons(&info);
            ASSERT_EQ(on_coupon, info.coincidentCoupon != nullptr) << day << " to " << maturity_day;
            ASSERT_EQ(bond.record.daysInPeriod, info.daysInPeriod) << day << " to " << maturity_day;
            ASSERT_EQ(bond.record.couponCount,
                      static_cast<double>(literal::count_coupons(bond.settlement, bond.maturity, terms)))
                << day << " to " << maturity_day;
            ++compared;
            if (on_coupon) {
                ++on_coupon_dates;
            } else {
                ASSERT_EQ(bond.record.daysAccrued, info.daysSincePrevious) << day << " to " << maturity_day;
            }
        }
    }
    EXPECT_EQ(compared, 61 * 1096);
    EXPECT_EQ(on_coupon_dates, 3 * 61 * terms_of(GetParam()).frequency);
}

INSTANTIATE_TEST_SUITE_P(Terms, CouponQuantities,
                         testing::Values(Case{1, BASIS_ACTUAL}, Case{2, BASIS_30_360}, Case{2, BASIS_ACTUAL},
                                         Case{4, BASIS_EU30_360}, Case{6, BASIS_ACT_365}, Case{12, BASIS_ACT_360}),
                         [](const testing::TestParamInfo<Case>& of) {
                             return "frequency" + std::to_string(of.param.frequency) + "basis" +
                                    std::to_string(of.param.basis);
                         });

}  // namespace
}  // namespace finance::test
