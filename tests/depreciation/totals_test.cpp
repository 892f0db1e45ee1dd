// What the amounts of all periods add up to.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "tests/calendar/dates.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

struct Asset {
    double cost;
    double salvage;
    int life;
    [[nodiscard]] double depreciable() const { return cost - salvage; }
    [[nodiscard]] bool near(double a, double b) const { return std::abs(a - b) <= 1e-11 * cost; }
};

Asset any_asset() {
    const double cost = *rc::gen::inRange(1, 10000000) / 7.0;
    return {cost, cost * *rc::gen::inRange(0, 1000) / 1000.0, *rc::gen::inRange(1, 60)};
}

double any_factor() { return *rc::gen::inRange(1, 400) / 100.0; }

RC_GTEST_PROP(DepreciationTotals, EqualAmounts, ()) {
    const Asset a = any_asset();
    RC_ASSERT(a.near(value_of("SLN", {a.cost, a.salvage, a.life}) * a.life, a.depreciable()));
}

RC_GTEST_PROP(DepreciationTotals, SumOfYearsDigits, ()) {
    const Asset a = any_asset();
    double total = 0.0;
    for (int period = 1; period <= a.life; ++period) total += value_of("SYD", {a.cost, a.salvage, a.life, period});
    RC_ASSERT(a.near(total, a.depreciable()));
    RC_ASSERT(value_of("SYD", {a.cost, a.salvage, a.life, a.life + 1}) == 0.0);
}

// Each full year leaves 1 - rate, the first 1 - rate m / 12, the last 1 - rate (12 - m) / 12.
RC_GTEST_PROP(DepreciationTotals, FixedDecliningBalance, ()) {
    const Asset a = any_asset();
    const int m = *rc::gen::inRange(1, 13);
    const double exact_rate = 1.0 - std::pow(a.salvage / a.cost, 1.0 / a.life);
    RC_PRE(std::abs(std::remainder(exact_rate * 1000.0 - 0.5, 1.0)) > 1e-9);
    const double rate = std::round(exact_rate * 1000.0) / 1000.0;
    double total = 0.0;
    for (int period = 1; period <= a.life + 1; ++period) {
        total += value_of("DB", {a.cost, a.salvage, a.life, period, m});
    }
    const double left = (1.0 - rate * m / 12.0) * std::pow(1.0 - rate, a.life - 1) * (1.0 - rate * (12 - m) / 12.0);
    RC_ASSERT(a.near(total, a.cost * (1.0 - left)));
}

// cost (1 - q)^n is left, but no less than salvage.
RC_GTEST_PROP(DepreciationTotals, DoubleDecliningBalance, ()) {
    const Asset a = any_asset();
    const double factor = any_factor();
    const double q = std::min(factor / a.life, 1.0);
    double total = 0.0;
    for (int period = 1; period <= a.life; ++period) {
        total += value_of("DDB", {a.cost, a.salvage, a.life, period, factor});
        RC_ASSERT(a.near(total, a.cost - std::max(a.salvage, a.cost * std::pow(1.0 - q, period))));
    }
}

RC_GTEST_PROP(DepreciationTotals, AdjoiningSpansAddUp, ()) {
    const Asset a = any_asset();
    const double factor = any_factor();
    const int flag = *rc::gen::inRange(0, 2);
    const double life = a.life + *rc::gen::inRange(0, 4) / 4.0;
    const int middle = *rc::gen::inRange(1, a.life + 1);
    const int last = *rc::gen::inRange(middle, a.life + 1);
    const auto span = [&](int s, int e) { return value_of("VDB", {a.cost, a.salvage, life, s, e, factor, flag}); };
    RC_PRE(life != last);
    RC_ASSERT(a.near(span(0, middle) + span(middle, last), span(0, last)));
}

// Single periods, so that the short cut for the whole life plays no part.
RC_GTEST_PROP(DepreciationTotals, SwitchDepreciatesAll, ()) {
    const Asset a = any_asset();
    const double factor = any_factor();
    RC_PRE(a.life > 1);
    double total = 0.0;
    for (int s = 0; s < a.life; ++s) total += value_of("VDB", {a.cost, a.salvage, a.life, s, s + 1, factor, 0});
    RC_ASSERT(a.near(total, a.depreciable()));
    RC_ASSERT(value_of("VDB", {a.cost, a.salvage, a.life, 0, a.life, factor, 0}) == a.depreciable());
}

// Without a switch a span from 0 is what the double declining balance has taken.
RC_GTEST_PROP(DepreciationTotals, SpansWithoutASwitchAreDecliningBalances, ()) {
    const Asset a = any_asset();
    const double factor = any_factor();
    const double life = a.life + 0.5;
    double total = 0.0;
    for (int period = 1; period <= a.life; ++period) {
        total += value_of("DDB", {a.cost, a.salvage, life, period, factor});
        RC_ASSERT(a.near(total, value_of("VDB", {a.cost, a.salvage, life, 0, period, factor})));
    }
}

// ---- Prorated

struct ProratedAsset {
    Asset asset;
    double purchase;
    double end;
    double rate;
    int basis;
    [[nodiscard]] int periods() const { return static_cast<int>(std::ceil(1.0 / rate)) + 2; }
    [[nodiscard]] double amount(const char* name, int period) const {
        return value_of(name, {asset.cost, purchase, end, asset.salvage, period, rate, basis});
    }
};

// The first period is at most a year.
ProratedAsset any_prorated() {
    const double purchase = host_date(1990, 1, 1) + *rc::gen::inRange(0, 15000);
    return {any_asset(), purchase, purchase + *rc::gen::inRange(0, 365), *rc::gen::inRange(5, 990) / 1000.0,
            *rc::gen::element(0, 1, 3, 4)};
}

RC_GTEST_PROP(DepreciationTotals, LinearPeriodsDepreciateAll, ()) {
    const ProratedAsset p = any_prorated();
    const bool shifted = p.purchase == p.end;  // period 0 is then period 1
    double total = 0.0;
    for (int period = 0; period <= p.periods(); ++period) total += p.amount("AMORLINC", period);
    const double first = shifted ? 0.0 : p.amount("AMORLINC", 0);
    RC_ASSERT(p.asset.near(total, std::max(first, p.asset.depreciable())));
}

// What is left in the last but one of n periods is halved, and the last takes the rest; salvage stops it on the way.
RC_GTEST_PROP(DepreciationTotals, DegressivePeriodsEndWithTheRest, ()) {
    ProratedAsset p = any_prorated();
    p.asset.salvage = 0.0;
    const double L = 1.0 / p.rate;
    RC_PRE(L >= 3.0 && std::abs(L - std::round(L)) > 1e-6);
    const int n = static_cast<int>(L);
    double left = p.asset.cost;
    for (int period = 0; period <= n; ++period) {
        const double before = left;
        const double d = p.amount("AMORDEGRC", period);
        left -= d;
        RC_ASSERT(d == std::round(d));
        if (period == n - 1) RC_ASSERT(std::abs(left - before / 2.0) <= 0.5 + 1e-9 * p.asset.cost);
    }
    RC_ASSERT(std::abs(left) <= 0.5);  // the fraction of a unit
    RC_ASSERT(p.amount("AMORDEGRC", n + 1) == 0.0);
}

RC_GTEST_PROP(DepreciationTotals, DegressivePeriodsStopAtSalvage, ()) {
    const ProratedAsset p = any_prorated();
    const double L = 1.0 / p.rate;
    RC_PRE(L >= 3.0);
    double left = p.asset.cost - p.amount("AMORDEGRC", 0);
    RC_ASSERT(left >= p.asset.salvage - 0.5);
    for (int period = 1; period <= p.periods(); ++period) {
        const double d = p.amount("AMORDEGRC", period);
        if (p.asset.salvage > left) RC_ASSERT(d == 0.0);
        left -= d;
    }
}

}  // namespace
}  // namespace finance::test
