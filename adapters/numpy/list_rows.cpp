#include <algorithm>
#include <cmath>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/rows.hpp"
#include "calls/lists.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"

namespace finance::adapters::numpy {

using catalogue::Calculation;
using catalogue::is_list;

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

std::size_t call_lists(const Calculation& calculation, std::span<const RowValues> parameters,
                       std::span<double> results) {
    Row row{std::vector<host::Argument>(parameters.size(), host::Argument::absent()),
            std::vector<std::span<const double>>(parameters.size())};
    std::size_t refused = 0;
    for (std::size_t i = 0; i < results.size(); ++i) {
        if (!fill(row, calculation, parameters, i)) {
            results[i] = missing_answer;
            continue;
        }
        results[i] = refused_answer;
        if (!calls::unpaired(calculation, row.lists.size(), [&](std::size_t k) { return row.lists[k].size(); })) {
            const auto arguments = calls::unrolled(calculation, row.scalars, row.lists);
            const host::Evaluation evaluation = calls::evaluate(shared_host(), calculation, arguments);
            const bool held =
                evaluation.answered() &&
                (std::isnan(evaluation.value) || calls::holds(shared_host(), calculation, arguments, evaluation.value));
            if (held) results[i] = std::isnan(evaluation.value) ? missing_answer : evaluation.value;
            refused += held ? 0U : 1U;
        } else {
            ++refused;
        }
    }
    return refused;
}

}  // namespace finance::adapters::numpy
