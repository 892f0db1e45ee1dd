// What the extension registers, and where answers go.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/common/ways.hpp"
#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/row_mask.hpp"
#include "adapters/duckdb/signature.hpp"
#include "calls/answer.hpp"

namespace finance::adapters::duckdb {

// ---- What the extension registers: the calculations, the table fin_functions() and the text fin_help('price')

// Answers a chunk. In the way of an answer it throws with the sentence of the first row that is refused.
//  rows   of calculations without lists: one batch of the embedded host, its columns read in place
//  lists  a call a row: fin_irr([-1000, 300, 900]), fin_irr(list(flow ORDER BY day))
void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result, Way way);
void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result, Way way);

// The calculation's function in one way, with all its signatures.
void register_scalar(duckdb_connection connection, const catalogue::Calculation& calculation, Way way);
void register_catalogue(duckdb_connection connection);

void put_text(duckdb_vector column, std::size_t row, std::string_view text);

// ---- Where answers go: doubles into the result, dates and what only has reasons through a buffer

class Answers {
public:
    // rows: those in which no argument is missing. They lose those that have no value as it shows.
    Answers(const Signature& signature, duckdb_vector result, RowMask& rows, Way way);

    // Room for a double each row.
    [[nodiscard]] std::span<double> values() { return values_; }
    // The values of the rows that are left are complete, a NaN where there is none: writes dates, reasons, and what is
    // missing. why: the sentence of a row without a value.
    void finish(const std::function<std::string(std::size_t)>& why);

private:
    void write_dates();
    void write_reasons(const std::function<std::string(std::size_t)>& why);

    const catalogue::Calculation& calculation_;
    duckdb_vector result_;
    RowMask& rows_;
    Way way_;
    RowMask given_;  // the rows as they were
    std::vector<double> buffer_{};
    std::span<double> values_{};
};

}  // namespace finance::adapters::duckdb
