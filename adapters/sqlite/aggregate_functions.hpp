// An aggregate for each calculation with lists, which is a window function too: a list is an argument, a value a row.
#pragma once

#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::sqlite {

// SQLITE_OK, or what SQLite says.
int register_aggregate(sqlite3* database, const catalogue::Calculation& calculation);

}  // namespace finance::adapters::sqlite
