// Depreciation of an asset, by periods of its life and by accounting periods.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace depreciation_parameters {

inline constexpr Parameter cost{
    .name = "cost", .kind = Kind::number, .unit = "money", .meaning = "what the asset cost"};
inline constexpr Parameter salvage{
    .name = "salvage", .kind = Kind::number, .unit = "money", .meaning = "what it is worth at the end of its life"};
inline constexpr Parameter life{.name = "life",
                                .kind = Kind::number,
                                .unit = "periods",
                                .meaning = "how long the asset is used; it need not be whole",
                                .lower = above_0};
inline constexpr Parameter counted_life{.name = "life",
                                        .kind = Kind::whole,
                                        .unit = "periods",
                                        .meaning = "how long the asset is used",
                                        .lower = at_least_1,
                                        .bound_width = Width::bits_32};

inline constexpr std::array straight_line{cost, salvage, life};

inline constexpr std::array sum_of_digits{cost, salvage, counted_life,
                                          Parameter{.name = "period",
                                                    .kind = Kind::whole,
                                                    .unit = "period, 1 the first",
                                                    .meaning = "the period asked for; it is not compared with life",
                                                    .lower = at_least_1,
                                                    .bound_width = Width::bits_32}};

inline constexpr std::array fixed_declining{
    cost, salvage,
    Parameter{.name = "life",
              .kind = Kind::whole,
              .unit = "years",
              .meaning = "how long the asset is used",
              .lower = at_least_1},
    Parameter{.name = "period",
              .kind = Kind::whole,
              .unit = "year, 1 the first",
              .meaning = "the year asked for; the year after the last holds the months that the first one lacks",
              .lower = at_least_1,
              .orders = {{{.relation = Relation::at_most, .other = "life", .plus = 1.0, .width = Width::bits_64}}}},
    Parameter{.name = "month",
              .kind = Kind::whole,
              .unit = "months",
              .meaning = "months of use in the first year; more than 12 are accepted",
              .need = Need::optional,
              .default_text = "12",
              .lower = at_least_1,
              .bound_width = Width::bits_32,
              .rule = "must not be missing"}};

inline constexpr std::array double_declining{
    cost, salvage, life,
    Parameter{.name = "period",
              .kind = Kind::whole,
              .unit = "period, 1 the first",
              .meaning = "the period asked for",
              .lower = at_least_1,
              .bound_width = Width::bits_32,
              .orders = {{{Relation::at_most, "life"}}}},
    Parameter{.name = "factor",
              .kind = Kind::number,
              .meaning = "how many times the straight-line rate: 2 is double declining; 0, a negative or a missing one "
                         "counts as 2",
              .need = Need::optional,
              .default_text = "2"}};

inline constexpr std::array variable_declining{
    cost,
    salvage,
    life,
    Parameter{.name = "start",
              .kind = Kind::whole,
              .unit = "periods of age",
              .meaning = "age of the asset where the span starts: 0 is the beginning of the first period",
              .lower = at_least_0,
              .bound_width = Width::bits_32,
              .orders = {{{Relation::at_most, "life"}}}},
    Parameter{.name = "end",
              .kind = Kind::whole,
              .unit = "periods of age",
              .meaning = "age of the asset where the span ends: 1 is the end of the first period; it is not compared "
                         "with start",
              .lower = at_least_1,
              .bound_width = Width::bits_32,
              .orders = {{{Relation::at_most, "life"}}}},
    Parameter{.name = "factor",
              .kind = Kind::number,
              .meaning = "how many times the straight-line rate: 2 is double declining",
              .need = Need::optional,
              .default_text = "2",
              .lower = above_0,
              .rule = "must not be missing, nor be left out where noSwitch is given"},
    Parameter{
        .name = "noSwitch",
        .kind = Kind::flag,
        .unit = "0 or 1",
        .meaning = "1 stays with the declining balance to the end, 0 switches to straight line where that is more",
        .need = Need::optional,
        .default_text = "1",
        .lower = at_least_0,
        .upper = {Relation::at_most, 1.0}}};

// ---- By accounting period

inline constexpr Parameter paid_cost{
    .name = "cost", .kind = Kind::number, .unit = "money", .meaning = "what the asset cost", .lower = above_0};
inline constexpr Parameter purchase{
    .name = "purchase", .kind = Kind::date, .meaning = "day on which the asset was bought"};
inline constexpr Parameter first_period_end{
    .name = "firstPeriodEnd",
    .kind = Kind::date,
    .meaning = "last day of the accounting period of the purchase; it is not compared with purchase"};
inline constexpr Parameter salvage_within_cost{.name = "salvage",
                                               .kind = Kind::number,
                                               .unit = "money",
                                               .meaning = "what it is worth at the end of its life",
                                               .lower = at_least_0,
                                               .orders = {{{Relation::at_most, "cost"}}}};
inline constexpr Parameter salvage_of_any_size{
    .name = "salvage",
    .kind = Kind::number,
    .unit = "money",
    .meaning = "what it is worth at the end of its life; one above cost is accepted",
    .lower = at_least_0};
inline constexpr Parameter accounting_period{.name = "period",
                                             .kind = Kind::whole,
                                             .unit = "period, 0 that of the purchase",
                                             .meaning = "the accounting period asked for",
                                             .lower = at_least_0};
inline constexpr Parameter rate{.name = "rate",
                                .kind = Kind::number,
                                .unit = "fraction per period: 0.15 is 15 %",
                                .meaning = "depreciation rate of one period; the life is 1 / rate periods",
                                .lower = above_0};
inline constexpr Parameter basis{.name = "basis",
                                 .kind = Kind::basis,
                                 .meaning = security_parameters::basis.meaning,
                                 .need = Need::optional,
                                 .default_text = "30/360",
                                 .rule = "must not be ACT/360"};

inline constexpr std::array prorated_linear{
    paid_cost, purchase, first_period_end, salvage_within_cost, accounting_period, rate, basis};
inline constexpr std::array prorated_degressive{
    paid_cost, purchase, first_period_end, salvage_of_any_size, accounting_period, rate, basis};

}  // namespace depreciation_parameters

inline constexpr std::array depreciation{
    Calculation{
        .name = "AMORDEGRC",
        .answers = "Depreciation of one accounting period, degressive, in whole units of money",
        .parameters = depreciation_parameters::prorated_degressive,
        .result = ResultKind::amount,
        .formula = "period 0: cost * rate * c * f, but no more than cost - salvage\n"
                   "later: rate * c of what is left; half of it in period n - 1, all of it in period n\n"
                   "c = 1.5 for a life of up to 4 periods, 2 for up to 6, else 2.5; n: 1 / rate without its fraction\n"
                   "f: part of a year from purchase to firstPeriodEnd, as the basis counts it (see YEARFRAC)",
        .remarks =
            "Each period's amount is rounded to a whole number, half away from 0. A life below 3 periods (a rate "
            "above 1/3) answers 0 for every period, so does a period after n, and one in which less than salvage "
            "is left. ACT/360 is refused. Under ACTUAL the year has the length of the purchase's year.",
        .failure = never_fails,
        .example = {"cost=2400 purchase=2025-08-19 firstPeriodEnd=2025-12-31 salvage=300 period=1 rate=0.15 "
                    "basis=ACTUAL",
                    "776"}},
    Calculation{
        .name = "AMORLINC",
        .answers = "Depreciation of one accounting period, linear",
        .parameters = depreciation_parameters::prorated_linear,
        .result = ResultKind::amount,
        .formula = "period 0: f * cost * rate\n"
                   "later: the smaller of cost * rate and what is left, cost - salvage - f * cost * rate -\n"
                   "(period - 1) * cost * rate, but at least 0\n"
                   "f: part of a year from purchase to firstPeriodEnd, as the basis counts it (see YEARFRAC)",
        .remarks =
            "Unlike AMORDEGRC it does not round and refuses a salvage above cost. A life (1 / rate) with a "
            "fraction has one period more; after it the answer is 0. A purchase on firstPeriodEnd moves the "
            "numbering by one: period 0 is then the first whole period. ACT/360 is refused. Under ACTUAL the "
            "year has the length of the purchase's year; under 30/360 a firstPeriodEnd on the 31st counts as the "
            "30th.",
        .failure = never_fails,
        .example = {"cost=2400 purchase=2025-08-19 firstPeriodEnd=2025-12-31 salvage=300 period=1 rate=0.15 "
                    "basis=ACTUAL",
                    "360"}},
    Calculation{
        .name = "DB",
        .answers = "Depreciation of one year by a fixed declining balance",
        .parameters = depreciation_parameters::fixed_declining,
        .result = ResultKind::amount,
        .formula = "rate = 1 - (salvage / cost)^(1 / life), rounded to three decimals\n"
                   "period 1: cost * rate * month / 12\n"
                   "periods 2 .. life: (cost - depreciation so far) * rate\n"
                   "period life + 1: (cost - depreciation so far) * rate * (12 - month) / 12",
        .remarks =
            "The month is the number of months in the first year; with 12, the default, period life + 1 answers "
            "0, with more than 12 its amount is negative. A salvage of 0 makes the rate 1. Salvage and cost must "
            "have one sign for a meaningful answer, which is not checked.",
        .failure = never_fails,
        .example = {"cost=10000 salvage=1000 life=5 period=2 month=7", "2895.7275"}},
    Calculation{.name = "DDB",
                .answers = "Depreciation of one period by a double (or otherwise multiple) declining balance",
                .parameters = depreciation_parameters::double_declining,
                .result = ResultKind::amount,
                .formula = "the smaller of (cost - depreciation so far) * factor / life\n"
                           "and cost - salvage - depreciation so far",
                .remarks = "The asset is never depreciated below salvage; a salvage above cost answers 0. There is no "
                           "switch to straight line; VDB can. The factor is never refused: 0 or less counts as 2.",
                .failure = never_fails,
                .example = {"cost=10000 salvage=1000 life=10 period=3", "1280"}},
    Calculation{.name = "SLN",
                .answers = "Straight-line depreciation of one period",
                .parameters = depreciation_parameters::straight_line,
                .result = ResultKind::amount,
                .formula = "(cost - salvage) / life",
                .remarks = "It is the same for every period.",
                .failure = never_fails,
                .example = {"cost=10000 salvage=1000 life=5", "1800"}},
    Calculation{.name = "SYD",
                .answers = "Depreciation of one period by the sum of the years' digits",
                .parameters = depreciation_parameters::sum_of_digits,
                .result = ResultKind::amount,
                .formula = "(cost - salvage) * (life - period + 1) * 2 / life / (1 + life)",
                .remarks = "A period beyond life is accepted: period life + 1 answers 0, later ones a negative amount.",
                .failure = never_fails,
                .example = {"cost=10000 salvage=1000 life=5 period=1", "3000"}},
    Calculation{
        .name = "VDB",
        .answers = "Declining-balance depreciation over a span of periods, with a switch if wanted",
        .parameters = depreciation_parameters::variable_declining,
        .result = ResultKind::amount,
        .formula = "sum over the periods from age start to age end of (cost - depreciation so far) * factor / life,\n"
                   "ending where cost - salvage is used up\n"
                   "with noSwitch 0: from the first period in which straight line is more,\n"
                   "(cost - salvage - depreciation so far) / periods left, that amount in every period",
        .remarks = "The span runs from age to age: start=0 end=1 is the first period, start=5 end=8 the sixth to the "
                   "eighth. noSwitch is 1 unless given: there is no switch to straight line unless noSwitch=0 asks for "
                   "it. A span of the whole life (end - start = life) answers cost - salvage whatever the factor and "
                   "the flag; an end at or before start answers 0.",
        .failure = never_fails,
        .example = {"cost=10000 salvage=500 life=10 start=6 end=10 factor=1.5 noSwitch=0", "3146.7083333333335"}},
};

inline constexpr Family depreciation_family{.title = "Depreciation", .calculations = depreciation};

}  // namespace finance::catalogue
