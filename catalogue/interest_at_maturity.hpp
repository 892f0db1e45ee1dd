// Securities that pay all their interest at maturity.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace interest_at_maturity_parameters {

using namespace security_parameters;

inline constexpr Parameter issue_before_maturity =
    date("issue", "day from which interest accrues; it is not compared with settlement")
        .ordered({Relation::at_most, "maturity"});

inline constexpr std::array accrued_interest{issue, settlement_after_issue, rate, par, basis};
inline constexpr std::array price_from_yield{settlement, later_maturity, issue_before_maturity, rate, yield, basis};
inline constexpr std::array yield_from_price{settlement, maturity, issue_before_maturity, rate, price, basis};

}  // namespace interest_at_maturity_parameters

inline constexpr Sentence end_on_the_31st =
    " An issue after settlement is accepted. Unlike YEARFRAC, an end on the 31st counts as the 30th under 30/360.";

inline constexpr std::array interest_at_maturity{
    Calculation{
        .name = "ACCRINTM",
        .answers = "Interest accrued from issue to settlement where all is paid at maturity",
        .parameters = interest_at_maturity_parameters::accrued_interest,
        .result = ResultKind::amount,
        .formula = "rate * t * par\n"
                   "t: part of a year from issue to settlement, as the basis counts it (see YEARFRAC)",
        .remarks = joined<equal_dates_are_0,
                          "a settlement before issue is refused and named. Unlike YEARFRAC, a settlement on the 31st "
                          "counts as the 30th under 30/360.">,
        .failure = t_below_0,
        .example = {"issue=2025-03-01 settlement=2025-06-15 rate=0.06 par=1000 basis=ACT/365", "17.424657534246574"}},
    Calculation{
        .name = "PRICEMAT",
        .answers = "Price of a security that pays its interest at maturity, from its yield",
        .parameters = interest_at_maturity_parameters::price_from_yield,
        .result = ResultKind::amount,
        .formula = joined<"(100 + 100 * rate * t(issue, maturity)) / (1 + yield * t(settlement, maturity))\n"
                          "- 100 * rate * t(issue, settlement)",
                          t_of_two_dates>,
        .remarks = joined<
            "The price is per 100 of face value, without accrued interest. A maturity on or before settlement is "
            "refused and named; an issue equal to maturity answers 0 before the later arguments are looked at.",
            end_on_the_31st>,
        .failure = "1 + yield * t(settlement, maturity) is 0",
        .example = {"settlement=2025-01-20 maturity=2025-11-15 issue=2024-11-15 rate=0.05 yield=0.06",
                    "99.17665033977585"}},
    Calculation{
        .name = "YIELDMAT",
        .answers = "Annual yield of a security that pays its interest at maturity, from its price",
        .parameters = interest_at_maturity_parameters::yield_from_price,
        .result = ResultKind::rate,
        .formula =
            joined<"((100 + 100 * rate * t(issue, maturity)) / (price + 100 * rate * t(issue, settlement)) - 1)\n"
                   "/ t(settlement, maturity)",
                   t_of_two_dates>,
        .remarks = joined<price_is_clean,
                          "A maturity before settlement is refused and named; unlike in PRICEMAT, a maturity equal to "
                          "settlement answers 0, and so does an issue equal to maturity, both after all three dates "
                          "have been read and before the later arguments are.",
                          end_on_the_31st>,
        .failure = "price + 100 * rate * t(issue, settlement) is 0",
        .example = {"settlement=2025-01-20 maturity=2025-11-15 issue=2024-11-15 rate=0.05 price=99.25",
                    "0.05906230829077056"}},
};

inline constexpr Family interest_at_maturity_family{.title = "Interest at maturity",
                                                    .calculations = interest_at_maturity};

}  // namespace finance::catalogue
