// Prices written with a fraction of another denominator than ten.
#pragma once

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

namespace fractional_price_parameters {

inline constexpr Parameter denominator{.name = "denominator",
                                       .kind = Kind::whole,
                                       .meaning = "denominator of the fraction: 8, 16, 32 and so on; any from 1 up",
                                       .lower = at_least_1,
                                       .bound_width = Width::bits_32};

inline constexpr std::array to_decimal{
    Parameter{.name = "price",
              .kind = Kind::number,
              .unit = "whole units and, after the point, the numerator",
              .meaning = "price in fractional notation: with denominator 16, 1.02 is 1 and 2/16"},
    denominator};
inline constexpr std::array to_fraction{
    Parameter{.name = "price", .kind = Kind::number, .unit = "money", .meaning = "price in decimal notation"},
    denominator};

}  // namespace fractional_price_parameters

inline constexpr std::array fractional_prices{
    Calculation{.name = "DOLLARDE",
                .answers = "Decimal price, from a price in fractional notation",
                .parameters = fractional_price_parameters::to_decimal,
                .result = ResultKind::amount,
                .formula = "i + w * 10^k / denominator\n"
                           "i, w: the price before and after its point; k: log10(denominator) rounded up",
                .remarks =
                    "The numerator takes as many digits as the denominator needs: one for 2 to 10, two for 11 to 100. "
                    "With denominator 8, 101.5 is 101 and 5/8; with 32, 101.05 is 101 and 5/32, and 101.5 is 101 and "
                    "50/32. A price of 2^31 or more has no meaningful answer.",
                .failure = never_fails,
                .example = {"price=99.28 denominator=32", "99.875"}},
    Calculation{
        .name = "DOLLARFR",
        .answers = "Price in fractional notation, from a decimal price",
        .parameters = fractional_price_parameters::to_fraction,
        .result = ResultKind::amount,
        .formula = "i + w * denominator / 10^k\n"
                   "i, w: the price before and after its point; k: log10(denominator) rounded up",
        .remarks = "DOLLARDE turns it back. With denominator 16, 1.125 becomes 1.02, to be read as 1 and 2/16. A price "
                   "of 2^31 or more has no meaningful answer.",
        .failure = never_fails,
        .example = {"price=99.875 denominator=32", "99.28"}},
};

inline constexpr Family fractional_price_family{.title = "Fractional prices", .calculations = fractional_prices};

}  // namespace finance::catalogue
