//  (1) A list with a NULL or a NaN in it is missing, and so is the result.
//  (2) Two lists of one call must have equally many values.
//
// Rows of a group are gathered by DuckDB's own list(). Where a query sorts the rows of an aggregate function, f(x ORDER BY
// y), the C interface hands its update one state for a whole chunk and not one a row, without a sign that it does (seen in
// 1.4.4 and 1.5.6): an aggregate of ours would write into memory that is no state.
#include <algorithm>
#include <cmath>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/chunk_columns.hpp"
#include "adapters/duckdb/functions.hpp"
#include "calls/lists.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;

namespace {

// A column of lists: where each row's list stands among the values of all.
class ListColumn {
public:
    ListColumn(duckdb_vector vector, Type type)
        : entries_{static_cast<const duckdb_list_entry*>(duckdb_vector_get_data(vector))} {
        duckdb_vector child = duckdb_list_vector_get_child(vector);
        values_ = numbers_of(child, type, duckdb_list_vector_get_size(vector), days_);
        validity_ = duckdb_vector_get_validity(child);
    }

    [[nodiscard]] std::span<const double> list(std::size_t row) const {
        return values_.subspan(entries_[row].offset, entries_[row].length);
    }

    [[nodiscard]] bool complete(std::size_t row) const {
        for (std::size_t i = 0; i < entries_[row].length; ++i) {
            const std::size_t at = entries_[row].offset + i;
            const bool valid = validity_ == nullptr || (validity_[at / 64] >> (at % 64) & 1U) != 0;
            if (!valid || std::isnan(values_[at])) return false;
        }
        return true;
    }

private:
    const duckdb_list_entry* entries_;
    std::vector<double> days_{};
    std::span<const double> values_{};
    std::uint64_t* validity_ = nullptr;
};

// The columns of lists among all; null where a column is none.
class ListColumns {
public:
    explicit ListColumns(std::size_t columns) : of_parameter_(columns, nullptr) {}

    void read(std::size_t parameter, duckdb_vector vector, Type type) {
        of_parameter_[parameter] = &columns_.emplace_back(vector, type);
    }

    [[nodiscard]] bool complete(std::size_t row) const {
        return std::ranges::all_of(columns_, [&](const ListColumn& column) { return column.complete(row); });
    }

    void fill(std::vector<std::span<const double>>& lists, std::size_t row) const {
        for (std::size_t i = 0; i < lists.size(); ++i) {
            if (of_parameter_[i] != nullptr) lists[i] = of_parameter_[i]->list(row);
        }
    }

private:
    std::deque<ListColumn> columns_{};
    std::vector<const ListColumn*> of_parameter_;
};

std::optional<double> call_of_lists(const Calculation& calculation, std::span<const host::Argument> scalars,
                                    std::span<const std::span<const double>> lists) {
    const auto sizes = [&](std::size_t i) { return lists[i].size(); };
    if (const auto fault = calls::unpaired(calculation, lists.size(), sizes)) {
        throw calls::CallRefused{calls::named_pairing_words(calculation, *fault)};
    }
    return call(calculation, calls::unrolled(calculation, scalars, lists));
}

}  // namespace

void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result) {
    const Calculation& calculation = *signature.calculation;
    const std::size_t parameters = signature.types.size();
    ChunkColumns columns{chunk};
    ListColumns list_columns{parameters};
    for (std::size_t i = 0; i < parameters; ++i) {
        if (is_list(calculation.parameters[i].kind)) {
            list_columns.read(i, columns.pass_over(), signature.types[i]);
        } else {
            columns.read(signature.types[i]);
        }
    }
    RowMask& rows = columns.rows();
    Answers answers{calculation, result, rows.rows()};
    std::vector<host::Argument> scalars(parameters, host::Argument::absent());
    std::vector<std::span<const double>> lists(parameters);
    for (std::size_t row = rows.next(0); row < rows.rows(); row = rows.next(row + 1)) {
        if (!list_columns.complete(row)) {
            rows.drop(row);
            continue;
        }
        columns.fill(scalars, row);
        list_columns.fill(lists, row);
        answers.put(row, call_of_lists(calculation, scalars, lists), rows);
    }
    answers.finish(rows);
}

}  // namespace finance::adapters::duckdb
