// Level payments of loans and savings plans.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace annuity_parameters {

inline constexpr Parameter any_rate =
    number("rate", "fraction per period: 0.005 is 0.5 %", "interest rate of one period");
inline constexpr Parameter rate = any_rate.bounded(above_0);
inline constexpr Parameter any_nper = whole("nper", "periods", "number of periods of the loan");
inline constexpr Parameter nper = whole("nper", "periods", "number of periods").counted();
inline constexpr Parameter per = whole("per", "period, 1 the first", "the period asked for").counted();
inline constexpr Parameter per_within_nper = per.ordered({Relation::at_most, "nper"});
inline constexpr Parameter pmt = number("pmt", "money per period", "level payment, negative where it is paid");
inline constexpr Parameter pv =
    money("pv", "present value: a loan received is positive, an amount paid in at the start negative");
inline constexpr Parameter loan = money("pv", "present value: the loan received");
inline constexpr Parameter fv =
    money("fv", "future value: an amount received after the last payment is positive, one paid negative").optional("0");
inline constexpr Parameter type =
    flag("type", "when payments fall: 1 at the start of each period, 0 at its end; a negative whole number acts as 0")
        .optional("0")
        .bounded(at_most_1);
inline constexpr Parameter start_period = whole("startPeriod", "period, 1 the first", "first period of the range");
inline constexpr Parameter end_period = whole("endPeriod", "period, 1 the first", "last period of the range");

inline constexpr std::array cumipmt{
    rate,
    any_nper,
    loan.bounded(above_0),
    start_period.with(&Parameter::meaning, "first period of the range; it is not compared with the others"),
    end_period.with(&Parameter::meaning, "last period of the range; it is not compared with the others"),
    type};

inline constexpr std::array cumprinc{
    rate,
    any_nper,
    loan,
    start_period.counted().ordered({Relation::at_most, "nper"}).ordered({Relation::at_most, "endPeriod"}),
    end_period.bounded(at_least_1).ordered({Relation::at_most, "nper"}),
    type};

inline constexpr std::array future_value{rate, nper,
                                         pmt.with(&Parameter::meaning, "level payment, negative where it is paid in")
                                             .optional("0")
                                             .with(&Parameter::need, Need::may_be_missing),
                                         money("pv", "present value, negative where it is paid in at the start")
                                             .optional("0")
                                             .with(&Parameter::rule, "must not be missing where pmt is missing too"),
                                         type};

inline constexpr std::array number_of_periods{
    rate, pmt, pv, fv.with(&Parameter::rule, "must not be missing, nor be left out where type is given"),
    flag("type", "when payments fall: 1 at the start of each period, 0 at its end; any other whole number acts as 0")
        .optional("0")};

inline constexpr std::array rate_search{
    nper,
    pmt.with(&Parameter::meaning, "level payment, negative where it is paid; 0 asks for the growth from pv to fv"), pv,
    fv, type};

inline constexpr std::array payment{rate, nper, pv, fv, type};
inline constexpr std::array payment_part{rate, per_within_nper, nper, pv, fv, type};
inline constexpr std::array interest_at_constant_principal{rate, per, nper, pv};

inline constexpr std::array present_value{
    any_rate.with(&Parameter::meaning, "interest rate of one period; negative rates are allowed")
        .bounded({Relation::above, -1.0}),
    nper, pmt, fv, type};

}  // namespace annuity_parameters

inline constexpr Sentence growth_too_large =
    "nper * ln(1 + rate) is 709.78 or more, so that the growth factor (1 + rate)^nper is too large";
inline constexpr Sentence carried_balance =
    " for k = startPeriod .. endPeriod,\n"
    "formed by carrying the balance from period to period: balance + payment + rate * balance";
inline constexpr Sentence second_term_at_start = "with type 1 the second term is multiplied by 1 + rate";
inline constexpr Sentence money_signs = "Money paid is negative, money received positive: ";
inline constexpr Sentence interest_sign = "Interest paid is negative. ";
inline constexpr Sentence parts_of_payment = "IPMT and PPMT of one period add up to PMT.";

inline constexpr std::array annuities{
    Calculation{.name = "CUMIPMT",
                .answers = "Interest paid in a range of periods of a loan repaid by level payments",
                .parameters = annuity_parameters::cumipmt,
                .result = ResultKind::amount,
                .formula = joined<"sum of IPMT(rate, k, nper, pv, 0, type)", carried_balance>,
                .remarks = joined<interest_sign,
                                  "The range is not compared with nper: periods before 1 add nothing, periods after "
                                  "nper go on with whatever balance is left, and a startPeriod after endPeriod gives "
                                  "0. With type 1 the first period bears no interest.">,
                .failure = growth_too_large,
                .example = {"rate=0.005 nper=360 pv=200000 startPeriod=1 endPeriod=12", "-11933.189179112622"}},
    Calculation{.name = "CUMPRINC",
                .answers = "Principal repaid in a range of periods of a loan repaid by level payments",
                .parameters = annuity_parameters::cumprinc,
                .result = ResultKind::amount,
                .formula = joined<"sum of PPMT(rate, k, nper, pv, 0, type)", carried_balance>,
                .remarks =
                    "Principal repaid is negative. With type 1 the payment of the first period, made before any "
                    "interest is due, is all principal. Unlike CUMIPMT, a range that does not fit the loan is refused.",
                .failure = growth_too_large,
                .example = {"rate=0.005 nper=360 pv=200000 startPeriod=1 endPeriod=12", "-2456.023424553436"}},
    Calculation{.name = "FV",
                .answers = "Future value of level payments and of an amount at the start",
                .parameters = annuity_parameters::future_value,
                .result = ResultKind::amount,
                .formula = joined<"-pv * (1 + rate)^nper - pmt * ((1 + rate)^nper - 1) / rate\n", second_term_at_start>,
                .remarks = "Money paid in is negative, money received positive: saving 100 a period is pmt=-100 and "
                           "gives a positive future value.",
                .failure = growth_too_large,
                .example = {"rate=0.01 nper=12 pmt=-100", "1268.2503013196979"}},
    Calculation{
        .name = "IPMT",
        .answers = "Interest part of the level payment of one period",
        .parameters = annuity_parameters::payment_part,
        .result = ResultKind::amount,
        .formula = "-pv * rate * (1 + rate)^(per - 1) - PMT * ((1 + rate)^(per - 1) - 1)\n"
                   "with type 1 the first term is divided by 1 + rate, and period 1 bears no interest",
        .remarks =
            joined<interest_sign, "In period 1 it is -pv * rate (0 with type 1), whatever the payment would be. ",
                   parts_of_payment>,
        .failure = joined<growth_too_large, " (never so for per 1)">,
        .example = {"rate=0.005 per=13 nper=360 pv=200000", "-987.7198828772327"}},
    Calculation{
        .name = "ISPMT",
        .answers = "Interest of one period of a loan repaid by equal amounts of principal",
        .parameters = annuity_parameters::interest_at_constant_principal,
        .result = ResultKind::amount,
        .formula = "-pv * rate * (nper - per) / nper",
        .remarks = joined<interest_sign,
                          "It is taken on the principal left after period per has been repaid, so that it is 0 for per "
                          "= nper; per is not compared with nper, and a later one gives a positive amount.">,
        .failure = never_fails,
        .example = {"rate=0.01 per=3 nper=12 pv=1200", "-9"}},
    Calculation{
        .name = "NPER",
        .answers = "Number of level payments that repay a loan, or save up an amount",
        .parameters = annuity_parameters::number_of_periods,
        .formula = "ln((pmt - fv * rate) / (pmt + pv * rate)) / ln(1 + rate)\n"
                   "with type 1 pmt is first multiplied by 1 + rate",
        .remarks =
            joined<money_signs,
                   "a loan received is a positive pv, repaid by a negative pmt. The answer is not rounded: a part of a "
                   "period is a normal answer. A rate of 0 is refused; there the number is -(pv + fv) / pmt.">,
        .failure = "no number of payments brings the loan to its end: pmt - fv * rate is 0, or pmt + pv * rate is 0 or "
                   "has the other sign, as where a payment does not cover the interest",
        .example = {"rate=0.005 pmt=-400 pv=20000", "57.6801359577751"}},
    Calculation{.name = "PMT",
                .answers = "Level payment that repays a loan, or saves up an amount",
                .parameters = annuity_parameters::payment,
                .result = ResultKind::amount,
                .formula = "-rate * (pv * (1 + rate)^nper + fv) / ((1 + rate)^nper - 1)\n"
                           "with type 1 divided by 1 + rate",
                .remarks = joined<money_signs,
                                  "a loan received is a positive pv, and its payment comes out negative. To save up an "
                                  "amount, give pv=0 and the amount as fv.">,
                .failure = growth_too_large,
                .example = {"rate=0.005 nper=360 pv=200000", "-1199.1010503055047"}},
    Calculation{.name = "PPMT",
                .answers = "Principal part of the level payment of one period",
                .parameters = annuity_parameters::payment_part,
                .result = ResultKind::amount,
                .formula = "PMT(rate, nper, pv, fv, type) - IPMT(rate, per, nper, pv, fv, type)",
                .remarks = joined<"Principal repaid is negative. ", parts_of_payment>,
                .failure = growth_too_large,
                .example = {"rate=0.005 per=13 nper=360 pv=200000", "-211.38116742827197"}},
    Calculation{
        .name = "PV",
        .answers = "Present value: what level payments and an amount at the end are worth today",
        .parameters = annuity_parameters::present_value,
        .result = ResultKind::amount,
        .formula = joined<"-fv * (1 + rate)^-nper + pmt * ((1 + rate)^-nper - 1) / rate\n", second_term_at_start>,
        .remarks = joined<money_signs,
                          "payments of pmt=-100 repay a positive loan. A rate of 0 is accepted but answers a missing "
                          "value, since the formula divides by it; there the present value is -fv - nper * pmt.">,
        .failure = "-nper * ln(1 + rate) is 709.78 or more (the rate is close to -1), so that the factor (1 + "
                   "rate)^-nper is too large",
        .example = {"rate=0.01 nper=12 pmt=-100", "1125.507747348463"}},
    Calculation{
        .name = "RATE",
        .answers = "Interest rate per period of a loan or savings plan with level payments",
        .parameters = annuity_parameters::rate_search,
        .result = ResultKind::rate,
        .formula = "the rate r at which pv + pmt * (1 - (1 + r)^-nper) / r + fv * (1 + r)^-nper is 0, by search\n"
                   "with type 1 the second term is multiplied by 1 + r\n"
                   "with pmt=0: (fv / pv)^(1 / nper) - 1",
        .remarks = "The answer is the rate of one period: for monthly payments multiply it by 12. With payments, money "
                   "paid is negative and money received positive: a loan received is a positive pv, repaid by a "
                   "negative pmt. Without payments (pmt=0) the rule is another: pv and fv must have the same sign. "
                   "There is no guess; the search starts at -pmt / pv.",
        .failure = "the search finds no rate: with payments, the amounts have signs that no rate balances, or it does "
                   "not settle within 100 steps; without, pv and fv are not both positive or both negative",
        .searches = true,
        .example = {"nper=60 pmt=-400 pv=20000", "0.00618341316125396"}},
};

inline constexpr Family annuity_family{.title = "Annuities and loans", .calculations = annuities};

}  // namespace finance::catalogue
