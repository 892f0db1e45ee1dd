// Arguments and sentences that calculations about securities share.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace security_parameters {

inline constexpr std::string_view annual_fraction = "fraction a year: 0.05 is 5 %";
inline constexpr std::string_view per_100 = "per 100 of face value";

// ---- Dates

inline constexpr Parameter settlement = date("settlement", "day on which the security is bought and paid");
inline constexpr Parameter any_maturity = date("maturity", "day on which the security is paid back");
inline constexpr Parameter maturity = any_maturity.ordered({Relation::at_least, "settlement"});
inline constexpr Parameter later_maturity = any_maturity.ordered({Relation::above, "settlement"});
inline constexpr Parameter issue = date("issue", "day from which interest accrues");
inline constexpr Parameter settlement_after_issue =
    date("settlement", "day up to which interest accrues").ordered({Relation::at_least, "issue"});

// ---- Rates and amounts

inline constexpr Parameter rate =
    number("rate", annual_fraction, "annual interest (coupon) rate of the security").bounded(above_0);
inline constexpr Parameter yield =
    number("yield", annual_fraction, "annual yield asked of the security; it may be 0 or negative");
inline constexpr Parameter price = number("price", per_100, "price of the security").bounded(above_0);
inline constexpr Parameter any_price = number("price", per_100, "price of the security, without accrued interest");
inline constexpr Parameter redemption = number("redemption", per_100, "amount paid back at maturity").bounded(above_0);
inline constexpr Parameter discount =
    number("discount", annual_fraction, "annual discount rate, taken on the amount at maturity").bounded(above_0);
inline constexpr Parameter investment = money("investment", "amount paid at settlement").bounded(above_0);
inline constexpr Parameter par = money("par", "face value that bears the interest").bounded(above_0);

// ---- Schedule and day count

inline constexpr Parameter frequency =
    whole("frequency", "coupons a year",
          "how often interest is paid: 1, 2, 4, 6 or 12; any other is accepted, but has no meaningful coupon dates")
        .bounded(at_least_1);
inline constexpr Parameter basis =
    Parameter{.name = "basis",
              .kind = Kind::basis,
              .meaning =
                  "how days and years are counted; left out it is 30/360, but given as a missing value (.) it is "
                  "ACTUAL"}
        .optional("30/360");

}  // namespace security_parameters

// ---- Sentences

inline constexpr Sentence price_is_clean = "The price is without accrued interest. ";
inline constexpr Sentence equal_dates_are_0 = "Equal dates answer 0 before the later arguments are looked at; ";
inline constexpr Sentence but_redemption_is_0 =
    "Equal dates answer 0, not the redemption, before the later arguments are looked at; ";
inline constexpr Sentence maturity_is_named = "a maturity before settlement is refused and named.";
inline constexpr Sentence yield_too_low = "yield is -frequency or below, or yield / frequency is about 9e15 or more";
inline constexpr Sentence no_yield_found =
    "the search finds no yield: it does not settle within 100 steps, or runs to a yield of -frequency or below";
inline constexpr Sentence t_from_settlement =
    "\nt: part of a year from settlement to maturity, as the basis counts it (see YEARFRAC)";
inline constexpr Sentence t_of_two_dates =
    "\nt: part of a year between two dates, as the basis counts it (see YEARFRAC)";
inline constexpr Sentence t_below_0 = "the dates lie so far off the calendar that t comes out below 0";

}  // namespace finance::catalogue
