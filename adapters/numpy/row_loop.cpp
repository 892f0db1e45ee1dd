#include <algorithm>
#include <array>
#include <cfenv>
#include <cmath>
#include <cstring>
#include <exception>
#include <utility>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "adapters/common/kinds_of_values.hpp"
#include "adapters/numpy/rows.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"

namespace finance::adapters::numpy {

namespace {

constexpr std::size_t rows_at_once = 2048;  // results and statuses of a block stay in the first-level cache

Outcome& outcome() {
    thread_local Outcome met;
    return met;
}

class Run {
public:
    Run(const Function& function, char* const* places, const std::ptrdiff_t* steps)
        : function_{function}, places_{places}, steps_{steps} {
        columns_.reserve(function.arguments);
    }

    void call(std::size_t rows) {
        for (std::size_t first = 0; first < rows; first += rows_at_once) {
            call_block(first, std::min(rows, first + rows_at_once));
        }
    }

    void fill(std::size_t first, std::size_t last, double value) {
        for (std::size_t row = first; row < last; ++row) put(row, value);
    }

private:
    [[nodiscard]] const double* at(std::size_t argument, std::size_t row) const {
        const char* place = places_[argument] + static_cast<std::ptrdiff_t>(row) * steps_[argument];
        return static_cast<const double*>(static_cast<const void*>(place));
    }

    void put(std::size_t row, double value) {
        char* place = places_[function_.arguments] + static_cast<std::ptrdiff_t>(row) * steps_[function_.arguments];
        *static_cast<double*>(static_cast<void*>(place)) = value;
    }

    [[nodiscard]] bool lacks_value(std::size_t row) const {
        for (std::size_t i = 0; i < function_.arguments; ++i) {
            if (std::isnan(*at(i, row))) return true;
        }
        return false;
    }

    // Values of rows that follow each other, as nearly all arrays have them.
    [[nodiscard]] bool is_dense(std::size_t place) const { return steps_[place] == sizeof(double); }

    [[nodiscard]] bool any_missing(std::size_t argument, std::size_t first, std::size_t last) const {
        if (is_dense(argument)) return any_nan({at(argument, first), last - first});
        unsigned missing = 0;
        for (std::size_t row = first; row < last; ++row) missing |= std::isnan(*at(argument, row)) ? 1U : 0U;
        return missing != 0;
    }

    [[nodiscard]] bool all_have_values(std::size_t first, std::size_t last) const {
        for (std::size_t i = 0; i < function_.arguments; ++i) {
            if (any_missing(i, first, steps_[i] == 0 ? first + 1 : last)) return false;
        }
        return true;
    }

    // Stretches of rows that have their values are called, the others filled. Until a value is missing, rows are calculated
    // before they are looked at: they come from memory once, and while others are calculated.
    void call_block(std::size_t first, std::size_t last) {
        const bool calculated = !missing_met_;
        const std::size_t refused_rows = calculated ? calculate(first, last) : 0;
        if (all_have_values(first, last)) {
            return answer(first, last, calculated ? refused_rows : calculate(first, last));
        }
        missing_met_ = true;
        while (first < last) {
            std::size_t end = first;
            while (end < last && !lacks_value(end)) ++end;
            if (end > first) answer(first, end, calculate(first, end));
            for (first = end; first < last && lacks_value(first); ++first) put(first, missing_answer);
        }
    }

    // How many rows were refused.
    std::size_t calculate(std::size_t first, std::size_t last) {
        columns_.clear();
        for (std::size_t i = 0; i < function_.arguments; ++i) {
            const double* value = at(i, first);
            columns_.push_back(steps_[i] == 0 ? host::Column{*value} : host::Column::numbers(value, steps_[i]));
        }
        return shared_host().evaluate_rows({.name = function_.calculation->name,
                                            .columns = columns_,
                                            .rows = last - first,
                                            .results = results_.data(),
                                            .statuses = statuses_.data()});
    }

    // What calculate has left for the same rows.
    void answer(std::size_t first, std::size_t last, std::size_t refused_rows) {
        const bool meant = calls::all_meant(*function_.calculation, columns_, last - first);
        // Most rows, at once.
        const bool plain = refused_rows == 0 && meant;
        if (plain && all_speak_for_themselves(*function_.calculation, {results_.data(), last - first})) {
            return put_all(first, last);
        }
        for (std::size_t row = first; row < last; ++row) {
            const double answer = results_[row - first];
            const bool made = statuses_[row - first] == ZELKOVAN_STATUS_SUCCESS && (meant || is_meant(row));
            const bool refused = !made || !holds(row, answer);
            outcome().refused += refused ? 1U : 0U;
            put(row, refused ? refused_answer : std::isnan(answer) ? missing_answer : answer);
        }
    }

    void put_all(std::size_t first, std::size_t last) {
        if (is_dense(function_.arguments)) {
            void* place = places_[function_.arguments] + first * sizeof(double);
            std::memcpy(place, results_.data(), (last - first) * sizeof(double));
            return;
        }
        for (std::size_t row = first; row < last; ++row) put(row, results_[row - first]);
    }

    void take_arguments(std::size_t row) {
        arguments_.clear();
        for (std::size_t i = 0; i < function_.arguments; ++i) arguments_.emplace_back(*at(i, row));
    }

    [[nodiscard]] bool is_meant(std::size_t row) {
        take_arguments(row);
        return calls::unmeant_argument(*function_.calculation, arguments_) == 0;
    }

    // Of an answered row.
    [[nodiscard]] bool holds(std::size_t row, double answer) {
        if (std::isnan(answer) || speaks_for_itself(*function_.calculation, answer)) return true;
        take_arguments(row);
        return calls::holds(shared_host(), *function_.calculation, arguments_, answer);
    }

    const Function& function_;
    char* const* places_;
    const std::ptrdiff_t* steps_;
    bool missing_met_ = false;
    std::vector<host::Column> columns_;
    std::vector<host::Argument> arguments_;  // of a row whose answer is looked at
    std::array<double, rows_at_once> results_;
    std::array<std::uint32_t, rows_at_once> statuses_;
};

}  // namespace

void call_run(const Function& function, char* const* places, std::size_t rows, const std::ptrdiff_t* steps) noexcept {
    try {
        Run run{function, places, steps};
        try {
            run.call(rows);
        } catch (const std::exception&) {  // of memory only: no argument is a text
            outcome().out_of_memory = true;
            run.fill(0, rows, missing_answer);
        }
    } catch (const std::exception&) {
        outcome().out_of_memory = true;
    }
    std::feclearexcept(FE_ALL_EXCEPT);
}

Outcome take_outcome() noexcept { return std::exchange(outcome(), Outcome{}); }

}  // namespace finance::adapters::numpy
