#include "adapters/duckdb/row_mask.hpp"

#include <algorithm>
#include <bit>
#include <cmath>

#include "adapters/common/kinds_of_values.hpp"

namespace finance::adapters::duckdb {

RowMask::RowMask(std::size_t rows) : words_((rows + word_bits - 1) / word_bits, ~0ULL), rows_{rows} {}

void RowMask::drop_nulls(duckdb_vector column) {
    const std::uint64_t* validity = duckdb_vector_get_validity(column);
    if (validity == nullptr) return;
    for (std::size_t i = 0; i < words_.size(); ++i) words_[i] &= validity[i];
}

void RowMask::drop_missing(std::span<const double> column) {
    if (!any_nan(column)) return;
    for (std::size_t row = 0; row < column.size(); ++row) {
        if (std::isnan(column[row])) drop(row);
    }
}

std::size_t RowMask::next(std::size_t row, std::uint64_t skipped) const {
    while (row < rows_) {
        const std::uint64_t left = (words_[row / word_bits] ^ skipped) >> (row % word_bits);
        if (left != 0) return std::min(rows_, row + static_cast<std::size_t>(std::countr_zero(left)));
        row = (row / word_bits + 1) * word_bits;
    }
    return rows_;
}

Run RowMask::next_run(std::size_t row) const {
    const std::size_t first = next(row, 0);
    return {first, next(first, ~0ULL)};
}

void RowMask::write_nulls(duckdb_vector result) const {
    std::uint64_t* validity = nullptr;
    for (std::size_t row = next(0, ~0ULL); row < rows_; row = next(row + 1, ~0ULL)) {
        if (validity == nullptr) {
            duckdb_vector_ensure_validity_writable(result);
            validity = duckdb_vector_get_validity(result);
        }
        duckdb_validity_set_row_invalid(validity, row);
    }
}

}  // namespace finance::adapters::duckdb
