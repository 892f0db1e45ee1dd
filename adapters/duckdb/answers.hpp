// Where answers go: doubles into the result, dates through a buffer.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/row_mask.hpp"
#include "calls/answer.hpp"

namespace finance::adapters::duckdb {

class Answers {
public:
    Answers(const catalogue::Calculation& calculation, duckdb_vector result, std::size_t rows);

    // Room for a double each row.
    [[nodiscard]] std::span<double> values() { return values_; }
    // Puts one call's answer there, and drops its row where there is none.
    void put(std::size_t row, std::optional<double> answer, RowMask& rows);
    // The answers of the rows that are left are complete: writes dates, and what is missing.
    void finish(RowMask& rows);

private:
    const catalogue::Calculation& calculation_;
    duckdb_vector result_;
    std::vector<double> days_{};
    std::span<double> values_{};
};

}  // namespace finance::adapters::duckdb
