#include <cmath>
#include <string>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/date_values.hpp"
#include "adapters/duckdb/functions.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;
using catalogue::ResultKind;

namespace {

std::string no_date_words(const Calculation& calculation, double answer) {
    return std::string{calculation.name} + ": the answer, day " + std::to_string(answer) +
           " since 1960-01-01, is no date of DuckDB's";
}

}  // namespace

void put_text(duckdb_vector column, std::size_t row, std::string_view text) {
    duckdb_vector_assign_string_element_len(column, row, text.data(), text.size());
}

Answers::Answers(const Signature& signature, duckdb_vector result, RowMask& rows, Way way)
    : calculation_{*signature.calculation},
      result_{result},
      rows_{rows},
      way_{way},
      given_{way == Way::reason ? rows : RowMask{0}} {
    if (calculation_.result == ResultKind::date || way == Way::reason) {
        buffer_.resize(rows.rows());
        values_ = buffer_;
    } else {
        values_ = {static_cast<double*>(duckdb_vector_get_data(result)), rows.rows()};
    }
}

void Answers::write_dates() {
    auto* dates = static_cast<std::int32_t*>(duckdb_vector_get_data(result_));
    for (std::size_t row = rows_.next(0); row < rows_.rows(); row = rows_.next(row + 1)) {
        const auto date = date_of_host_days(values_[row]);
        if (!date && way_ == Way::answer) throw calls::CallRefused{no_date_words(calculation_, values_[row])};
        if (!date) {
            rows_.drop(row);
        } else {
            dates[row] = *date;
        }
    }
}

// A row that is left has a value, unless that is no date.
void Answers::write_reasons(const std::function<std::string(std::size_t)>& why) {
    const bool dated = calculation_.result == ResultKind::date;
    std::size_t next_valued = rows_.next(0);
    for (std::size_t row = given_.next(0); row < given_.rows(); row = given_.next(row + 1)) {
        if (next_valued < row) next_valued = rows_.next(row);
        if (row != next_valued) {
            put_text(result_, row, why(row));
        } else if (dated && !date_of_host_days(values_[row])) {
            put_text(result_, row, no_date_words(calculation_, values_[row]));
        } else {
            given_.drop(row);
        }
    }
}

void Answers::finish(const std::function<std::string(std::size_t)>& why) {
    rows_.drop_missing(values_);
    if (way_ == Way::reason) {
        write_reasons(why);
        return given_.write_nulls(result_);
    }
    if (calculation_.result == ResultKind::date) write_dates();
    rows_.write_nulls(result_);
}

}  // namespace finance::adapters::duckdb
