#include "host/batch.hpp"

#include <algorithm>
#include <bit>
#include <exception>
#include <thread>
#include <vector>

#include "host/call_frame.hpp"
#include "host/services.hpp"

namespace finance::host {

namespace {

constexpr double missing_value = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
constexpr std::size_t fewest_rows_a_thread = 1024;  // less is done before a thread has begun

// A column that varies, and where a row's value goes.
struct Moving {
    const Column* column;
    std::size_t slot;
};

void move_to(const Moving& moving, std::size_t row, CallFrame& frame) {
    const void* value = moving.column->at(row);
    if (moving.column->kind() == Column::Kind::numbers) {
        frame.slot(moving.slot).value = const_cast<void*>(value);  // modules never write there
    } else {
        frame.set_argument(moving.slot, *static_cast<const Argument*>(value));
    }
}

// Rows first to last - 1, in this thread.
std::size_t call_rows(const RowCalls& calls, std::size_t first, std::size_t last) {
    const Batch& batch = calls.batch;
    CallFrame& frame = CallFrame::of_this_thread();
    std::vector<Argument> samples;
    std::vector<Moving> moving;
    for (const Column& column : batch.columns) {
        samples.push_back(column.sample());
        if (column.varies()) moving.push_back({&column, samples.size()});
    }
    frame.fill(batch.name, samples, calls.note_mode, false);
    Evaluation said;  // what the module logs and notes
    const CurrentEvaluation current{calls.desk, said};
    std::size_t refused = 0;
    for (std::size_t row = first; row < last; ++row) {
        for (const Moving& column : moving) move_to(column, row, frame);
        double result = missing_value;
        const std::uint32_t status = calls.dispatcher(frame.context(), &result);
        const bool answered = status == ZELKOVAN_STATUS_SUCCESS;
        batch.store(row, status, answered ? result : missing_value, answered ? -1 : frame.take_first_flag());
        refused += answered ? 0U : 1U;
        frame.forget_notes();
        said.log.clear();
        said.notes.clear();
    }
    return refused;
}

}  // namespace

std::size_t call_rows(const RowCalls& calls, unsigned threads) {
    const std::size_t rows = calls.batch.rows;
    const std::size_t parts = std::clamp<std::size_t>(rows / fewest_rows_a_thread, 1, std::max(threads, 1U));
    if (parts == 1) return call_rows(calls, 0, rows);
    struct Part {
        std::size_t refused = 0;
        std::exception_ptr fault{};
    };
    std::vector<Part> done(parts);
    const auto run = [&](std::size_t part) {
        try {
            done[part].refused = call_rows(calls, rows * part / parts, rows * (part + 1) / parts);
        } catch (...) {
            done[part].fault = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> running;
        std::size_t begun = 1;
        try {
            for (; begun < parts; ++begun) running.emplace_back(run, begun);
        } catch (const std::exception&) {
            // no memory for one more thread, or too many already: this one does what is left
        }
        run(0);
        for (; begun < parts; ++begun) run(begun);
    }
    std::size_t refused = 0;
    for (const Part& part : done) {
        if (part.fault) std::rethrow_exception(part.fault);
        refused += part.refused;
    }
    return refused;
}

}  // namespace finance::host
