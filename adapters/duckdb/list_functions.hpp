// The calculations of lists, a call a row: fin_irr([-1000, 300, 900]), fin_irr(list(flow ORDER BY day)).
//
//  (1) A list with a NULL or a NaN in it is missing, and so is the result.
//  (2) Two lists of one call must have equally many values.
//
// Rows of a group are gathered by DuckDB's own list(). Where a query sorts the rows of an aggregate function, f(x ORDER BY
// y), the C interface hands its update one state for a whole chunk and not one a row, without a sign that it does (seen in
// 1.4.4 and 1.5.6): an aggregate of ours would write into memory that is no state.
#pragma once

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/signature.hpp"

namespace finance::adapters::duckdb {

void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);

}  // namespace finance::adapters::duckdb
