// Depreciation of an asset, by periods of its life and by accounting periods.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace depreciation_parameters {

inline constexpr Parameter cost = money("cost", "what the asset cost");
inline constexpr Parameter salvage = money("salvage", "what it is worth at the end of its life");
inline constexpr Parameter life =
    number("life", "periods", "how long the asset is used; it need not be whole").bounded(above_0);
inline constexpr Parameter counted_life = whole("life", "periods", "how long the asset is used").counted();
inline constexpr Parameter period = whole("period", "period, 1 the first", "the period asked for").counted();
inline constexpr Parameter factor =
    number("factor", {}, "how many times the straight-line rate: 2 is double declining").optional("2");

inline constexpr std::array straight_line{cost, salvage, life};

inline constexpr std::array sum_of_digits{
    cost, salvage, counted_life,
    period.with(&Parameter::meaning, "the period asked for; it is not compared with life")};

inline constexpr std::array fixed_declining{
    cost, salvage, whole("life", "years", "how long the asset is used").bounded(at_least_1),
    whole("period", "year, 1 the first",
          "the year asked for; the year after the last holds the months that the first one lacks")
        .bounded(at_least_1)
        .ordered({.relation = Relation::at_most, .other = "life", .plus = 1.0, .width = Width::bits_64}),
    whole("month", "months", "months of use in the first year; more than 12 are accepted")
        .optional("12")
        .counted()
        .with(&Parameter::rule, "must not be missing")};

inline constexpr std::array double_declining{
    cost, salvage, life, period.ordered({Relation::at_most, "life"}),
    factor.with(
        &Parameter::meaning,
        "how many times the straight-line rate: 2 is double declining; 0, a negative or a missing one counts as 2")};

inline constexpr std::array variable_declining{
    cost,
    salvage,
    life,
    whole("start", "periods of age", "age of the asset where the span starts: 0 is the beginning of the first period")
        .with(&Parameter::bound_width, Width::bits_32)
        .bounded(at_least_0)
        .ordered({Relation::at_most, "life"}),
    whole("end", "periods of age",
          "age of the asset where the span ends: 1 is the end of the first period; it is not compared with start")
        .counted()
        .ordered({Relation::at_most, "life"}),
    factor.bounded(above_0).with(&Parameter::rule, "must not be missing, nor be left out where noSwitch is given"),
    flag("noSwitch", "1 stays with the declining balance to the end, 0 switches to straight line where that is more")
        .optional("1")
        .bounded(at_least_0)
        .bounded(at_most_1)};

// ---- By accounting period

inline constexpr Parameter purchase = date("purchase", "day on which the asset was bought");
inline constexpr Parameter first_period_end =
    date("firstPeriodEnd", "last day of the accounting period of the purchase; it is not compared with purchase");
inline constexpr Parameter salvage_within_cost = salvage.bounded(at_least_0).ordered({Relation::at_most, "cost"});
inline constexpr Parameter salvage_of_any_size =
    money("salvage", "what it is worth at the end of its life; one above cost is accepted").bounded(at_least_0);
inline constexpr Parameter accounting_period =
    whole("period", "period, 0 that of the purchase", "the accounting period asked for").bounded(at_least_0);
inline constexpr Parameter rate =
    number("rate", "fraction per period: 0.15 is 15 %", "depreciation rate of one period; the life is 1 / rate periods")
        .bounded(above_0);
inline constexpr Parameter basis = security_parameters::basis.with(&Parameter::rule, "must not be ACT/360");

inline constexpr std::array prorated_linear{
    cost.bounded(above_0), purchase, first_period_end, salvage_within_cost, accounting_period, rate, basis};
inline constexpr std::array prorated_degressive{
    cost.bounded(above_0), purchase, first_period_end, salvage_of_any_size, accounting_period, rate, basis};

}  // namespace depreciation_parameters

inline constexpr Sentence f_of_first_period =
    "f: part of a year from purchase to firstPeriodEnd, as the basis counts it (see YEARFRAC)";
inline constexpr Sentence basis_of_purchase =
    " ACT/360 is refused. Under ACTUAL the year has the length of the purchase's year";

inline constexpr std::array depreciation{
    Calculation{
        .name = "AMORDEGRC",
        .answers = "Depreciation of one accounting period, degressive, in whole units of money",
        .parameters = depreciation_parameters::prorated_degressive,
        .result = ResultKind::amount,
        .formula =
            joined<"period 0: cost * rate * c * f, but no more than cost - salvage\n"
                   "later: rate * c of what is left; half of it in period n - 1, all of it in period n\n"
                   "c = 1.5 for a life of up to 4 periods, 2 for up to 6, else 2.5; n: 1 / rate without its fraction\n",
                   f_of_first_period>,
        .remarks = joined<
            "Each period's amount is rounded to a whole number, half away from 0. A life below 3 periods (a rate above "
            "1/3) answers 0 for every period, so does a period after n, and one in which less than salvage is left.",
            basis_of_purchase, ".">,
        .failure = never_fails,
        .example =
            {"cost=2400 purchase=2025-08-19 firstPeriodEnd=2025-12-31 salvage=300 period=1 rate=0.15 basis=ACTUAL",
             "776"}},
    Calculation{
        .name = "AMORLINC",
        .answers = "Depreciation of one accounting period, linear",
        .parameters = depreciation_parameters::prorated_linear,
        .result = ResultKind::amount,
        .formula = joined<"period 0: f * cost * rate\n"
                          "later: the smaller of cost * rate and what is left, cost - salvage - f * cost * rate -\n"
                          "(period - 1) * cost * rate, but at least 0\n",
                          f_of_first_period>,
        .remarks = joined<"Unlike AMORDEGRC it does not round and refuses a salvage above cost. A life (1 / rate) with "
                          "a fraction has one period more; after it the answer is 0. A purchase on firstPeriodEnd "
                          "moves the numbering by one: period 0 is then the first whole period.",
                          basis_of_purchase, "; under 30/360 a firstPeriodEnd on the 31st counts as the 30th.">,
        .failure = never_fails,
        .example =
            {"cost=2400 purchase=2025-08-19 firstPeriodEnd=2025-12-31 salvage=300 period=1 rate=0.15 basis=ACTUAL",
             "360"}},
    Calculation{.name = "DB",
                .answers = "Depreciation of one year by a fixed declining balance",
                .parameters = depreciation_parameters::fixed_declining,
                .result = ResultKind::amount,
                .formula = "rate = 1 - (salvage / cost)^(1 / life), rounded to three decimals\n"
                           "period 1: cost * rate * month / 12\n"
                           "periods 2 .. life: (cost - depreciation so far) * rate\n"
                           "period life + 1: (cost - depreciation so far) * rate * (12 - month) / 12",
                .remarks = "The month is the number of months in the first year; with 12, the default, period life + 1 "
                           "answers 0, with more than 12 its amount is negative. A salvage of 0 makes the rate 1. "
                           "Salvage and cost must have one sign for a meaningful answer, which is not checked.",
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
