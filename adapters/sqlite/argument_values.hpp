// SQL values as arguments of a calculation.
//
//  (1) A number is an INTEGER, a REAL, or text that SQLite reads fully as a number.
//  (2) A date is as date_values.hpp has it; where whole days are wanted, a text with a time of day is refused.
//  (3) A basis is its keyword, or its code as a number or as text.
//  (4) Nothing is read from a blob.
#pragma once

#include <string>

#include "adapters/sqlite/sqlite_api.hpp"
#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::adapters::sqlite {

inline bool is_null(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; }

// False where the value, of that type and not null, cannot be read as that parameter. Texts stay SQLite's.
bool read_argument(const catalogue::Parameter& parameter, sqlite3_value* value, int type, host::Argument& argument);
inline bool read_argument(const catalogue::Parameter& parameter, sqlite3_value* value, host::Argument& argument) {
    return read_argument(parameter, value, sqlite3_value_type(value), argument);
}

// Why read_argument refused it: "PRICE: argument 4 (yield): 'abc' is not a number".
std::string unreadable(const catalogue::Calculation& calculation, std::size_t parameter, sqlite3_value* value);

}  // namespace finance::adapters::sqlite
