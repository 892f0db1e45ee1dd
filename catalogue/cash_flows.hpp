// Present value and internal rate of return of lists of flows, periodic and dated.
#pragma once

#include "catalogue/rows.hpp"

namespace finance::catalogue {

namespace cash_flow_parameters {

inline constexpr std::string_view per_period = "fraction per period: 0.1 is 10 %";
inline constexpr std::string_view per_year = "fraction a year: 0.1 is 10 %";

inline constexpr Parameter flows =
    numbers("flows", "money", "one flow a period, the first today: money paid is negative, money received positive");
inline constexpr Parameter values =
    numbers("values", "money", "the flows: money paid is negative, money received positive");
inline constexpr Parameter dates =
    date("dates", "the days of the flows, as many as values and in their order; they need not ascend and may repeat",
         Kind::dates);

inline constexpr std::array internal_rate{flows};

inline constexpr std::array modified_rate{
    flows,
    number("financeRate", per_period, "rate at which the negative flows are financed; the last argument but one")
        .bounded(above_0),
    number("reinvestRate", per_period, "rate at which the other flows are invested again; the last argument")
        .bounded(above_0)};

inline constexpr std::array present_value_of_flows{
    number("rate", per_period, "discount rate of one period").bounded(above_0),
    flows
        .with(&Parameter::meaning,
              "one flow a period, the first at the end of the first period: money paid is negative, money received "
              "positive")
        .optional("none")};

inline constexpr std::array dated_rate{values, dates,
                                       number("guess", per_year, "rate from which the search starts")
                                           .optional("0")
                                           .with(&Parameter::rule, "must not be missing")};

inline constexpr std::array dated_present_value{
    number("rate", per_year, "annual discount rate; it may be 0 or negative"), values, dates};

}  // namespace cash_flow_parameters

inline constexpr std::array cash_flows{
    Calculation{
        .name = "IRR",
        .answers = "Internal rate of return of periodic flows",
        .parameters = cash_flow_parameters::internal_rate,
        .result = ResultKind::rate,
        .formula = "the rate r at which the sum of flow_k / (1 + r)^k for k = 0, 1, 2, ... is 0",
        .remarks = "Without a negative and a positive flow there is no rate. Where the flows change sign more than "
                   "once there may be several rates; one of 0 or above is looked for first, and the search may stop "
                   "where the flows are not worth 0: such an answer is told from one that solves. There is no guess. "
                   "Flows of 0 at either end "
                   "change nothing. A missing flow is refused, but the module marks no argument.",
        .failure = "the flows do not change sign, there are more than 32767 of them, or the search does not settle",
        .searches = true,
        .example = {"flows=-1000,300,400,500,200", "0.15322137877181552"}},
    Calculation{.name = "MIRR",
                .answers = "Modified internal rate of return: with one rate for financing and one for reinvesting",
                .parameters = cash_flow_parameters::modified_rate,
                .result = ResultKind::rate,
                .formula =
                    "(-P * (1 + reinvestRate)^m / (N * (1 + financeRate)))^(1 / (m - 1)) - 1\n"
                    "P: NPV of the flows of 0 and above at reinvestRate, N: NPV of the negative ones at financeRate,\n"
                    "each in its own period; m: number of flows",
                .remarks = "The two rates stand at the end, after the flows; reinvestRate is looked at first, then "
                           "financeRate, then the flows from the last to the first.",
                .failure = "there is no negative flow, or no positive one",
                .example = {"flows=-1000,300,400,500,200 financeRate=0.1 reinvestRate=0.05", "0.10912465946801975"}},
    Calculation{
        .name = "NPV",
        .answers = "Net present value of periodic flows",
        .parameters = cash_flow_parameters::present_value_of_flows,
        .result = ResultKind::amount,
        .formula = "sum of flow_k / (1 + rate)^k for k = 1, 2, 3, ...",
        .remarks = "The first flow is discounted by one period: add a flow of today to the answer instead of listing "
                   "it. A rate of 0 is refused, although the flows could simply be added up. Without flows the answer "
                   "is 0. Flows are read from the last to the first, so that of several faulty ones the last is named.",
        .failure = never_fails,
        .example = {"rate=0.1 flows=-1000,300,400,500,200", "105.05988786160907"}},
    Calculation{.name = "XIRR",
                .answers = "Internal rate of return, per year, of flows on any dates",
                .parameters = cash_flow_parameters::dated_rate,
                .result = ResultKind::rate,
                .formula = "the rate r at which the sum of value_i / (1 + r)^((date_i - date_1) / 365) is 0",
                .remarks = "All values come first, then as many dates, then the guess if there is one: an odd number "
                           "of arguments ends with a guess. The search starts at guess, then at -0.9, then at the rate "
                           "that joins the earliest and the latest flow alone. Where it finds no rate the call is not "
                           "refused: the answer is a missing value (.), and the host is sent a note.",
                .failure = "the search finds no rate from any of its starts, or all flows are 0 or fall on one day",
                .searches = true,
                .example = {"values=-1000,600,600 dates=2023-01-01,2024-01-01,2025-01-01", "0.13054099320394236"}},
    Calculation{
        .name = "XNPV",
        .answers = "Net present value of flows on any dates",
        .parameters = cash_flow_parameters::dated_present_value,
        .result = ResultKind::amount,
        .formula = "sum of value_i / (1 + rate)^((date_i - date_1) / 365)",
        .remarks = "All values come first, then as many dates. Flows are discounted to the first date given, which "
                   "need not be the earliest: a flow before it grows. The rate has no bounds; at -1 and below the "
                   "answer may be infinite or a missing value.",
        .failure = "values and dates do not pair up",
        .example = {"rate=0.1 values=-1000,600,600 dates=2023-01-01,2024-01-01,2025-01-01", "41.192848087385585"}},
};

inline constexpr Family cash_flow_family{.title = "Cash flows", .calculations = cash_flows};

}  // namespace finance::catalogue
