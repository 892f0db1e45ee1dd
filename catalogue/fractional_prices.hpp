// Prices written with a fraction of another denominator than ten.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace fractional_price_parameters {

inline constexpr Parameter denominator =
    whole("denominator", {}, "denominator of the fraction: 8, 16, 32 and so on; any from 1 up").counted();

inline constexpr std::array to_decimal{number("price", "whole units and, after the point, the numerator",
                                              "price in fractional notation: with denominator 16, 1.02 is 1 and 2/16"),
                                       denominator};
inline constexpr std::array to_fraction{money("price", "price in decimal notation"), denominator};

}  // namespace fractional_price_parameters

inline constexpr Sentence sides_of_point =
    "\ni, w: the price before and after its point; k: log10(denominator) rounded up";
inline constexpr Sentence price_too_large = " A price of 2^31 or more has no meaningful answer.";

inline constexpr std::array fractional_prices{
    Calculation{
        .name = "DOLLARDE",
        .answers = "Decimal price, from a price in fractional notation",
        .parameters = fractional_price_parameters::to_decimal,
        .result = ResultKind::amount,
        .formula = joined<"i + w * 10^k / denominator", sides_of_point>,
        .remarks = joined<
            "The numerator takes as many digits as the denominator needs: one for 2 to 10, two for 11 to 100. With "
            "denominator 8, 101.5 is 101 and 5/8; with 32, 101.05 is 101 and 5/32, and 101.5 is 101 and 50/32.",
            price_too_large>,
        .failure = never_fails,
        .example = {"price=99.28 denominator=32", "99.875"}},
    Calculation{
        .name = "DOLLARFR",
        .answers = "Price in fractional notation, from a decimal price",
        .parameters = fractional_price_parameters::to_fraction,
        .result = ResultKind::amount,
        .formula = joined<"i + w * denominator / 10^k", sides_of_point>,
        .remarks = joined<"DOLLARDE turns it back. With denominator 16, 1.125 becomes 1.02, to be read as 1 and 2/16.",
                          price_too_large>,
        .failure = never_fails,
        .example = {"price=99.875 denominator=32", "99.28"}},
};

inline constexpr Family fractional_price_family{.title = "Fractional prices", .calculations = fractional_prices};

}  // namespace finance::catalogue
