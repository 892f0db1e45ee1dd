// Calculations of every shape, made up for tests of what the catalogue's users do with a shape.
#pragma once

#include <array>

#include "catalogue/catalogue.hpp"

namespace finance::test {

namespace sample_parameters {

using catalogue::Bound;
using catalogue::Kind;
using catalogue::Need;
using catalogue::Parameter;
using catalogue::Relation;
using catalogue::Width;

inline constexpr Parameter rate{
    .name = "rate", .kind = Kind::number, .meaning = "a rate", .lower = {Relation::above, 0.0}};
inline constexpr Parameter flows{.name = "flows", .kind = Kind::numbers, .meaning = "amounts"};
inline constexpr Parameter optional_flows{
    .name = "flows", .kind = Kind::numbers, .meaning = "amounts", .need = Need::optional, .default_text = "none"};
inline constexpr Parameter values{.name = "values", .kind = Kind::numbers, .meaning = "amounts"};
inline constexpr Parameter dates{.name = "dates", .kind = Kind::dates, .meaning = "their dates"};
inline constexpr Parameter settlement{.name = "settlement", .kind = Kind::date, .meaning = "a date"};
inline constexpr Parameter maturity{
    .name = "maturity", .kind = Kind::date, .meaning = "a later date", .orders = {{{Relation::above, "settlement"}}}};
inline constexpr Parameter frequency{
    .name = "frequency", .kind = Kind::whole, .meaning = "coupons a year", .lower = {Relation::at_least, 1.0}};
inline constexpr Parameter basis{
    .name = "basis", .kind = Kind::basis, .meaning = "day count", .need = Need::optional, .default_text = "30/360"};
inline constexpr Parameter refused_basis{.name = "basis",
                                         .kind = Kind::basis,
                                         .meaning = "day count",
                                         .need = Need::optional,
                                         .default_text = "30/360",
                                         .rule = "must not be ACT/360"};

// Settlement and maturity out of order are laid at the frequency's door.
inline constexpr Parameter any_maturity{.name = "maturity", .kind = Kind::date, .meaning = "a date"};
inline constexpr Parameter blamed_frequency{
    .name = "frequency",
    .kind = Kind::whole,
    .meaning = "coupons a year",
    .lower = {Relation::at_least, 1.0},
    .orders = {{{.relation = Relation::above, .other = "settlement", .subject = "maturity"}}}};
inline constexpr std::array blaming{settlement, any_maturity, blamed_frequency};

inline constexpr std::array one_more{
    Parameter{.name = "life", .kind = Kind::whole, .meaning = "years"},
    Parameter{.name = "period",
              .kind = Kind::whole,
              .meaning = "a year",
              .lower = {Relation::at_least, 1.0},
              .orders = {{{.relation = Relation::at_most, .other = "life", .plus = 1.0, .width = Width::bits_64}}}}};

inline constexpr std::array growth{rate, optional_flows};
inline constexpr std::array internal_rate{flows};
inline constexpr std::array two_rates{flows, Parameter{.name = "financeRate", .meaning = "a rate"},
                                      Parameter{.name = "reinvestRate", .meaning = "another"}};
inline constexpr std::array dated{rate, values, dates};
inline constexpr std::array dated_search{
    values, dates, Parameter{.name = "guess", .meaning = "a start", .need = Need::optional, .default_text = "0"}};
inline constexpr std::array bond{settlement, maturity, rate, frequency, basis};
inline constexpr std::array moments{
    Parameter{.name = "settlement", .kind = Kind::date_time, .meaning = "a date", .lower = {Relation::above, 0.0}},
    Parameter{.name = "maturity",
              .kind = Kind::date_time,
              .meaning = "a later date",
              .orders = {{{Relation::above, "settlement"}}}},
    refused_basis};
inline constexpr std::array periods{Parameter{.name = "life", .meaning = "years", .lower = {Relation::above, 0.0}},
                                    Parameter{.name = "start",
                                              .kind = Kind::whole,
                                              .meaning = "a period",
                                              .lower = {Relation::at_least, 0.0},
                                              .bound_width = Width::bits_32,
                                              .orders = {{{Relation::at_most, "life"}}}},
                                    Parameter{.name = "factor",
                                              .meaning = "a factor",
                                              .need = Need::optional,
                                              .default_text = "2",
                                              .lower = {Relation::above, 0.0},
                                              .rule = "must be written out where an argument follows"},
                                    Parameter{.name = "noSwitch",
                                              .kind = Kind::flag,
                                              .meaning = "0 or 1",
                                              .need = Need::optional,
                                              .default_text = "1",
                                              .lower = {Relation::at_least, 0.0},
                                              .upper = {Relation::at_most, 1.0}}};

}  // namespace sample_parameters

constexpr catalogue::Calculation sample(std::string_view name, std::span<const catalogue::Parameter> parameters) {
    return {.name = name,
            .answers = "Something",
            .parameters = parameters,
            .formula = "1",
            .failure = "there is no such rate",
            .example = {"1", "1"}};
}

inline constexpr auto one_list_after = sample("GROWTH", sample_parameters::growth);        // rate, flows...
inline constexpr auto one_list = sample("INTERNAL", sample_parameters::internal_rate);     // flows...
inline constexpr auto one_list_before = sample("TWORATES", sample_parameters::two_rates);  // flows..., two rates
inline constexpr auto two_lists_after = sample("DATED", sample_parameters::dated);         // rate, values..., dates...
inline constexpr auto two_lists_before =
    sample("SEARCH", sample_parameters::dated_search);                            // values..., dates..., guess
inline constexpr auto bond = sample("BOND", sample_parameters::bond);             // no list
inline constexpr auto moments = sample("MOMENTS", sample_parameters::moments);    // part days, odd basis rule
inline constexpr auto blaming = sample("BLAMING", sample_parameters::blaming);    // an order laid at a third one's door
inline constexpr auto one_more = sample("ONEMORE", sample_parameters::one_more);  // an order with a number added
inline constexpr auto periods = sample("PERIODS", sample_parameters::periods);    // two optional ones

}  // namespace finance::test
