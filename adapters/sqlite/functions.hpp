// How a calculation stands in SQL: one without lists is a scalar function, one with lists an aggregate, which is a window
// function too and in which a list is one argument, a value a row. Each is registered once for each number of arguments
// that it may have, so that a wrong number is SQLite's own error.
#pragma once

#include <cstddef>
#include <string>

#include "adapters/common/ways.hpp"
#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::sqlite {

// SQLITE_OK, or what SQLite says.
int register_scalar(sqlite3* database, const catalogue::Calculation& calculation, Way way);
int register_aggregate(sqlite3* database, const catalogue::Calculation& calculation, Way way);

// Arguments that a call must have; a list is always given, since rows without any values make no call.
std::size_t fewest_arguments(const catalogue::Calculation& calculation);

// "fin_xirr(values, dates [, guess])"
std::string sql_usage(const catalogue::Calculation& calculation);
std::string sql_documentation(const catalogue::Calculation& calculation);

}  // namespace finance::adapters::sqlite
