// Which rows of a chunk are called: those in which no argument is missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "adapters/duckdb/duckdb_api.hpp"

namespace finance::adapters::duckdb {

struct Run {
    std::size_t first = 0;
    std::size_t last = 0;  // one past it
    [[nodiscard]] bool empty() const { return first == last; }
};

class RowMask {
public:
    // All of them.
    explicit RowMask(std::size_t rows);

    void drop(std::size_t row) { words_[row / word_bits] &= ~(1ULL << (row % word_bits)); }
    void drop_nulls(duckdb_vector column);
    void drop_missing(std::span<const double> column);  // NaN

    [[nodiscard]] std::size_t rows() const { return rows_; }
    // The first row left, from that one on; the number of rows where none is.
    [[nodiscard]] std::size_t next(std::size_t row) const { return next(row, 0); }
    // The next rows that stand together, from that one on; an empty run where none is left.
    [[nodiscard]] Run next_run(std::size_t row) const;

    // Makes NULL of every row of the result that has been dropped.
    void write_nulls(duckdb_vector result) const;

private:
    static constexpr std::size_t word_bits = 64;  // DuckDB's own

    // The first row from that one on whose bit is not that of `skipped`, all zeros or all ones.
    [[nodiscard]] std::size_t next(std::size_t row, std::uint64_t skipped) const;

    std::vector<std::uint64_t> words_;
    std::size_t rows_;
};

}  // namespace finance::adapters::duckdb
