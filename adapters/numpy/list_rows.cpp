#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "adapters/common/kinds_of_values.hpp"
#include "adapters/numpy/rows.hpp"
#include "calls/lists.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"

namespace finance::adapters::numpy {

using catalogue::Calculation;
using catalogue::is_list;
using catalogue::Kind;

namespace {

struct Row {
    std::vector<host::Argument> scalars;
    std::vector<std::span<const double>> lists;
};

std::span<const double> stretch(const RowValues& list, std::size_t row) {
    return list.values.subspan(static_cast<std::size_t>(list.starts[row]), static_cast<std::size_t>(list.lengths[row]));
}

// False where a value is missing.
bool fill(Row& row, const Calculation& calculation, std::span<const RowValues> parameters, std::size_t number) {
    bool there = true;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (is_list(calculation.parameters[i].kind)) {
            row.lists[i] = stretch(parameters[i], number);
            there = there && std::ranges::none_of(row.lists[i], [](double x) { return std::isnan(x); });
        } else {
            row.scalars[i] = parameters[i].values[number];
            there = there && !std::isnan(parameters[i].values[number]);
        }
    }
    return there;
}

// ---- Rows as columns

constexpr std::size_t rows_at_once = 256;

// Some rows as columns of values and of lists, where they can be: each list begins where the one before ends, two of a row
// are equally long, and no value is missing or not meant.
class BlockColumns {
public:
    BlockColumns(const Calculation& calculation, std::span<const RowValues> parameters, std::size_t first,
                 std::size_t rows)
        : starts_(parameters.size()) {
        for (std::size_t i = 0; plain_ && i < parameters.size(); ++i) {
            const Kind kind = calculation.parameters[i].kind;
            const RowValues& of = parameters[i];
            const auto values =
                is_list(kind) ? values_of_lists(of, starts_[i], first, rows) : of.values.subspan(first, rows);
            plain_ = plain_ && !any_nan(values) && calls::all_meant(kind, values);
            columns_.push_back(is_list(kind) ? host::Column::lists(of.values.data(), starts_[i].data())
                                             : host::Column::numbers(values.data()));
        }
        for (std::size_t row = first; plain_ && row < first + rows; ++row) {
            const auto size = [&](std::size_t i) { return static_cast<std::size_t>(parameters[i].lengths[row]); };
            plain_ = !calls::unpaired(calculation, parameters.size(), size);
        }
    }

    [[nodiscard]] bool are_plain() const { return plain_; }
    [[nodiscard]] std::span<const host::Column> columns() const { return columns_; }

private:
    std::span<const double> values_of_lists(const RowValues& of, std::vector<std::int64_t>& starts, std::size_t first,
                                            std::size_t rows) {
        starts.assign(1, of.starts[first]);
        for (std::size_t row = first; row < first + rows; ++row) {
            plain_ = plain_ && of.starts[row] == starts.back();
            starts.push_back(of.starts[row] + of.lengths[row]);
        }
        if (!plain_) return {};
        return of.values.subspan(static_cast<std::size_t>(starts.front()),
                                 static_cast<std::size_t>(starts.back() - starts.front()));
    }

    std::vector<host::Column> columns_{};
    std::vector<std::vector<std::int64_t>> starts_;  // of each list
    bool plain_ = true;
};

bool stretches_fit(const RowValues& list, std::size_t rows) {
    if (list.starts.size() != rows || list.lengths.size() != rows) return false;
    const auto all = static_cast<std::int64_t>(list.values.size());
    for (std::size_t i = 0; i < rows; ++i) {
        const std::int64_t start = list.starts[i];
        const std::int64_t length = list.lengths[i];
        if (start < 0 || length < 0 || start > all || length > all - start) return false;
    }
    return true;
}

}  // namespace

bool fits(const Calculation& calculation, std::span<const RowValues> parameters, std::size_t rows) {
    if (parameters.size() > calculation.parameters.size()) return false;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const bool list = is_list(calculation.parameters[i].kind);
        if (list ? !stretches_fit(parameters[i], rows) : parameters[i].values.size() != rows) return false;
    }
    return true;
}

namespace {

class ListCalls {
public:
    ListCalls(const Calculation& calculation, std::span<const RowValues> parameters, std::span<double> results)
        : calculation_{calculation},
          parameters_{parameters},
          results_{results},
          row_{std::vector<host::Argument>(parameters.size(), host::Argument::absent()),
               std::vector<std::span<const double>>(parameters.size())} {}

    std::size_t call() {
        for (std::size_t first = 0; first < results_.size(); first += rows_at_once) {
            const std::size_t rows = std::min(rows_at_once, results_.size() - first);
            const BlockColumns block{calculation_, parameters_, first, rows};
            if (block.are_plain()) {
                call_columns(block.columns(), first, rows);
            } else {
                for (std::size_t row = first; row < first + rows; ++row) call_row(row);
            }
        }
        return refused_;
    }

private:
    void call_columns(std::span<const host::Column> columns, std::size_t first, std::size_t rows) {
        std::array<std::uint32_t, rows_at_once> statuses;
        (void)shared_host().evaluate_rows({.name = calculation_.name,
                                           .columns = columns,
                                           .rows = rows,
                                           .results = &results_[first],
                                           .statuses = statuses.data()});
        for (std::size_t row = first; row < first + rows; ++row) {
            const double answer = results_[row];
            const bool answered = statuses[row - first] == ZELKOVAN_STATUS_SUCCESS;
            put(row, answer, answered && (std::isnan(answer) || holds_in_row(row, answer)));
        }
    }

    bool holds_in_row(std::size_t row, double answer) {
        if (speaks_for_itself(calculation_, answer)) return true;
        (void)fill(row_, calculation_, parameters_, row);
        return calls::holds(shared_host(), calculation_, unrolled_row(), answer);
    }

    void call_row(std::size_t row) {
        if (!fill(row_, calculation_, parameters_, row)) {
            results_[row] = missing_answer;
            return;
        }
        if (calls::unpaired(calculation_, row_.lists.size(), [&](std::size_t k) { return row_.lists[k].size(); })) {
            return put(row, 0.0, false);
        }
        const auto arguments = unrolled_row();
        const host::Evaluation evaluation = calls::evaluate(shared_host(), calculation_, arguments);
        const double answer = evaluation.value;
        put(row, answer,
            evaluation.answered() &&
                (std::isnan(answer) || calls::holds(shared_host(), calculation_, arguments, answer)));
    }

    [[nodiscard]] std::vector<host::Argument> unrolled_row() const {
        return calls::unrolled(calculation_, row_.scalars, row_.lists);
    }

    void put(std::size_t row, double answer, bool held) {
        refused_ += held ? 0U : 1U;
        results_[row] = !held ? refused_answer : std::isnan(answer) ? missing_answer : answer;
    }

    const Calculation& calculation_;
    std::span<const RowValues> parameters_;
    std::span<double> results_;
    Row row_;
    std::size_t refused_ = 0;
};

}  // namespace

std::size_t call_lists(const Calculation& calculation, std::span<const RowValues> parameters,
                       std::span<double> results) {
    return ListCalls{calculation, parameters, results}.call();
}

}  // namespace finance::adapters::numpy
