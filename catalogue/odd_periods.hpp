// Bonds whose first or last coupon period is longer or shorter than the others.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace odd_period_parameters {

using namespace security_parameters;

inline constexpr Parameter issue_before_settlement = issue.ordered({Relation::at_most, "settlement"});
inline constexpr Parameter first_coupon =
    date("firstCoupon", "day of the first coupon, after the odd period")
        .ordered({Relation::at_least, "settlement"})
        .ordered({Relation::at_most, "maturity"})
        .with(&Parameter::rule, "must be a coupon date: whole periods of 12 / frequency months before maturity");
inline constexpr Parameter last_interest =
    date("lastInterest", "day of the last coupon before maturity, where the odd period starts")
        .ordered({Relation::at_most, "settlement"});

inline constexpr std::array first_from_yield{
    settlement, any_maturity, issue_before_settlement, first_coupon, rate, yield, redemption, frequency, basis};
inline constexpr std::array first_from_price{
    settlement, any_maturity, issue_before_settlement, first_coupon, rate, any_price, redemption, frequency, basis};
inline constexpr std::array last_from_yield{settlement, maturity,   last_interest, rate,
                                            yield,      redemption, frequency,     basis};
inline constexpr std::array last_from_price{settlement, maturity,   last_interest, rate,
                                            any_price,  redemption, frequency,     basis};

}  // namespace odd_period_parameters

inline constexpr Sentence four_dates =
    "The dates must be in the order issue, settlement, firstCoupon, maturity; out of order, issue or firstCoupon is "
    "named. All four dates are read before any are compared; settlement equal to issue or to firstCoupon, or "
    "firstCoupon equal to maturity, then answers 0 before the later arguments are looked at.";
inline constexpr Sentence three_dates =
    "A maturity before settlement is refused and named, so is a lastInterest after settlement. All three dates are "
    "read before any are compared; settlement equal to maturity or to lastInterest then answers 0 before the later "
    "arguments are looked at. ACT/360 and ACT/365 count as ACTUAL.";
inline constexpr Sentence regular_periods =
    "\ncoupon = 100 * rate / frequency; counted in regular periods:\n"
    "last from lastInterest to maturity, accrued from lastInterest to settlement,\n"
    "remaining from settlement to maturity";

inline constexpr std::array odd_periods{
    Calculation{.name = "ODDFPRICE",
                .answers = "Price per 100 of face value of a bond with an odd first period, from its yield",
                .parameters = odd_period_parameters::first_from_yield,
                .result = ResultKind::amount,
                .formula =
                    "coupon * (first * v^e + (sum of v^(e + k) for k = 1 .. N) - accrued) + redemption * v^(e + N)\n"
                    "coupon = 100 * rate / frequency, v = 1 / (1 + yield / frequency)\n"
                    "counted in regular periods: first from issue to firstCoupon, accrued from issue to settlement,\n"
                    "e from settlement to firstCoupon; N: coupons after firstCoupon, up to maturity",
                .remarks = joined<price_is_clean, four_dates>,
                .failure = "yield is -frequency or below",
                .example = {"settlement=2025-01-20 maturity=2030-11-15 issue=2024-12-10 firstCoupon=2025-11-15 "
                            "rate=0.05 yield=0.06 redemption=100 frequency=2",
                            "95.08489578470304"}},
    Calculation{.name = "ODDFYIELD",
                .answers = "Annual yield of a bond with an odd first period, from its price",
                .parameters = odd_period_parameters::first_from_price,
                .result = ResultKind::rate,
                .formula = "the yield at which ODDFPRICE is this price, by search from 0.1",
                .remarks = joined<price_is_clean, four_dates>,
                .failure = no_yield_found,
                .searches = true,
                .example = {"settlement=2025-01-20 maturity=2030-11-15 issue=2024-12-10 firstCoupon=2025-11-15 "
                            "rate=0.05 price=95 redemption=100 frequency=2",
                            "0.060179935118248984"}},
    Calculation{
        .name = "ODDLPRICE",
        .answers = "Price per 100 of face value of a bond with an odd last period, from its yield",
        .parameters = odd_period_parameters::last_from_yield,
        .result = ResultKind::amount,
        .formula = joined<"(last * coupon + redemption) / (1 + yield / frequency * remaining) - coupon * accrued",
                          regular_periods>,
        .remarks = joined<price_is_clean, three_dates>,
        .failure = "yield * remaining is -frequency or below",
        .example = {"settlement=2025-01-20 maturity=2025-08-31 lastInterest=2024-11-15 rate=0.05 yield=0.06 "
                    "redemption=100 frequency=2",
                    "99.37857270453733"}},
    Calculation{
        .name = "ODDLYIELD",
        .answers = "Annual yield of a bond with an odd last period, from its price",
        .parameters = odd_period_parameters::last_from_price,
        .result = ResultKind::rate,
        .formula = joined<"((last * coupon + redemption) / (price + accrued * coupon) - 1) * frequency / remaining",
                          regular_periods>,
        .remarks = joined<price_is_clean, three_dates>,
        .failure =
            "price and accrued interest add up to 0, or settlement and maturity differ but count as 0 days apart",
        .example = {"settlement=2025-01-20 maturity=2025-08-31 lastInterest=2024-11-15 rate=0.05 price=99.25 "
                    "redemption=100 frequency=2",
                    "0.06217773351319308"}},
};

inline constexpr Family odd_period_family{.title = "Bonds with an odd first or last period",
                                          .calculations = odd_periods};

}  // namespace finance::catalogue
