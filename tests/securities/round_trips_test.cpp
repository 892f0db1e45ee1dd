// Round trips through the dispatcher: the yield of a price is the yield it was made with.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "tests/securities/bonds.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

double value_of(const char* name, const std::vector<Arg>& arguments) {
    const Outcome got = Call{name, arguments}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

double any_date() { return static_cast<double>(*rc::gen::inRange(host_days(1970, 1, 1), host_days(2040, 1, 1))); }
double any_rate() { return *rc::gen::inRange(1, 2000) / 10000.0; }
double any_yield() { return *rc::gen::inRange(-500, 3000) / 10000.0; }
double any_redemption() { return *rc::gen::inRange(500, 1500) / 10.0; }
int any_frequency() { return *rc::gen::elementOf(std::vector<int>{1, 2, 4, 6, 12}); }
int any_basis() { return *rc::gen::inRange(0, 5); }
double days(int most) { return static_cast<double>(*rc::gen::inRange(1, most)); }

bool near(double a, double b, double tolerance) { return std::abs(a - b) <= tolerance; }

// tolerance: what an ulp of the price makes of the yield, years being the time that it is for
double tolerance(double years) { return 1e-12 * (1.0 + 1.0 / years); }

RC_GTEST_PROP(RoundTrips, YieldOfPrice, ()) {
    const double settlement = any_date();
    const double maturity = settlement + days(11000);
    const double rate = any_rate();
    const double y = any_yield();
    const double R = any_redemption();
    const int f = any_frequency();
    const int basis = any_basis();
    const double price = value_of("PRICE", {settlement, maturity, rate, y, R, f, basis});
    RC_PRE(price > 1.0);
    const double back = value_of("YIELD", {settlement, maturity, rate, price, R, f, basis});
    RC_ASSERT(near(back, y, 30.0 * tolerance((maturity - settlement) / 365.0)));
}

// Any schedule date of the maturity as first coupon: days 1..27, as February cuts later ones.
RC_GTEST_PROP(RoundTrips, OddFirstYieldOfPrice, ()) {
    Draws draw{*rc::gen::arbitrary<std::uint64_t>()};
    Security bond;
    draw_odd_first_bond(draw, bond, any_basis());
    const auto as_date = [](const CalendarDate& d) { return static_cast<double>(d.julianDay - HOST_EPOCH_JULIAN_DAY); };
    const double y = any_yield();
    std::vector<Arg> arguments{as_date(bond.settlement),
                               as_date(bond.maturity),
                               as_date(bond.issue),
                               as_date(bond.first_coupon),
                               any_rate(),
                               y,
                               any_redemption(),
                               bond.terms.frequency,
                               bond.terms.basis};
    const double price = value_of("ODDFPRICE", arguments);
    arguments[5] = price;
    RC_ASSERT(near(value_of("ODDFYIELD", arguments), y, 1e-10));
}

RC_GTEST_PROP(RoundTrips, OddLastYieldOfPrice, ()) {
    const double settlement = any_date();
    const double maturity = settlement + days(1500);
    const double last = settlement - days(1500);
    const double y = any_yield();
    std::vector<Arg> arguments{settlement,       maturity,        last,       any_rate(), y,
                               any_redemption(), any_frequency(), any_basis()};
    const Outcome price = Call{"ODDLPRICE", arguments}.through_dispatcher();
    RC_PRE(price.status == STATUS_SUCCESS && std::isfinite(price.value));
    arguments[4] = price.value;
    const Outcome back = Call{"ODDLYIELD", arguments}.through_dispatcher();
    // settlement on a coupon date less than a period before maturity: ACTUAL divides by an empty period; and 30/360
    // may count no day at all
    RC_PRE(back.status == STATUS_SUCCESS && std::isfinite(back.value));
    RC_ASSERT(near(back.value, y, 30.0 * tolerance((maturity - settlement) / 365.0)));
}

RC_GTEST_PROP(RoundTrips, YieldOfPriceAtMaturity, ()) {
    const double settlement = any_date();
    const double maturity = settlement + 3.0 + days(3000);
    const double issue = settlement - days(3000);
    const double rate = any_rate();
    const double y = any_yield();
    const int basis = any_basis();
    const double price = value_of("PRICEMAT", {settlement, maturity, issue, rate, y, basis});
    RC_PRE(price > 1.0);
    const double back = value_of("YIELDMAT", {settlement, maturity, issue, rate, price, basis});
    RC_ASSERT(near(back, y, 30.0 * tolerance((maturity - settlement) / 365.0)));
}

// The first interest date fixes the schedule and nothing else: any other date of it gives the same.
RC_GTEST_PROP(RoundTrips, AccruedInterestFromAnyDateOfTheSchedule, ()) {
    const int year = *rc::gen::inRange(1980, 2020);
    const auto month = static_cast<unsigned>(*rc::gen::inRange(1, 13));
    const double first = host_date(year, month, 15);
    const double later = host_date(year + 3, month, 15);
    const double issue = first - days(1000);
    const double settlement = issue + days(2000);
    const double rate = any_rate();
    const int f = any_frequency();
    const int basis = any_basis();
    const double a = value_of("ACCRINT", {issue, first, settlement, rate, 1000, f, basis});
    const double b = value_of("ACCRINT", {issue, later, settlement, rate, 1000, f, basis});
    RC_ASSERT(same_value(a, b));
}

}  // namespace
}  // namespace finance::test
