// Nominal and effective rates, and growth through a schedule of rates.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace rate_conversion_parameters {

inline constexpr std::string_view annual_fraction = "fraction a year: 0.12 is 12 %";

inline constexpr Parameter periods_per_year =
    whole("periodsPerYear", "periods a year", "how often interest is added within a year").bounded(at_least_1);

inline constexpr std::array to_effective{
    number("nominalRate", annual_fraction, "annual rate without interest on interest; any"),
    periods_per_year.counted()};
inline constexpr std::array to_nominal{
    number("effectiveRate", annual_fraction, "annual rate with interest on interest; any"), periods_per_year};
inline constexpr std::array schedule{
    money("principal", "amount at the start; any sign"),
    numbers("rates", "fraction per period: 0.05 is 5 %", "interest rate of each period in turn; any").optional("none")};

}  // namespace rate_conversion_parameters

inline constexpr std::array rate_conversions{
    Calculation{.name = "EFFECT",
                .answers = "Effective annual rate, from the nominal rate",
                .parameters = rate_conversion_parameters::to_effective,
                .result = ResultKind::rate,
                .formula = "(1 + nominalRate / periodsPerYear)^periodsPerYear - 1",
                .remarks = "NOMINAL turns it back. A nominalRate below -periodsPerYear answers a missing value, a "
                           "result beyond what a double can hold is infinite.",
                .failure = never_fails,
                .example = {"nominalRate=0.12 periodsPerYear=12", "0.12682503013196977"}},
    Calculation{.name = "FVSCHEDULE",
                .answers = "What a principal grows to through a schedule of rates",
                .parameters = rate_conversion_parameters::schedule,
                .result = ResultKind::amount,
                .formula = "principal * (1 + rate_1) * (1 + rate_2) * ...",
                .remarks = "Without rates the answer is the principal.",
                .failure = never_fails,
                .example = {"principal=1000 rates=0.05,0.03,0.04", "1124.76"}},
    Calculation{.name = "NOMINAL",
                .answers = "Nominal annual rate, from the effective rate",
                .parameters = rate_conversion_parameters::to_nominal,
                .result = ResultKind::rate,
                .formula = "periodsPerYear * ((1 + effectiveRate)^(1 / periodsPerYear) - 1)",
                .remarks = "EFFECT turns it back. An effectiveRate below -1 answers a missing value.",
                .failure = never_fails,
                .example = {"effectiveRate=0.1268 periodsPerYear=12", "0.11997756467064916"}},
};

inline constexpr Family rate_conversion_family{.title = "Rate conversion", .calculations = rate_conversions};

}  // namespace finance::catalogue
