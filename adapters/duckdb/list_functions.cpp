//  (1) A list with a NULL or a NaN in it is missing, and so is the result.
//  (2) Two lists of one call must have equally many values.
//  (3) Rows are called together where each list begins at the end of the one before, as DuckDB mostly lays them. Those
//      that are refused are called again one by one, for the sentence of the first, where that ends the query.
//
// Rows of a group are gathered by DuckDB's own list(). Where a query sorts the rows of an aggregate function, f(x ORDER BY
// y), the C interface hands its update one state for a whole chunk and not one a row, without a sign that it does (seen in
// 1.4.4 and 1.5.6): an aggregate of ours would write into memory that is no state.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/chunk_columns.hpp"
#include "adapters/duckdb/functions.hpp"
#include "calls/lists.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"

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

    // Where the lists of a run begin, and the last one ends. Nothing where they do not lie one after the other.
    [[nodiscard]] std::vector<std::int64_t> starts(Run run) const {
        std::vector<std::int64_t> starts;
        std::uint64_t end = std::min<std::uint64_t>(entries_[run.first].offset, values_.size());
        for (std::size_t row = run.first; row < run.last; ++row) {
            if (entries_[row].offset != end || entries_[row].length > values_.size() - end) return {};
            starts.push_back(static_cast<std::int64_t>(end));
            end += entries_[row].length;
        }
        starts.push_back(static_cast<std::int64_t>(end));
        return starts;
    }

    // Of all rows.
    [[nodiscard]] std::span<const double> values() const { return values_; }

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

    // Null for a parameter that is no list.
    [[nodiscard]] const ListColumn* of(std::size_t parameter) const { return of_parameter_[parameter]; }

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

// The call of one row.
class RowCall {
public:
    RowCall(const Calculation& calculation, const ChunkColumns& columns, const ListColumns& list_columns,
            std::size_t parameters)
        : calculation_{calculation},
          columns_{columns},
          list_columns_{list_columns},
          scalars_(parameters, host::Argument::absent()),
          lists_(parameters) {}

    std::optional<double> answer(std::size_t row, Way way) {
        take(row);
        const auto fault = unpaired();
        if (fault && way == Way::answer) throw calls::CallRefused{calls::named_pairing_words(calculation_, *fault)};
        return fault ? std::nullopt : call(calculation_, calls::unrolled(calculation_, scalars_, lists_), way);
    }

    std::string why(std::size_t row) {
        take(row);
        if (const auto fault = unpaired()) return calls::named_pairing_words(calculation_, *fault);
        return why_no_value(calculation_, calls::unrolled(calculation_, scalars_, lists_));
    }

    bool holds(std::size_t row, double answer) {
        if (speaks_for_itself(calculation_, answer)) return true;
        take(row);
        return calls::holds(shared_host(), calculation_, calls::unrolled(calculation_, scalars_, lists_), answer);
    }

    [[nodiscard]] bool is_paired(std::size_t row) {
        take(row);
        return !unpaired();
    }

private:
    [[nodiscard]] std::optional<calls::Unpaired> unpaired() const {
        return calls::unpaired(calculation_, lists_.size(), [&](std::size_t i) { return lists_[i].size(); });
    }

    void take(std::size_t row) {
        columns_.fill(scalars_, row);
        list_columns_.fill(lists_, row);
    }

    const Calculation& calculation_;
    const ChunkColumns& columns_;
    const ListColumns& list_columns_;
    std::vector<host::Argument> scalars_;
    std::vector<std::span<const double>> lists_;
};

// Lists beside the scalars of a run; their starts live elsewhere. False where they cannot stand so, or a value is not meant.
bool add_lists(const Calculation& calculation, const ListColumns& list_columns, Run run,
               std::vector<host::Column>& columns, std::deque<std::vector<std::int64_t>>& starts) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const ListColumn* lists = list_columns.of(i);
        if (lists == nullptr) continue;
        const auto& of_run = starts.emplace_back(lists->starts(run));
        if (of_run.empty()) return false;
        const auto values = lists->values().subspan(static_cast<std::size_t>(of_run.front()),
                                                    static_cast<std::size_t>(of_run.back() - of_run.front()));
        if (!calls::all_meant(calculation.parameters[i].kind, values)) return false;
        columns[i] = host::Column::lists(lists->values().data(), of_run.data());
    }
    return true;
}

// The rows of one run in one batch; what is refused, missing or does not hold is a NaN. False where they have to be
// called one by one.
bool answer_together(const Calculation& calculation, const ChunkColumns& chunk, const ListColumns& list_columns,
                     Run run, RowCall& row_call, std::span<double> answers, Way way) {
    std::vector<host::Column> columns = chunk.columns_from(run.first);
    std::deque<std::vector<std::int64_t>> starts;
    const std::size_t rows = run.last - run.first;
    if (!calls::all_meant(calculation, columns, rows)) return false;
    if (!add_lists(calculation, list_columns, run, columns, starts)) return false;
    for (std::size_t row = run.first; row < run.last; ++row) {
        if (!row_call.is_paired(row)) return false;
    }
    std::vector<std::uint32_t> statuses(rows);
    const host::Batch batch{.name = calculation.name,
                            .columns = columns,
                            .rows = rows,
                            .results = &answers[run.first],
                            .statuses = statuses.data()};
    const bool refused = shared_host().evaluate_rows(batch) > 0 && way == Way::answer;
    for (std::size_t i = 0; refused && i < rows; ++i) {
        if (statuses[i] != ZELKOVAN_STATUS_SUCCESS) (void)row_call.answer(run.first + i, way);
    }
    for (std::size_t row = run.first; row < run.last; ++row) {
        if (!std::isnan(answers[row]) && !row_call.holds(row, answers[row])) answers[row] = std::nan("");
    }
    return true;
}

}  // namespace

void answer_lists(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result, Way way) {
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
    for (std::size_t row = rows.next(0); row < rows.rows(); row = rows.next(row + 1)) {
        if (!list_columns.complete(row)) rows.drop(row);
    }
    Answers answers{signature, result, rows, way};
    RowCall row_call{calculation, columns, list_columns, parameters};
    for (Run run = rows.next_run(0); !run.empty(); run = rows.next_run(run.last)) {
        if (answer_together(calculation, columns, list_columns, run, row_call, answers.values(), way)) continue;
        for (std::size_t row = run.first; row < run.last; ++row) {
            answers.values()[row] = row_call.answer(row, way).value_or(std::nan(""));
        }
    }
    answers.finish([&](std::size_t row) { return row_call.why(row); });
}

}  // namespace finance::adapters::duckdb
