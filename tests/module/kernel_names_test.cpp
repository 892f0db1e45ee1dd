// Kernels by their names, for those whose calculations reach the formula without them: an answer, and where there is one, a
// failure. Answers are worked out by hand.
#include <gtest/gtest.h>

#include "calendar/kernels.hpp"
#include "cashflow/kernels.hpp"
#include "securities/kernels.hpp"

namespace finance::test {
namespace {

AnnuityRecord loan(double rate, std::int32_t periods) {
    AnnuityRecord a{};
    a.rate = rate;
    a.nper = periods;
    a.per = 2;
    a.pmt = 100.0;
    a.presentValue = 1000.0;
    return a;
}

TEST(KernelNames, LevelPayments) {
    AnnuityRecord a = loan(1.0, 2);  // growth 4
    EXPECT_EQ(zComputeFV(&a), 0);
    EXPECT_NEAR(a.fvResult, -300.0, 1e-12);  // 100 (4 - 1)
    EXPECT_EQ(zComputePV(&a), 0);
    EXPECT_NEAR(a.pvResult, -75.0, 1e-12);  // 100 (1/4 - 1)
    EXPECT_EQ(zComputeIPMT(&a), 0);
    EXPECT_NEAR(a.interestPart, -2000.0 / 3.0, 1e-9);  // of 2000 - 4000/3 left after one payment of 4000/3
    AnnuityRecord large = loan(1.0, 2'000'000);
    EXPECT_EQ(zComputeFV(&large), 1);
    EXPECT_EQ(zComputeIPMT(&large), 1);
    AnnuityRecord negative = loan(-0.9999, 2'000'000);
    EXPECT_EQ(zComputePV(&negative), 1);
}

// From 17532 to 17892 are 360 days, a year by ACT/360.
DiscountRecord year(double first, double second) {
    DiscountRecord record{};
    record.settlement.julianDay = 17532 + HOST_EPOCH_JULIAN_DAY;
    record.maturity.julianDay = 17892 + HOST_EPOCH_JULIAN_DAY;
    record.first = first;
    record.second = second;
    record.terms.basis = BASIS_ACT_360;
    return record;
}

TEST(KernelNames, DiscountSecurities) {
    DiscountRecord interest = year(80.0, 100.0);
    EXPECT_EQ(zComputeINTRATE(&interest), 0);
    EXPECT_EQ(interest.answer, 0.25);
    std::swap(interest.settlement, interest.maturity);
    EXPECT_EQ(zComputeINTRATE(&interest), 1) << "time runs backwards";
    DiscountRecord received = year(75.0, 0.25);
    EXPECT_EQ(zComputeRECEIVED(&received), 0);
    EXPECT_EQ(received.answer, 100.0);
    DiscountRecord nothing_left = year(75.0, 1.0);
    EXPECT_EQ(zComputeRECEIVED(&nothing_left), 1) << "a divisor of 0";
    DiscountRecord price = year(0.25, 100.0);
    EXPECT_EQ(zComputePRICEDISC(&price), 0);
    EXPECT_EQ(price.answer, 75.0);
    DiscountRecord yield = year(80.0, 100.0);
    EXPECT_EQ(zComputeYIELDDISC(&yield), 0);
    EXPECT_EQ(yield.answer, 0.25);
}

// Issued a year before settlement, and a year to maturity.
void set_years(Security& bond) {
    bond.issue.julianDay = 17172 + HOST_EPOCH_JULIAN_DAY;
    bond.settlement.julianDay = 17532 + HOST_EPOCH_JULIAN_DAY;
    bond.maturity.julianDay = 17892 + HOST_EPOCH_JULIAN_DAY;
    set_one_period(bond.terms, Day31::as_30);
    bond.terms.basis = BASIS_ACT_360;
}

TEST(KernelNames, InterestAtMaturity) {
    Security bond;
    set_years(bond);
    bond.record.yield = -1.0;
    EXPECT_EQ(zComputePRICEMAT(&bond.record), 1) << "1 + t y is 0";
    bond.record.rate = 0.0;
    bond.record.maturityPrice = 0.0;
    EXPECT_EQ(zComputeYIELDMAT(&bond.record), 1) << "nothing is paid";
    std::swap(bond.issue, bond.settlement);
    EXPECT_EQ(zComputeACCRINTM(&bond.record), 1) << "time runs backwards";
}

TEST(KernelNames, RateObjective) {
    RateRecord record{};
    record.nper = 10;
    NewtonProblem problem{};
    problem.userData = &record;
    problem.x = -2.0;
    EXPECT_EQ(ComputeF_RATE(&problem), 1U) << "no rate is below -1";
}

}  // namespace
}  // namespace finance::test
