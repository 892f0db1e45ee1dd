// Where answers go: doubles into the result, dates through a buffer.
#pragma once

#include <span>
#include <stdexcept>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/duckdb_api.hpp"
#include "adapters/duckdb/row_mask.hpp"

namespace finance::duckdb {

// A call without an answer: the sentence that the query ends with.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Answers {
public:
    Answers(const catalogue::Calculation& calculation, duckdb_vector result, std::size_t rows);

    // Room for a double each row.
    [[nodiscard]] std::span<double> values() { return values_; }
    // Puts one call's answer there, and drops its row where the answer is missing.
    void put(std::size_t row, const adapters::Answer& answer, RowMask& rows);
    // The answers of the rows that are left are complete: writes dates, and what is missing.
    void finish(RowMask& rows);

private:
    const catalogue::Calculation& calculation_;
    duckdb_vector result_;
    std::vector<double> days_{};
    std::span<double> values_{};
};

}  // namespace finance::duckdb
