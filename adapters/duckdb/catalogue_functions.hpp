// What the functions are, in SQL: the table fin_functions() and the text fin_help('price').
#pragma once

#include "adapters/duckdb/duckdb_api.hpp"

namespace finance::adapters::duckdb {

void register_catalogue(duckdb_connection connection);

}  // namespace finance::adapters::duckdb
