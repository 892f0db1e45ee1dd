// Closed forms of coupon securities against 200 bits. The worst errors measured stand beside the kernels.
#include <gtest/gtest.h>

#include <cstdio>

#include "securities/kernels.hpp"
#include "tests/securities/bonds.hpp"

namespace finance::test {
namespace {

constexpr int draws = 10000;

void expect_worst(const Worst& worst, double bound, const char* what) {
    std::printf("    %s: %.3g ulp worst of %d draws\n", what, worst.error(), worst.count());
    EXPECT_GE(worst.count(), draws) << what;
    EXPECT_LE(worst.error(), bound) << what;
}

TEST(SecurityPrecision, Price) {
    Draws draw{31};
    Worst one;
    Worst many;
    while (many.count() < draws || one.count() < draws) {
        Security bond;
        draw_regular_bond(draw, bond);
        ASSERT_EQ(zComputePRICE(&bond.record), 0);
        const PreciseAmount exact = regular_price(bond.record, bond.record.yield);
        Worst& worst = bond.record.couponCount == 1.0 ? one : many;
        worst.add(error_in_ulps(bond.record.price, exact.value, exact.size));
    }
    expect_worst(one, 3.0, "PRICE, one coupon left");
    expect_worst(many, 400.0, "PRICE");
}

TEST(SecurityPrecision, YieldOfTheLastPeriod) {
    Draws draw{32};
    Worst worst;
    while (worst.count() < draws) {
        Security bond;
        draw_regular_bond(draw, bond);
        bond.record.price = draw.between(20.0, 300.0);
        const std::int64_t settlement = bond.settlement.julianDay;
        bond.maturity.julianDay = settlement + draw.whole(1, 31);
        const int failure = zComputeYIELD(&bond.record);
        if (bond.record.couponCount != 1.0) continue;
        ASSERT_EQ(failure, 0);
        const double f = bond.terms.frequency;
        const Precise E = bond.record.daysInPeriod;
        const Precise accrued = Precise{bond.record.daysAccrued} / E * bond.record.rate / f;
        const Precise paid = accrued + Precise{bond.record.price} / 100.0;
        const Precise back = Precise{bond.record.redemption} / 100.0 + Precise{bond.record.rate} / f;
        const Precise periods = E / bond.record.daysToNextCoupon;
        const Precise exact = (back / paid - 1.0) * f * periods;
        // the ratio less 1 cancels: the ratio's size counts
        const Precise size = (back / paid + 1.0) * f * periods;
        worst.add(error_in_ulps(bond.record.yield, exact, size.rounded()));
    }
    expect_worst(worst, 3.0, "YIELD, one coupon left");
}

TEST(SecurityPrecision, Duration) {
    Draws draw{33};
    Worst worst;
    while (worst.count() < draws) {
        Security bond;
        draw_regular_bond(draw, bond);
        ASSERT_EQ(zComputeDURATION(&bond.record), 0);
        const SecurityComputeRecord& record = bond.record;
        if (!(record.daysToNextCoupon > 0.0)) continue;  // days beyond the period: times of both signs
        const double f = bond.terms.frequency;
        const Precise v = Precise{1.0} / (Precise{record.yield} / f + 1.0);
        const Precise c = Precise{100.0} * record.rate / f;
        const int N = static_cast<int>(record.couponCount);
        Precise time = Precise{record.daysToNextCoupon} / record.daysInPeriod / f;
        Precise weight = c;
        Precise worth;
        Precise weighted;
        for (int k = 0; k < N; ++k) {
            worth = worth + weight;
            weighted = weighted + weight * time;
            if (k + 1 == N) break;
            weight = weight * v;
            time = time + Precise{1.0} / f;
        }
        const Precise redeemed = weight / c * 100.0;
        worst.add(error_in_ulps(record.duration, (weighted + redeemed * time) / (worth + redeemed)));
    }
    expect_worst(worst, 150.0, "DURATION");
}

TEST(SecurityPrecision, OddFirstPrice) {
    Draws draw{34};
    Worst worst;
    for (int i = 0; i < draws; ++i) {
        Security bond;
        draw_odd_first_bond(draw, bond, draw.one_of(bases));
        ASSERT_EQ(zComputeODDFPRICE(&bond.record), 0);
        const PreciseAmount exact = odd_first_price(bond.record, bond.record.yield);
        worst.add(error_in_ulps(bond.record.oddFirstPrice, exact.value, exact.size));
    }
    expect_worst(worst, 400.0, "ODDFPRICE");
}

// Last interest date up to five years before settlement, maturity up to five after it.
void draw_odd_last_bond(Draws& draw, Security& bond) {
    const std::int64_t settlement = draw.whole(host_days(1980, 1, 1), host_days(2030, 12, 31));
    set_date(bond.settlement, settlement);
    set_date(bond.last_interest, settlement - draw.whole(1, 1800));
    set_date(bond.maturity, settlement + draw.whole(1, 1800));
    const int frequency = draw.one_of(frequencies);
    set_terms(bond, frequency, draw.one_of(bases));
    bond.record.rate = draw.log_between(0.001, 0.3);
    bond.record.yield = draw.between(-0.1, 0.5);
    bond.record.redemption = draw.between(50.0, 150.0);
    bond.record.oddLastPrice = draw.between(50.0, 150.0);
}

// Settlement on a coupon date and no whole period to maturity: divided by an empty period.
bool divided_by_nothing(const SecurityComputeRecord& record) { return std::isinf(record.remainingPeriods); }

TEST(SecurityPrecision, OddLastPriceAndYield) {
    Draws draw{35};
    Worst price;
    Worst yield;
    while (price.count() < draws) {
        Security bond;
        draw_odd_last_bond(draw, bond);
        SecurityComputeRecord& record = bond.record;
        const double y = record.yield;
        const double P = record.oddLastPrice;
        ASSERT_EQ(zComputeODDLPRICE(&record), 0);
        if (divided_by_nothing(record) || std::isinf(record.lastPeriodLength)) continue;
        const double f = bond.terms.frequency;
        const Precise c = Precise{100.0} * record.rate / f;
        const Precise back = c * record.lastPeriodLength + record.redemption;
        const Precise worth = back / (Precise{y} / f * record.remainingPeriods + 1.0);
        const Precise accrued = c * record.accruedPeriods;
        price.add(error_in_ulps(record.oddLastPrice, worth - accrued, (worth + accrued).rounded()));
        record.oddLastPrice = P;
        ASSERT_EQ(zComputeODDLYIELD(&record), 0);
        const Precise ratio = back / (accrued + P);
        const Precise scale = Precise{f} / record.remainingPeriods;
        yield.add(error_in_ulps(record.yield, scale * (ratio - 1.0), (scale * (ratio + 1.0)).rounded()));
    }
    expect_worst(price, 3.0, "ODDLPRICE");
    expect_worst(yield, 3.0, "ODDLYIELD");
}

// A year fraction as the quotient of whole numbers that the calculation left in the terms.
Precise year_fraction(const CalendarDate& start, const CalendarDate& end, CouponTerms terms) {
    ComputeTheAnnualRatio(&start, &end, &terms);
    return Precise{terms.dayCount} / terms.periodDays;
}

TEST(SecurityPrecision, InterestAtMaturity) {
    Draws draw{36};
    Worst price;
    Worst yield;
    while (yield.count() < draws) {
        Security bond;
        draw_odd_last_bond(draw, bond);
        SecurityComputeRecord& record = bond.record;
        bond.issue = bond.last_interest;
        set_one_period(bond.terms, Day31::as_30);
        bond.terms.basis = draw.one_of(bases);
        const double y = record.yield;
        record.maturityPrice = record.oddLastPrice;
        const double P = record.maturityPrice;
        ASSERT_EQ(zComputePRICEMAT(&record), 0);
        const Precise Bim = year_fraction(bond.issue, bond.maturity, bond.terms);
        const Precise Bsm = year_fraction(bond.settlement, bond.maturity, bond.terms);
        const Precise Bis = year_fraction(bond.issue, bond.settlement, bond.terms);
        const double days = (Bsm * 360.0).rounded();
        const Precise back = Bim * record.rate * 100.0 + 100.0;
        const Precise accrued = Bis * record.rate * 100.0;
        const Precise worth = back / (Bsm * y + 1.0);
        price.add(error_in_ulps(record.maturityPrice, worth - accrued, (worth + accrued).rounded()));
        if (days < 0.5) continue;  // no day between the two by 30/360: the yield is infinite
        record.maturityPrice = P;
        ASSERT_EQ(zComputeYIELDMAT(&record), 0);
        const Precise ratio = back / (accrued + P);
        yield.add(error_in_ulps(record.yield, (ratio - 1.0) / Bsm, ((ratio + 1.0) / Bsm).rounded()));
    }
    expect_worst(price, 3.0, "PRICEMAT");
    expect_worst(yield, 3.0, "YIELDMAT");
}

}  // namespace
}  // namespace finance::test
