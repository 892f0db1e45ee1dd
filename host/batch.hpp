// One calculation over many rows: a column for each argument, a place for each row's answer.
//
//     const Column columns[] = {Column::numbers(rates), Argument{360}, Column::numbers(amounts)};
//     const auto refused = host.evaluate_rows({.name = "PMT", .columns = columns, .rows = n, .results = payments}, 2);
//
// Rows have the answers that EmbeddedHost::evaluate gives, bit for bit. Plain ones go through the module's entry for columns,
// several side by side; the others are calls of a record that is laid out once a thread, a row only moves its value
// pointers. What the module logs and notes is not kept.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "host/column.hpp"
#include "host/embedded_host.hpp"

namespace finance::host {

class ServiceDesk;  // host/services.hpp

struct Batch {
    std::string_view name{};
    std::span<const Column> columns{};  // the first argument after the name, the second, ...
    std::size_t rows = 0;
    double* results = nullptr;          // one a row; the missing value (a NaN) where there is no answer
    std::uint32_t* statuses = nullptr;  // one a row, or null: 0 answered, 120836 refused
    std::int32_t* flagged = nullptr;    // one a row, or null: as Evaluation::flagged
    std::uint32_t instructions = ZELKOVAN_INSTRUCTIONS_BEST;  // for plain rows, side by side

    // Where they are wanted.
    void store(std::size_t row, std::uint32_t status, double value, int flag) const {
        results[row] = value;
        if (statuses != nullptr) statuses[row] = status;
        if (flagged != nullptr) flagged[row] = flag;
    }
    // Of rows whose results are there already.
    void store_answered(std::size_t first, std::size_t count) const {
        if (statuses != nullptr) std::fill_n(statuses + first, count, ZELKOVAN_STATUS_SUCCESS);
        if (flagged != nullptr) std::fill_n(flagged + first, count, -1);
    }
};

// What EmbeddedHost::evaluate_rows does where records have no junk in them.
struct RowCalls {
    const Batch& batch;
    Dispatcher dispatcher;
    ColumnsEntry columns;  // null: every row is a call of its own
    ServiceDesk& desk;
    std::uint8_t note_mode;
};
std::size_t call_rows(const RowCalls& calls, unsigned threads);

}  // namespace finance::host
