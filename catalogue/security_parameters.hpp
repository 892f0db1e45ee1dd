// Arguments that calculations about securities share.
#pragma once

#include "catalogue/catalogue.hpp"

namespace finance::catalogue::security_parameters {

inline constexpr std::string_view annual_fraction = "fraction a year: 0.05 is 5 %";
inline constexpr std::string_view per_100 = "per 100 of face value";

// ---- Dates

inline constexpr Parameter settlement{
    .name = "settlement", .kind = Kind::date, .meaning = "day on which the security is bought and paid"};
inline constexpr Parameter maturity{.name = "maturity",
                                    .kind = Kind::date,
                                    .meaning = "day on which the security is paid back",
                                    .orders = {{{Relation::at_least, "settlement"}}}};
inline constexpr Parameter later_maturity{.name = "maturity",
                                          .kind = Kind::date,
                                          .meaning = "day on which the security is paid back",
                                          .orders = {{{Relation::above, "settlement"}}}};
inline constexpr Parameter any_maturity{
    .name = "maturity", .kind = Kind::date, .meaning = "day on which the security is paid back"};
inline constexpr Parameter issue{.name = "issue", .kind = Kind::date, .meaning = "day from which interest accrues"};
inline constexpr Parameter settlement_after_issue{.name = "settlement",
                                                  .kind = Kind::date,
                                                  .meaning = "day up to which interest accrues",
                                                  .orders = {{{Relation::at_least, "issue"}}}};

// ---- Rates and amounts

inline constexpr Parameter rate{.name = "rate",
                                .kind = Kind::number,
                                .unit = annual_fraction,
                                .meaning = "annual interest (coupon) rate of the security",
                                .lower = above_0};
inline constexpr Parameter yield{.name = "yield",
                                 .kind = Kind::number,
                                 .unit = annual_fraction,
                                 .meaning = "annual yield asked of the security; it may be 0 or negative"};
inline constexpr Parameter price{
    .name = "price", .kind = Kind::number, .unit = per_100, .meaning = "price of the security", .lower = above_0};
inline constexpr Parameter any_price{.name = "price",
                                     .kind = Kind::number,
                                     .unit = per_100,
                                     .meaning = "price of the security, without accrued interest"};
inline constexpr Parameter redemption{.name = "redemption",
                                      .kind = Kind::number,
                                      .unit = per_100,
                                      .meaning = "amount paid back at maturity",
                                      .lower = above_0};
inline constexpr Parameter discount{.name = "discount",
                                    .kind = Kind::number,
                                    .unit = annual_fraction,
                                    .meaning = "annual discount rate, taken on the amount at maturity",
                                    .lower = above_0};
inline constexpr Parameter investment{.name = "investment",
                                      .kind = Kind::number,
                                      .unit = "money",
                                      .meaning = "amount paid at settlement",
                                      .lower = above_0};
inline constexpr Parameter par{.name = "par",
                               .kind = Kind::number,
                               .unit = "money",
                               .meaning = "face value that bears the interest",
                               .lower = above_0};

// ---- Schedule and day count

inline constexpr Parameter frequency{.name = "frequency",
                                     .kind = Kind::whole,
                                     .unit = "coupons a year",
                                     .meaning =
                                         "how often interest is paid: 1, 2, 4, 6 or 12; any other is accepted, but has "
                                         "no meaningful coupon dates",
                                     .lower = at_least_1};
inline constexpr Parameter basis{.name = "basis",
                                 .kind = Kind::basis,
                                 .meaning =
                                     "how days and years are counted; left out it is 30/360, but given as a missing "
                                     "value (.) it is ACTUAL",
                                 .need = Need::optional,
                                 .default_text = "30/360"};

}  // namespace finance::catalogue::security_parameters
