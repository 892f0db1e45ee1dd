// Treasury bills, quoted on a year of 360 days.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace treasury_bill_parameters {

inline constexpr Parameter settlement =
    date("settlement", "day on which the bill is bought and paid", Kind::date_time).bounded(above_0);
inline constexpr Parameter maturity =
    date("maturity", "day on which the bill is paid back", Kind::date_time).bounded(above_0);
inline constexpr Parameter later_maturity = maturity.ordered({Relation::above, "settlement"});
inline constexpr Parameter discount =
    number("discount", "fraction a year of 360 days: 0.05 is 5 %", "annual discount rate of the bill").bounded(above_0);
inline constexpr Parameter price = number("price", "per 100 of face value", "price of the bill").bounded(above_0);

inline constexpr std::array equivalent_yield{settlement, later_maturity, discount};
inline constexpr std::array price_from_discount{settlement, maturity, discount};
inline constexpr std::array yield_from_price{settlement, later_maturity, price};

}  // namespace treasury_bill_parameters

inline constexpr Sentence any_term = " The dates need not be whole days; the term has no upper limit";

inline constexpr std::array treasury_bills{
    Calculation{
        .name = "TBILLEQ",
        .answers = "Bond-equivalent yield of a Treasury bill",
        .parameters = treasury_bill_parameters::equivalent_yield,
        .result = ResultKind::rate,
        .formula = "up to 182 days: 365 * discount / (360 - discount * days)\n"
                   "beyond: (sqrt(t^2 - (2 * t - 1) * q) - t) / (t - 0.5)\n"
                   "t = days / 365, q = discount * days / (discount * days - 360), days = maturity - settlement",
        .remarks = joined<
            "A maturity on or before settlement is refused and named, but only after the discount has been looked at.",
            any_term, ".">,
        .failure = "the term is above 182 days and t^2 - (2 * t - 1) * q is below 0, as it may be where discount * "
                   "days is 360 or more",
        .example = {"settlement=2025-01-20 maturity=2025-07-14 discount=0.05", "0.05195729537366548"}},
    Calculation{.name = "TBILLPRICE",
                .answers = "Price of a Treasury bill per 100 of face value",
                .parameters = treasury_bill_parameters::price_from_discount,
                .result = ResultKind::amount,
                .formula = "(1 - discount * days / 360) * 100\n"
                           "days = maturity - settlement",
                .remarks = joined<"The dates are not compared: a maturity before settlement gives a price above 100.",
                                  any_term, ", and a long one gives a negative price.">,
                .failure = never_fails,
                .example = {"settlement=2025-01-20 maturity=2025-07-14 discount=0.05", "97.56944444444444"}},
    Calculation{
        .name = "TBILLYIELD",
        .answers = "Yield of a Treasury bill, from its price",
        .parameters = treasury_bill_parameters::yield_from_price,
        .result = ResultKind::rate,
        .formula = "(100 - price) / price * 360 / days\n"
                   "days = maturity - settlement",
        .remarks = joined<"A maturity on or before settlement is refused and named, before the price is looked at.",
                          any_term, ".">,
        .failure = never_fails,
        .example = {"settlement=2025-01-20 maturity=2025-07-14 price=97.5", "0.05274725274725274"}},
};

inline constexpr Family treasury_bill_family{.title = "Treasury bills", .calculations = treasury_bills};

}  // namespace finance::catalogue
