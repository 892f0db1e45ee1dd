// QuantLib, for the large calls and the usual YEARFRAC. Conventions are those of the calls: 30/360 for the bond, actual
// days over 365 for dated flows, twelfths of a year for monthly ones. Searches have its own accuracy and first guess.
#include <ql/cashflows/cashflows.hpp>
#include <ql/cashflows/simplecashflow.hpp>
#include <ql/instruments/bonds/fixedratebond.hpp>
#include <ql/math/solvers1d/brent.hpp>
#include <ql/pricingengines/bond/bondfunctions.hpp>
#include <ql/settings.hpp>
#include <ql/time/calendars/nullcalendar.hpp>
#include <ql/time/daycounters/actual365fixed.hpp>
#include <ql/time/daycounters/actualactual.hpp>
#include <ql/time/daycounters/thirty360.hpp>
#include <ql/time/schedule.hpp>
#include <ql/version.hpp>

#include "benchmarks/calls/call_cases.hpp"
#include "benchmarks/calls/peers.hpp"

namespace finance::benchmarks {

namespace {

namespace ql = QuantLib;

// ---- Bond

ql::FixedRateBond bond_of(double rate) {
    const ql::Date first(15, ql::February, 2025);
    const ql::Date maturity(15, ql::February, 2055);
    const ql::Schedule schedule(first, maturity, ql::Period(ql::Semiannual), ql::NullCalendar(), ql::Unadjusted,
                                ql::Unadjusted, ql::DateGeneration::Backward, false);
    return {0, 100.0, schedule, {rate}, ql::Thirty360(ql::Thirty360::USA)};
}

ql::Date settled() { return {20, ql::February, 2025}; }

double price(double near_1) {
    const ql::FixedRateBond bond = bond_of(0.05 * near_1);
    return ql::BondFunctions::cleanPrice(bond, 0.053, ql::Thirty360(ql::Thirty360::USA), ql::Compounded, ql::Semiannual,
                                         settled());
}

double yield(double near_1) {
    const ql::FixedRateBond bond = bond_of(0.05 * near_1);
    return ql::BondFunctions::yield(bond, 95.5, ql::Thirty360(ql::Thirty360::USA), ql::Compounded, ql::Semiannual,
                                    settled());
}

// With the solver that needs the fewest evaluations there.
double yield_by_brent(double near_1) {
    const ql::FixedRateBond bond = bond_of(0.05 * near_1);
    return ql::BondFunctions::yield(ql::Brent(), bond, 95.5, ql::Thirty360(ql::Thirty360::USA), ql::Compounded,
                                    ql::Semiannual, settled());
}

double duration(double near_1) {
    const ql::FixedRateBond bond = bond_of(0.05 * near_1);
    return ql::BondFunctions::duration(bond, 0.053, ql::Thirty360(ql::Thirty360::USA), ql::Compounded, ql::Semiannual,
                                       ql::Duration::Macaulay, settled());
}

// ---- Flows

// 1960-01-01 is day 21,916 of the library.
ql::Date date_of(double host_day) { return ql::Date(static_cast<ql::Date::serial_type>(host_day) + 21916); }

ql::Leg dated_leg() {
    ql::Leg leg;
    for (int i = 1; i < dated_flows; ++i) {
        leg.push_back(ql::ext::make_shared<ql::SimpleCashFlow>(flow_amount(i), date_of(dated_flow_day(i))));
    }
    return leg;
}

double dated_rate(double near_1) {
    const ql::Leg leg = dated_leg();
    const ql::Date first = date_of(dated_flow_day(0));
    return ql::CashFlows::yield(leg, -flow_amount(0) * near_1, ql::Actual365Fixed(), ql::Compounded, ql::Annual, false,
                                first, first);
}

double dated_worth(double near_1) {
    const ql::Leg leg = dated_leg();
    const ql::Date first = date_of(dated_flow_day(0));
    return flow_amount(0) + ql::CashFlows::npv(leg, 0.05 * near_1, ql::Actual365Fixed(), ql::Compounded, ql::Annual,
                                               false, first, first);
}

double monthly_rate(double near_1) {
    ql::Leg leg;
    const ql::Date first(15, ql::January, 2025);
    for (int i = 1; i < monthly_flows; ++i) {
        leg.push_back(
            ql::ext::make_shared<ql::SimpleCashFlow>(monthly_flow_amount(i), first + ql::Period(i, ql::Months)));
    }
    return ql::CashFlows::yield(leg, -monthly_flow_amount(0) * near_1, ql::Thirty360(ql::Thirty360::USA),
                                ql::Compounded, ql::Monthly, false, first, first);
}

// ---- Years

double years(double near_1) {
    const auto day = static_cast<ql::Day>(31.0 * near_1);
    return ql::ActualActual(ql::ActualActual::ISDA)
        .yearFraction(ql::Date(15, ql::January, 2024), ql::Date(day, ql::July, 2024));
}

double years_of_360(double near_1) {
    const auto day = static_cast<ql::Day>(30.0 * near_1);
    return ql::Thirty360(ql::Thirty360::USA)
        .yearFraction(ql::Date(15, ql::January, 2024), ql::Date(day, ql::July, 2024));
}

}  // namespace

std::vector<Peer> peers() {
    ql::Settings::instance().evaluationDate() = settled();
    constexpr double ten_times = 10.0;
    constexpr double not_slower = 1.0;
    return {
        {"price of the bond", "PRICE, 60 coupons", price, ten_times},
        {"yield of the bond", "YIELD, 60 coupons", yield, ten_times},
        {"yield of the bond, by Brent's method", "YIELD, 60 coupons", yield_by_brent, ten_times},
        {"duration of the bond", "DURATION, 60 coupons", duration, not_slower},
        {"internal rate of 250 dated flows", "XIRR, 250 flows", dated_rate, not_slower},
        {"worth of 250 dated flows", "XNPV, 250 flows", dated_worth, not_slower},
        {"internal rate of 360 monthly flows", "IRR, 360 flows", monthly_rate, not_slower, 1.0 / 12.0},
        {"year fraction, actual days", "YEARFRAC", years, not_slower},
        {"year fraction, 30/360", "YEARFRAC, 30/360", years_of_360, not_slower},
    };
}

std::string peer_library() { return "QuantLib " QL_VERSION; }

}  // namespace finance::benchmarks
