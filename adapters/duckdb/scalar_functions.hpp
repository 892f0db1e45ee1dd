// The calculations without lists: a chunk is one batch of the embedded host, its columns read in place.
#pragma once

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/signature.hpp"

namespace finance::adapters::duckdb {

// How one chunk is answered, row by row or at once. Throws with the sentence of the first row that is refused.
using AnswerChunk = void (*)(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);

void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);

// The calculation's function with all its signatures.
void register_scalar(duckdb_connection connection, const catalogue::Calculation& calculation);

}  // namespace finance::adapters::duckdb
