// What types a function's arguments have. A calculation has a function for each number of arguments that it may be given,
// and for each way to write its dates and its basis:
//
//  (1) All dates of a call are DATE, or all are DOUBLE: days since 1960-01-01. Where a fraction of a day counts they may
//      all be TIMESTAMP too.
//  (2) A basis is VARCHAR (keyword or code) or DOUBLE (code).
//  (3) Everything else is DOUBLE, a list is DOUBLE[] or DATE[]. DuckDB itself makes DOUBLE of every other number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "adapters/duckdb/duckdb_api.hpp"
#include "catalogue/catalogue.hpp"

namespace finance::adapters::duckdb {

enum class Type : std::uint8_t { number, date, timestamp, text };  // of a value, or of each value of a list

struct Signature {
    const catalogue::Calculation* calculation = nullptr;
    std::vector<Type> types{};  // one for each parameter given
};

std::vector<Signature> signatures(const catalogue::Calculation& calculation);

Owned<duckdb_logical_type> logical_type(Type type);
Owned<duckdb_logical_type> list_type(Type type);
// DATE where the calculation answers a date, else DOUBLE.
Owned<duckdb_logical_type> result_type(const catalogue::Calculation& calculation);

}  // namespace finance::adapters::duckdb
