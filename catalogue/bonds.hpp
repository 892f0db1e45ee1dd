// Bonds that pay coupons at regular dates.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace bond_parameters {

using namespace security_parameters;

inline constexpr std::array accrued_interest{issue,
                                             date("firstInterest",
                                                  "a day on which interest is paid: all others lie whole periods "
                                                  "before or after it; it is not compared with the other dates"),
                                             settlement_after_issue,
                                             rate,
                                             par,
                                             frequency,
                                             basis};
inline constexpr std::array duration{settlement, maturity, rate, yield, frequency, basis};
inline constexpr std::array price_from_yield{settlement, maturity, rate, yield, redemption, frequency, basis};
inline constexpr std::array yield_from_price{settlement, maturity, rate, price, redemption, frequency, basis};

}  // namespace bond_parameters

inline constexpr Sentence redemption_is_100 = " Redemption is always 100.";
inline constexpr Sentence parts_of_period = "a and d: parts of the coupon period before and after settlement";

inline constexpr std::array bonds{
    Calculation{
        .name = "ACCRINT",
        .answers = "Interest accrued from issue to settlement on a security that pays coupons",
        .parameters = bond_parameters::accrued_interest,
        .result = ResultKind::amount,
        .formula = "par * rate / frequency * n\n"
                   "n: coupon periods from issue to settlement, whole ones and the fractions at both ends,\n"
                   "their days counted as the basis says",
        .remarks =
            "An issue equal to settlement answers 0 before the later arguments are looked at; a settlement before "
            "issue is refused and named. Interest accrues from issue even where coupons have been paid since.",
        .failure = never_fails,
        .example = {"issue=2025-03-01 firstInterest=2025-09-01 settlement=2025-06-15 rate=0.06 par=1000 frequency=2",
                    "17.333333333333332"}},
    Calculation{
        .name = "DURATION",
        .answers = "Average time in years to the payments of a bond, weighted by their present values",
        .parameters = bond_parameters::duration,
        .formula = "sum of time * worth of all payments / sum of their worths\n"
                   "payments: coupons of 100 * rate / frequency, and 100 at maturity\n"
                   "time: in years from settlement; worth: payment * (1 + yield / frequency)^(-frequency * time)",
        .remarks = joined<equal_dates_are_0, maturity_is_named, redemption_is_100>,
        .failure = yield_too_low,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 rate=0.05 yield=0.06 frequency=2", "5.053236998464601"}},
    Calculation{
        .name = "MDURATION",
        .answers = "Modified duration: how fast the worth of a bond falls as its yield rises",
        .parameters = bond_parameters::duration,
        .formula = "DURATION / (1 + yield / frequency)",
        .remarks = joined<equal_dates_are_0, maturity_is_named, redemption_is_100>,
        .failure = yield_too_low,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 rate=0.05 yield=0.06 frequency=2", "4.906055338315146"}},
    Calculation{
        .name = "PRICE",
        .answers = "Price of a bond per 100 of face value, from its yield",
        .parameters = bond_parameters::price_from_yield,
        .result = ResultKind::amount,
        .formula = joined<"redemption * v^(N - 1 + d) + coupon * (sum of v^(k + d) for k = 0 .. N - 1) - coupon * a\n"
                          "with one coupon left: (redemption + coupon) / (1 + yield / frequency * d) - coupon * a\n"
                          "coupon = 100 * rate / frequency, v = 1 / (1 + yield / frequency), N = COUPNUM,\n",
                          parts_of_period>,
        .remarks = joined<"The price is without accrued interest, which the buyer pays on top. ", but_redemption_is_0,
                          maturity_is_named, " A settlement on a coupon date has accrued nothing.">,
        .failure = yield_too_low,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 rate=0.05 yield=0.06 redemption=100 frequency=2",
                    "95.13992935087715"}},
    Calculation{.name = "YIELD",
                .answers = "Annual yield of a bond, from its price",
                .parameters = bond_parameters::yield_from_price,
                .result = ResultKind::rate,
                .formula = joined<"the yield at which PRICE is this price, by search from 0.1\n"
                                  "with one coupon left:\n"
                                  "((redemption + coupon) / (price + coupon * a) - 1) * frequency / d\n"
                                  "coupon = 100 * rate / frequency, ",
                                  parts_of_period>,
                .remarks = joined<price_is_clean, equal_dates_are_0, maturity_is_named>,
                .failure = no_yield_found,
                .searches = true,
                .example = {"settlement=2025-01-20 maturity=2030-11-15 rate=0.05 price=95 redemption=100 frequency=2",
                            "0.060297228204362764"}},
};

inline constexpr Family bond_family{.title = "Bonds", .calculations = bonds};

}  // namespace finance::catalogue
