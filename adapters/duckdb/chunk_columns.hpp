// The columns of a chunk that a function is called with, as the embedded host reads them.
//
//  (1) A column of DOUBLE is read where it lies; dates become days in a buffer.
//  (2) A basis that is the same in the whole chunk is laid out once.
//  (3) A row with a NULL or a NaN anywhere is dropped: its result is NULL, and it is not called.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string_view>
#include <vector>

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/row_mask.hpp"
#include "adapters/duckdb/signature.hpp"
#include "host/batch.hpp"

namespace finance::adapters::duckdb {

// Lives as long as the string of the vector does, which may hold its characters itself.
std::string_view view(const duckdb_string_t& text);

// A vector's values, of number, date or timestamp, read in place or put into the buffer.
std::span<const double> numbers_of(duckdb_vector vector, Type type, std::size_t count, std::vector<double>& buffer);

class ChunkColumns {
public:
    explicit ChunkColumns(duckdb_data_chunk chunk) : chunk_{chunk}, rows_{duckdb_data_chunk_get_size(chunk)} {}

    // The next column, of no list.
    void read(Type type);
    // The next column is read by someone else: what stands here is not looked at.
    duckdb_vector pass_over();

    [[nodiscard]] RowMask& rows() { return rows_; }
    [[nodiscard]] std::span<const host::Column> columns() const { return columns_; }
    // From that row on.
    [[nodiscard]] std::vector<host::Column> columns_from(std::size_t row) const;
    // One row's; into a vector of as many arguments as there are columns.
    void fill(std::vector<host::Argument>& arguments, std::size_t row) const;

private:
    duckdb_vector next_vector() { return duckdb_data_chunk_get_vector(chunk_, columns_.size()); }
    host::Column texts_of(duckdb_vector vector);
    [[nodiscard]] std::size_t first_other(std::span<const duckdb_string_t> texts, std::size_t than) const;

    duckdb_data_chunk chunk_;
    RowMask rows_;
    std::vector<host::Column> columns_{};
    std::deque<std::vector<double>> days_{};           // of the columns that are no DOUBLE
    std::deque<std::vector<host::Argument>> bases_{};  // of the columns of different texts
};

}  // namespace finance::adapters::duckdb
