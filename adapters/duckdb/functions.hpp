// What the extension registers, and where answers go.
#pragma once

#include <span>
#include <vector>

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/row_mask.hpp"
#include "adapters/duckdb/signature.hpp"
#include "calls/answer.hpp"

namespace finance::adapters::duckdb {

// ---- What the extension registers: the calculations, the table fin_functions() and the text fin_help('price')

// Answers a chunk. Throws with the sentence of the first row that is refused.
//  rows   of calculations without lists: one batch of the embedded host, its columns read in place
//  lists  a call a row: fin_irr([-1000, 300, 900]), fin_irr(list(flow ORDER BY day))
void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);
void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);

// The calculation's function with all its signatures.
void register_scalar(duckdb_connection connection, const catalogue::Calculation& calculation);
void register_catalogue(duckdb_connection connection);

// ---- Where answers go: doubles into the result, dates through a buffer

class Answers {
public:
    Answers(const catalogue::Calculation& calculation, duckdb_vector result, std::size_t rows);

    // Room for a double each row.
    [[nodiscard]] std::span<double> values() { return values_; }
    // The answers of the rows that are left are complete: writes dates, and what is missing.
    void finish(RowMask& rows);

private:
    const catalogue::Calculation& calculation_;
    duckdb_vector result_;
    std::vector<double> days_{};
    std::span<double> values_{};
};

}  // namespace finance::adapters::duckdb
