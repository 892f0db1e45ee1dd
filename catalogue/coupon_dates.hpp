// Year fractions, and the coupon period that holds a settlement date.
#pragma once

#include "catalogue/security_parameters.hpp"

namespace finance::catalogue {

namespace coupon_date_parameters {

using namespace security_parameters;

// Dates out of order are laid at the frequency's door, before the frequency itself is looked at.
inline constexpr Parameter frequency_of_ordered_dates =
    frequency.ordered({.relation = Relation::above, .other = "settlement", .subject = "maturity"});

inline constexpr std::array same_day_allowed{settlement, maturity, frequency, basis};
inline constexpr std::array later{settlement, later_maturity, frequency, basis};
inline constexpr std::array days_before_settlement{settlement, any_maturity, frequency_of_ordered_dates, basis};

inline constexpr std::array year_fraction{
    date("startDate", "first day of the span"),
    date("endDate", "last day of the span").ordered({Relation::at_least, "startDate"}), basis};

}  // namespace coupon_date_parameters

inline constexpr Sentence period_in_months = "\na period is 12 / frequency months";
inline constexpr Sentence month_ends =
    " A maturity at a month's end makes all coupon dates month ends; a day that a month does not have becomes its "
    "last. The basis is checked, but changes nothing. A maturity on or before settlement is refused and named.";

inline constexpr std::array coupon_dates{
    Calculation{.name = "COUPDAYBS",
                .answers = "Days from the coupon date before settlement to settlement",
                .parameters = coupon_date_parameters::days_before_settlement,
                .formula = "days from COUPPCD(settlement, maturity, frequency) to settlement, as the basis counts them",
                .remarks =
                    "The maturity must be after settlement; where it is not, frequency (argument 3) is the argument "
                    "that is named. A settlement on a coupon date answers 0. Coupon dates are counted back from "
                    "maturity by whole periods; a maturity at a month's end makes all of them month ends.",
                .failure = never_fails,
                .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2 basis=ACTUAL", "66"}},
    Calculation{.name = "COUPDAYS",
                .answers = "Days in the coupon period that holds settlement",
                .parameters = coupon_date_parameters::same_day_allowed,
                .formula = "360 / frequency under 30/360, ACT/360 and EU30/360; 365 / frequency under ACT/365;\n"
                           "under ACTUAL the days from the coupon date on or before settlement to the next one",
                .remarks = "Only ACTUAL looks at the coupon dates, which are counted back from maturity by whole "
                           "periods. A settlement on a coupon date lies in the period that starts on it. A settlement "
                           "equal to maturity is accepted, a later one is refused and maturity named.",
                .failure = never_fails,
                .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2 basis=ACTUAL", "181"}},
    Calculation{.name = "COUPDAYSNC",
                .answers = "Days from settlement to the next coupon date",
                .parameters = coupon_date_parameters::same_day_allowed,
                .formula = "days from settlement to the first coupon date after it, as the basis counts them",
                .remarks =
                    "A settlement on a coupon date counts the whole period that starts on it; a settlement equal to "
                    "maturity is accepted and counts the period beyond maturity. COUPDAYBS and COUPDAYSNC need not add "
                    "up to COUPDAYS: under ACT/360 and ACT/365 they count actual days, COUPDAYS a part of 360 or 365.",
                .failure = never_fails,
                .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2 basis=ACTUAL", "115"}},
    Calculation{
        .name = "COUPNCD",
        .answers = "Next coupon date after settlement",
        .parameters = coupon_date_parameters::later,
        .result = ResultKind::date,
        .formula =
            joined<"the first of the dates maturity, maturity less one period, less two periods, ... after settlement",
                   period_in_months>,
        .remarks = joined<"A settlement on a coupon date answers the following one.", month_ends>,
        .failure = never_fails,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2", "2025-05-15"}},
    Calculation{
        .name = "COUPNUM",
        .answers = "Number of coupons still to be paid",
        .parameters = coupon_date_parameters::same_day_allowed,
        .formula = "number of coupon dates after settlement, up to and including maturity",
        .remarks = "A coupon paid on the settlement day is not counted, so that a settlement equal to maturity answers "
                   "0; a later settlement is refused and maturity named. The basis is checked, but changes nothing.",
        .failure = never_fails,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2", "12"}},
    Calculation{
        .name = "COUPPCD",
        .answers = "Coupon date before settlement",
        .parameters = coupon_date_parameters::later,
        .result = ResultKind::date,
        .formula =
            joined<"the last of the dates maturity less one period, less two periods, ... on or before settlement",
                   period_in_months>,
        .remarks = joined<"A settlement on a coupon date answers that day.", month_ends>,
        .failure = never_fails,
        .example = {"settlement=2025-01-20 maturity=2030-11-15 frequency=2", "2024-11-15"}},
    Calculation{
        .name = "YEARFRAC",
        .answers = "Part of a year between two dates",
        .parameters = coupon_date_parameters::year_fraction,
        .formula = "days from startDate to endDate / days of a year\n"
                   "30/360, EU30/360: months of 30 days, a year of 360\n"
                   "ACT/360, ACT/365: actual days, a year of 360 or 365\n"
                   "ACTUAL: actual days, and the average length of all calendar years that the span touches",
        .remarks = "Equal dates answer 0 before the basis is looked at; a startDate after endDate is refused and "
                   "endDate named. Under 30/360 a start on the 31st counts as the 1st of the next month where the end "
                   "falls before the 30th, an end on the last day of February counts as the 30th, and an end on the "
                   "31st as the 31st; under EU30/360 every 31st counts as the 30th. Under ACTUAL a leap year has 366 "
                   "days, but counts 365 where it is the first of several years and the span starts after February, or "
                   "the last of them and the span ends before March.",
        .failure = "the dates lie so far off the calendar that the fraction comes out below 0",
        .example = {"startDate=2024-01-15 endDate=2024-07-31 basis=ACTUAL", "0.5409836065573771"}},
};

inline constexpr Family coupon_date_family{.title = "Coupon dates and year fractions", .calculations = coupon_dates};

}  // namespace finance::catalogue
