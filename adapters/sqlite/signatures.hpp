// How a calculation stands in SQL: one without lists is a scalar function, one with lists an aggregate, in which a list is
// one argument, a value a row.
#pragma once

#include <cstddef>
#include <string>

#include "catalogue/catalogue.hpp"

namespace finance::adapters::sqlite {

// Arguments that a call must have; a list is always given, since rows without any values make no call.
std::size_t fewest_arguments(const catalogue::Calculation& calculation);

// "fin_xirr(values, dates [, guess])"
std::string sql_usage(const catalogue::Calculation& calculation);
std::string sql_documentation(const catalogue::Calculation& calculation);

}  // namespace finance::adapters::sqlite
