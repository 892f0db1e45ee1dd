#include "host/batch.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <exception>
#include <map>
#include <thread>
#include <vector>

#include "host/call_frame.hpp"
#include "host/services.hpp"

namespace finance::host {

namespace {

constexpr double missing_value = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);
constexpr std::size_t fewest_rows_a_thread = 1024;  // less is done before a thread has begun
constexpr std::size_t fewest_rows_side_by_side = 4;

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

// Slots and descriptors of a column of arguments, for some of its rows.
class ArgumentSlots {
public:
    const ArgSlot* lay_out(const Argument& constant) {
        slots_.assign(1, {});
        descriptors_.assign(1, {});
        lay_out(constant, slots_[0], descriptors_[0]);
        return slots_.data();
    }
    const ArgSlot* lay_out(const Column& column, std::size_t first, std::size_t rows) {
        slots_.assign(rows, {});
        descriptors_.assign(rows, {});
        for (std::size_t r = 0; r < rows; ++r) {
            lay_out(*static_cast<const Argument*>(column.at(first + r)), slots_[r], descriptors_[r]);
        }
        return slots_.data();
    }

private:
    static void lay_out(const Argument& argument, ArgSlot& slot, CharacterDescriptor& descriptor) {
        CallFrame::set_kind(slot, argument);
        if (argument.kind() != Argument::Kind::text) return;
        CallFrame::point_to(descriptor, argument.text());
        slot.value = &descriptor;
    }

    std::vector<ArgSlot> slots_{};
    std::vector<CharacterDescriptor> descriptors_{};
};

// Rows that are calls of their own, in this thread.
class SingleCalls {
public:
    explicit SingleCalls(const RowCalls& calls) : calls_{calls}, current_{calls.desk, said_} {
        for (const Column& column : calls.batch.columns) {
            has_lists_ = has_lists_ || column.kind() == Column::Kind::lists;
            arguments_.push_back(column.sample());
            if (column.varies()) moving_.push_back({&column, arguments_.size()});
        }
        if (!has_lists_) lay_out();
    }

    void make(std::size_t row) {
        if (has_lists_) {
            lay_out(row);
        } else {
            for (const Moving& column : moving_) move_to(column, row, frame_);
        }
        double result = missing_value;
        const std::uint32_t status = calls_.dispatcher(frame_.context(), &result);
        const bool answered = status == ZELKOVAN_STATUS_SUCCESS;
        calls_.batch.store(row, status, answered ? result : missing_value, answered ? -1 : frame_.take_first_flag());
        refused_ += answered ? 0U : 1U;
        frame_.forget_notes();
        said_.log.clear();
        said_.notes.clear();
    }

    [[nodiscard]] std::size_t refused() const { return refused_; }

private:
    void lay_out() { frame_.fill(calls_.batch.name, arguments_, calls_.note_mode, false); }
    // Lists have a length of their own in each row.
    void lay_out(std::size_t row) {
        arguments_.clear();
        for (const Column& column : calls_.batch.columns) column.append_to(arguments_, row);
        lay_out();
    }

    const RowCalls& calls_;
    CallFrame& frame_ = CallFrame::of_this_thread();
    std::vector<Argument> arguments_{};  // the record points to their numbers
    std::vector<Moving> moving_{};
    bool has_lists_ = false;
    Evaluation said_{};  // what the module logs and notes
    CurrentEvaluation current_;
    std::size_t refused_ = 0;
};

// The module's columns for rows that come one behind the other.
class PlainRows {
public:
    static constexpr std::size_t most_rows = 4096;  // at a time: what they read and write stays near
    static constexpr std::size_t rows_of_word = 64;

    explicit PlainRows(const RowCalls& calls) : calls_{calls} {
        for (const Column& column : calls.batch.columns) {
            columns_.push_back(column_of(column));
            if (!column.varies()) columns_.back().first = slots_[columns_.size() - 1].lay_out(column.sample());
        }
    }

    // Answers those of the rows that it can; bit r of the answer's words: row first + r.
    const std::array<std::uint64_t, most_rows / rows_of_word>& answer(std::size_t first, std::size_t rows) {
        const Batch& batch = calls_.batch;
        for (std::size_t i = 0; i < columns_.size(); ++i) set_first(i, first, rows);
        const ZelkovanColumns request{.name = batch.name.data(),
                                      .name_length = static_cast<std::int64_t>(batch.name.size()),
                                      .columns = columns_.data(),
                                      .column_count = static_cast<std::int64_t>(columns_.size()),
                                      .rows = static_cast<std::int64_t>(rows),
                                      .results = batch.results + first,
                                      .answered = answered_.data(),
                                      .instructions = batch.instructions,
                                      .reserved = 0};
        calls_.columns(&request);
        return answered_;
    }

private:
    static ZelkovanColumn column_of(const Column& column) {
        switch (column.kind()) {
            case Column::Kind::numbers:
                return {ZELKOVAN_COLUMN_NUMBERS, 0, nullptr, column.stride(), nullptr};
            case Column::Kind::lists:
                return {ZELKOVAN_COLUMN_LISTS, 0, column.at(0), column.stride(), nullptr};
            default:
                return {ZELKOVAN_COLUMN_SLOTS, 0, nullptr, column.varies() ? std::int64_t{sizeof(ArgSlot)} : 0,
                        nullptr};
        }
    }

    void set_first(std::size_t i, std::size_t first, std::size_t rows) {
        const Column& column = calls_.batch.columns[i];
        if (column.kind() == Column::Kind::numbers) columns_[i].first = column.at(first);
        if (column.kind() == Column::Kind::arguments) columns_[i].first = slots_[i].lay_out(column, first, rows);
        if (column.kind() == Column::Kind::lists) columns_[i].starts = column.starts() + first;
    }

    const RowCalls& calls_;
    std::vector<ZelkovanColumn> columns_{};
    std::map<std::size_t, ArgumentSlots> slots_{};
    std::array<std::uint64_t, most_rows / rows_of_word> answered_{};
};

std::uint64_t first_bits(std::size_t count) {
    return count < PlainRows::rows_of_word ? (std::uint64_t{1} << count) - 1 : ~std::uint64_t{0};
}

// Rows first to last - 1, in this thread.
std::size_t call_rows(const RowCalls& calls, std::size_t first, std::size_t last) {
    SingleCalls single{calls};
    if (calls.columns == nullptr || calls.batch.instructions == ZELKOVAN_INSTRUCTIONS_NONE ||
        last - first < fewest_rows_side_by_side) {
        for (; first < last; ++first) single.make(first);
        return single.refused();
    }
    PlainRows plain{calls};
    for (; first < last; first += PlainRows::most_rows) {
        const std::size_t rows = std::min(last - first, PlainRows::most_rows);
        const auto& answered = plain.answer(first, rows);
        calls.batch.store_answered(first, rows);
        for (std::size_t r = 0; r < rows; r += PlainRows::rows_of_word) {
            std::uint64_t left = ~answered[r / PlainRows::rows_of_word] & first_bits(rows - r);
            for (; left != 0; left &= left - 1) {
                single.make(first + r + static_cast<std::size_t>(std::countr_zero(left)));
            }
        }
    }
    return single.refused();
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
