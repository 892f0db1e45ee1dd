// How the rows of a batch are called: by one thread, or by several, each a run of rows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/batch.hpp"
#include "host/services.hpp"

namespace finance::host {

struct RowCalls {
    const Batch& batch;
    Dispatcher dispatcher;
    ServiceDesk& desk;
    std::uint8_t note_mode;
};

// What a row's call came to, where the batch wants it; the value is the missing one where there is no answer.
inline void store(const Batch& batch, std::size_t row, std::uint32_t status, double value, int flagged) {
    batch.results[row] = value;
    if (batch.statuses != nullptr) batch.statuses[row] = status;
    if (batch.flagged != nullptr) batch.flagged[row] = flagged;
}

// Rows first to last - 1, in this thread. Gives how many were refused. std::length_error: a text of 4 GiB or more.
std::size_t call_rows(const RowCalls& calls, std::size_t first, std::size_t last);

// All rows, in no more than that many threads.
std::size_t call_rows(const RowCalls& calls, unsigned threads);

}  // namespace finance::host
