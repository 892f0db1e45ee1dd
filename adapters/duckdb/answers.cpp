#include <cmath>
#include <string>

#include "adapters/duckdb/date_values.hpp"
#include "adapters/duckdb/functions.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;
using catalogue::ResultKind;

namespace {

std::int32_t date_of_answer(const Calculation& calculation, double answer) {
    if (const auto date = date_of_host_days(answer)) return *date;
    throw calls::CallRefused{std::string{calculation.name} + ": the answer, day " + std::to_string(answer) +
                             " since 1960-01-01, is no date of DuckDB's"};
}

}  // namespace

Answers::Answers(const Calculation& calculation, duckdb_vector result, std::size_t rows)
    : calculation_{calculation}, result_{result} {
    if (calculation.result == ResultKind::date) {
        days_.resize(rows);
        values_ = days_;
    } else {
        values_ = {static_cast<double*>(duckdb_vector_get_data(result)), rows};
    }
}

void Answers::finish(RowMask& rows) {
    if (!days_.empty()) {
        auto* dates = static_cast<std::int32_t*>(duckdb_vector_get_data(result_));
        for (std::size_t row = rows.next(0); row < rows.rows(); row = rows.next(row + 1)) {
            dates[row] = date_of_answer(calculation_, values_[row]);
        }
    }
    rows.write_nulls(result_);
}

}  // namespace finance::adapters::duckdb
