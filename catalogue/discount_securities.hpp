// Securities that pay no coupon between settlement and maturity.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace discount_parameters {

using namespace security_parameters;

inline constexpr Parameter amount_back = redemption.with(&Parameter::unit, "money");

inline constexpr std::array price_and_redemption{settlement, maturity, price, redemption, basis};
inline constexpr std::array investment_and_redemption{settlement, maturity, investment, amount_back, basis};
inline constexpr std::array discount_and_redemption{settlement, maturity, discount, redemption, basis};
inline constexpr std::array investment_and_discount{settlement, maturity, investment, discount, basis};

}  // namespace discount_parameters

inline constexpr Sentence days_of_no_length =
    " Dates that differ, but count as 0 days apart (under 30/360 from the 31st to the 1st, under EU30/360 from the "
    "30th to the 31st), give an infinite ";

inline constexpr std::array discount_securities{
    Calculation{.name = "DISC",
                .answers = "Discount rate of a discount security, from its price",
                .parameters = discount_parameters::price_and_redemption,
                .result = ResultKind::rate,
                .formula = joined<"(redemption - price) / redemption / t", t_from_settlement>,
                .remarks = joined<equal_dates_are_0, maturity_is_named,
                                  " A price above redemption gives a negative rate. Unlike YEARFRAC, a maturity on the "
                                  "31st counts as the 30th under 30/360.">,
                .failure = "settlement and maturity differ, but count as 0 days apart: under 30/360 from the 30th to "
                           "the 31st and from the 31st to the 1st, under EU30/360 from the 30th to the 31st",
                .example = {"settlement=2025-01-20 maturity=2025-07-14 price=97.5 redemption=100 basis=ACT/360",
                            "0.051428571428571435"}},
    Calculation{
        .name = "INTRATE",
        .answers = "Interest rate of a fully invested security, from what is paid and what is paid back",
        .parameters = discount_parameters::investment_and_redemption,
        .result = ResultKind::rate,
        .formula = joined<"(redemption - investment) / investment / t", t_from_settlement>,
        .remarks = joined<equal_dates_are_0, maturity_is_named,
                          " A redemption below the investment gives a negative rate.", days_of_no_length, "rate.">,
        .failure = t_below_0,
        .example = {"settlement=2025-01-20 maturity=2025-07-14 investment=1000000 redemption=1020000 basis=ACT/360",
                    "0.04114285714285715"}},
    Calculation{
        .name = "PRICEDISC",
        .answers = "Price of a discount security per 100 of face value, from its discount rate",
        .parameters = discount_parameters::discount_and_redemption,
        .result = ResultKind::amount,
        .formula = joined<"(1 - discount * t) * redemption", t_from_settlement>,
        .remarks = joined<but_redemption_is_0, maturity_is_named, " A discount above 1 / t gives a negative price.">,
        .failure = never_fails,
        .example = {"settlement=2025-01-20 maturity=2025-07-14 discount=0.05 redemption=100 basis=ACT/360",
                    "97.56944444444444"}},
    Calculation{.name = "RECEIVED",
                .answers = "Amount received at maturity of a fully invested security",
                .parameters = discount_parameters::investment_and_discount,
                .result = ResultKind::amount,
                .formula = joined<"investment / (1 - discount * t)", t_from_settlement>,
                .remarks = joined<equal_dates_are_0, maturity_is_named,
                                  " A discount above 1 / t gives a negative amount. Unlike YEARFRAC, every leap year "
                                  "that the span touches counts 366 days under ACTUAL.">,
                .failure = "discount * t is 1, or so close to 1 that the amount is too large",
                .example = {"settlement=2025-01-20 maturity=2025-07-14 investment=1000000 discount=0.05 basis=ACT/360",
                            "1024911.0320284697"}},
    Calculation{.name = "YIELDDISC",
                .answers = "Annual yield of a discount security, from its price",
                .parameters = discount_parameters::price_and_redemption,
                .result = ResultKind::rate,
                .formula = joined<"(redemption - price) / price / t", t_from_settlement>,
                .remarks = joined<equal_dates_are_0, maturity_is_named,
                                  " A price above redemption gives a negative yield.", days_of_no_length, "yield.">,
                .failure = never_fails,
                .example = {"settlement=2025-01-20 maturity=2025-07-14 price=97.5 redemption=100 basis=ACT/365",
                            "0.053479853479853484"}},
};

inline constexpr Family discount_family{.title = "Discount securities", .calculations = discount_securities};

}  // namespace finance::catalogue
