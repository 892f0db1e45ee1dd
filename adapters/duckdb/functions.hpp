// What the extension registers: the calculations, the table fin_functions() and the text fin_help('price').
#pragma once

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/signature.hpp"

namespace finance::adapters::duckdb {

// Answers a chunk. Throws with the sentence of the first row that is refused.
//  rows   of calculations without lists: one batch of the embedded host, its columns read in place
//  lists  a call a row: fin_irr([-1000, 300, 900]), fin_irr(list(flow ORDER BY day))
void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);
void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);

// The calculation's function with all its signatures.
void register_scalar(duckdb_connection connection, const catalogue::Calculation& calculation);
void register_catalogue(duckdb_connection connection);

}  // namespace finance::adapters::duckdb
