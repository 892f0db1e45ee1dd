// What JavaScript calls. It writes into the room (wasm/memory.hpp), tells where what it wrote begins, and reads the outcome;
// the records of calls are made here. Where there is no memory, nothing is called: the answer says so.
#include <cstdint>

#include "abi/zelkovan.h"
#include "wasm/call_record.hpp"
#include "wasm/host.hpp"
#include "wasm/memory.hpp"
#include "wasm/words.hpp"

namespace finance::wasm {

namespace {

constexpr std::uint32_t no_memory = 1;  // instead of a status

struct Outcome {
    double value = 0.0;
    std::uint32_t status = 0;
    std::int32_t flagged = -1;  // the first argument marked as invalid, 0 the name; -1 none
};
Outcome outcome;

// Of a call that is made again and again, its numbers in the same places. It lasts as long as nothing is asked for that
// gives back what calls had.
CallRecord laid_out;

// False where there is no memory.
bool set(CallRecord& record, std::uint32_t i, const Word& word, std::uint8_t kind) {
    switch (kind) {
        case number:
            record.set_number(i, &word.number);
            return true;
        case text:
            return record.set_text(i, static_cast<const char*>(at(word.span.place)), word.span.size);
        case absent_text:
            record.set_absent_text(i);
            return true;
        default:  // columns have a number once there is a row
            record.set_absent(i);
            return true;
    }
}

// False where there is no memory.
bool set_all(CallRecord& record, const Word* words, const std::uint8_t* kinds, std::uint32_t count) {
    if (!record) return false;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!set(record, i, words[i], kinds[i])) return false;
    }
    return true;
}

}  // namespace

}  // namespace finance::wasm

using namespace finance::wasm;

// The linker's: what must run before a program. Where nobody calls it, it runs with every call from outside, and after each
// what ends a program.
extern "C" void __wasm_call_ctors();  // NOLINT(bugprone-reserved-identifier): the linker's name

// Before anything else.
EXPORT("begin") void zelkovan_begin() {
    __wasm_call_ctors();
    set_up();
}

// Where that many bytes may be written; 0: no memory. What was written before is lost where it did not fit.
EXPORT("room") void* zelkovan_room(std::uint32_t bytes) { return room(bytes); }

// {value, status, flagged argument}, of the call before; {bytes, last note, lines}.
EXPORT("outcome") const void* zelkovan_outcome() { return &outcome; }
EXPORT("log") const void* zelkovan_log() { return &logged; }

// The status of FINANCE, or 1: no memory.
EXPORT("call") std::uint32_t zelkovan_call(const Word* arguments, const std::uint8_t* kinds, std::uint32_t count) {
    forget_log();
    outcome = {.value = missing, .status = no_memory, .flagged = -1};
    const Workspace workspace;
    CallRecord record{count};
    if (set_all(record, arguments, kinds, count)) {
        outcome.status = record.evaluate(outcome.value);
        outcome.flagged = record.flagged();
    }
    return outcome.status;
}

// 1, or 0: no memory. Until the next one, the room or an explanation is asked for, `call_laid_out` makes that call, with the
// numbers that are in its words then.
EXPORT("lay_out") std::uint32_t zelkovan_lay_out(const Word* words, const std::uint8_t* kinds, std::uint32_t count) {
    give_back();
    laid_out = CallRecord{count};
    return set_all(laid_out, words, kinds, count) ? 1 : 0;
}

// Its status. Of the outcome only the value counts.
EXPORT("call_laid_out") std::uint32_t zelkovan_call_laid_out() {
    forget_log();
    const Workspace workspace;
    return laid_out.evaluate(outcome.value);
}

// The same calculation over rows: results of each, the missing value where there is none; answered: 1 or 0 of each.
// Gives how many are answered, or -1: no memory.
EXPORT("rows")
std::int32_t zelkovan_rows(const Word* arguments, const std::uint8_t* kinds, std::uint32_t count, std::uint32_t rows,
                           double* results, std::uint8_t* answered) {
    const Workspace workspace;
    CallRecord record{count};
    if (!set_all(record, arguments, kinds, count)) return -1;
    std::int32_t number_answered = 0;
    for (std::uint32_t row = 0; row < rows; ++row) {
        const Workspace workspace_of_row;
        forget_log();
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto [place, step] = arguments[i].span;
            if (kinds[i] == column) record.set_number(i, static_cast<const double*>(at(place + row * step)));
        }
        answered[row] = record.evaluate(results[row]) == ZELKOVAN_STATUS_SUCCESS ? 1 : 0;
        number_answered += answered[row];
    }
    return number_answered;
}
