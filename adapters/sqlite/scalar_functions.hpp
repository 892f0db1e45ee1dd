// A scalar function for each calculation without lists, once for each number of arguments that it may have, so that a wrong
// number is SQLite's own error.
#pragma once

#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::sqlite {

// SQLITE_OK, or what SQLite says.
int register_scalar(sqlite3* database, const catalogue::Calculation& calculation);

}  // namespace finance::adapters::sqlite
