// ACCRINT and ACCRINTM against 200 bits, with coupon dates listed by the standard library's calendar.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <vector>

#include "securities/kernels.hpp"
#include "tests/securities/bonds.hpp"

namespace finance::test {
namespace {

using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr int draws = 10000;

year_month_day date_from(std::int64_t host_date) {
    return year_month_day{sys_days{std::chrono::days{host_date - host_days(1970, 1, 1)}}};
}

std::int64_t actual(year_month_day s, year_month_day e) { return (sys_days{e} - sys_days{s}).count(); }

bool ends_february(year_month_day d) {
    return d.month() == std::chrono::February && (sys_days{d} + std::chrono::days{1}) == sys_days{d.year() / 3 / 1};
}

template <typename T>
int number(T day_or_month) {
    return static_cast<int>(static_cast<unsigned>(day_or_month));
}

std::int64_t days_360(year_month_day s, year_month_day e, bool european) {
    if (s == e) return 0;
    int d1 = number(s.day());
    int m1 = static_cast<int>(s.year()) * 12 + number(s.month());
    int d2 = number(e.day());
    const int m2 = static_cast<int>(e.year()) * 12 + number(e.month());
    if (!european && d1 == 31 && d2 < 30) {
        d1 = 1;
        ++m1;
    }
    d2 = !european && ends_february(e) ? 30 : std::min(d2, 30);
    return 30 * (m2 - m1) + d2 - std::min(d1, 30);
}

std::int64_t count(year_month_day s, year_month_day e, int basis) {
    if (basis == BASIS_30_360 || basis == BASIS_EU30_360) return days_360(s, e, basis == BASIS_EU30_360);
    return actual(s, e);
}

// Part of a period as a quotient of whole numbers.
Precise part(year_month_day s, year_month_day e, year_month_day begin, year_month_day end, int basis, int frequency) {
    const auto days = Precise{static_cast<double>(count(s, e, basis))};
    if (basis == BASIS_ACTUAL) return days / static_cast<double>(actual(begin, end));
    return days * frequency / (basis == BASIS_ACT_365 ? 365.0 : 360.0);
}

// Coupon periods from issue to settlement: the first in part, the whole ones counted, the last in part. A first period
// that ends on settlement is counted as a part and as a whole.
Precise periods_by_listing(year_month_day issue, year_month_day settlement, year_month_day coupon, int basis, int f) {
    const months step{12 / f};
    while (coupon > issue) coupon -= step;
    while (coupon + step <= issue) coupon += step;
    year_month_day next = coupon + step;
    if (settlement < next) return part(issue, settlement, coupon, next, basis, f);
    Precise total = issue == coupon ? Precise{0.0} : part(issue, next, coupon, next, basis, f);
    double whole = issue == coupon && next < settlement ? 1.0 : 0.0;
    while (next < settlement) {
        coupon = next;
        next = next + step;
        if (next < settlement) whole += 1.0;
    }
    total = total + whole;
    return total + part(coupon, settlement, coupon, next, basis, f);
}

TEST(AccrualPrecision, Accrint) {
    Draws draw{41};
    Worst worst;
    for (int i = 0; worst.count() < draws; ++i) {
        const int f = draw.one_of(frequencies);
        const int basis = draw.one_of(bases);
        const std::int64_t issue = draw.whole(host_days(1980, 1, 1), host_days(2030, 12, 31));
        const std::int64_t settlement = issue + draw.whole(1, 4000);
        const year_month_day some_day = date_from(issue + draw.whole(-1500, 5000));
        const auto day = static_cast<unsigned>(draw.whole(1, 27));
        const year_month_day first = some_day.year() / some_day.month() / std::chrono::day{day};
        Security bond;
        set_date(bond.issue, issue);
        set_date(bond.settlement, settlement);
        set_date(bond.first_coupon, actual(date_from(0), first));
        set_terms(bond, f, basis);
        bond.record.rate = draw.log_between(0.001, 0.3);
        bond.record.par = draw.log_between(1.0, 1e6);
        ASSERT_EQ(zComputeACCRINT(&bond.record), 0);
        const Precise periods = periods_by_listing(date_from(issue), date_from(settlement), first, basis, f);
        const Precise exact = Precise{bond.record.par} * bond.record.rate / f * periods;
        if (exact.rounded() == 0.0) {
            EXPECT_EQ(bond.record.accruedInterest, 0.0) << i;
        } else {
            worst.add(error_in_ulps(bond.record.accruedInterest, exact));
        }
    }
    std::printf("    ACCRINT: %.3g ulp worst of %d draws\n", worst.error(), worst.count());
    EXPECT_LE(worst.error(), 3.5);
}

TEST(AccrualPrecision, Accrintm) {
    Draws draw{42};
    Worst worst;
    while (worst.count() < draws) {
        const std::int64_t issue = draw.whole(host_days(1980, 1, 1), host_days(2030, 12, 31));
        const std::int64_t settlement = issue + draw.whole(1, 4000);
        const int basis = draw.one_of(bases);
        const double rate = draw.log_between(0.001, 0.3);
        Security bond;
        set_date(bond.issue, issue);
        set_date(bond.settlement, settlement);
        bond.terms.frequency = 1;
        bond.terms.stepUnit = STEP_YEARS;
        bond.terms.basis = basis;
        const int failure = zComputeACCRINTM(&bond.record);
        const auto days = static_cast<double>(count(date_from(issue), date_from(settlement), basis));
        ASSERT_EQ(failure, days < 0.0 ? 1 : 0);
        if (days <= 0.0) continue;  // 30/360 has such pairs of days
        ASSERT_EQ(bond.terms.dayCount, days);
        const double par = 1000.0;
        const double got = rate * bond.record.yearFraction * par;
        worst.add(error_in_ulps(got, Precise{days} / bond.terms.periodDays * rate * par));
    }
    std::printf("    ACCRINTM: %.3g ulp worst of %d draws\n", worst.error(), worst.count());
    EXPECT_LE(worst.error(), 2.5);
}

}  // namespace
}  // namespace finance::test
