// What JavaScript calls. It writes into the room (wasm/memory.hpp), tells where what it wrote begins, and reads the outcome;
// the records of a call are made here. // Where there is no memory, nothing is called: the answer says so.
#include <cstdint>
#include <new>

#include "abi/zelkovan.h"
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

constexpr double missing = __builtin_bit_cast(double, ZELKOVAN_MISSING_VALUE_BITS);

class Call {
public:
    // False where there is no memory.
    bool make(const Word* arguments, const std::uint8_t* kinds, std::uint32_t count) {
        context_ =
            static_cast<HostCallContext*>(allocate(sizeof(HostCallContext) + std::uint64_t{count} * sizeof(ArgSlot)));
        if (context_ == nullptr) return false;
        *context_ = {};
        context_->count = count;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!set(i, arguments[i], kinds[i])) return false;
        }
        return true;
    }

    [[nodiscard]] ArgSlot& slot(std::uint32_t i) const { return reinterpret_cast<ArgSlot*>(context_ + 1)[i]; }

    [[nodiscard]] std::int32_t flagged() const {
        for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(context_->count); ++i) {
            if ((slot(i).flags & ZELKOVAN_FLAG_INVALID) != 0) return static_cast<std::int32_t>(i);
        }
        return -1;
    }

    std::uint32_t evaluate(double& value) const {
        value = missing;
        return fncfin(context_, &value);
    }

private:
    bool set(std::uint32_t i, const Word& argument, std::uint8_t kind) {
        slot(i) = {};
        slot(i).type = kind == text || kind == absent_text ? ZELKOVAN_TYPE_CHARACTER : ZELKOVAN_TYPE_NUMERIC;
        if (kind == number) slot(i).value = const_cast<double*>(&argument.number);
        if (kind == column) slot(i).value = at(argument.span.place);
        if (kind != text) return true;
        auto* descriptor = static_cast<CharacterDescriptor*>(allocate(sizeof(CharacterDescriptor)));
        if (descriptor == nullptr) return false;
        *descriptor = {};
        descriptor->text = static_cast<char*>(at(argument.span.place));
        descriptor->length = argument.span.size;
        slot(i).value = descriptor;
        return true;
    }

    HostCallContext* context_ = nullptr;
};

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
    logged.length = 0;
    logged.note = 0;
    outcome = {.value = missing, .status = no_memory, .flagged = -1};
    const Workspace workspace;
    Call call;
    if (call.make(arguments, kinds, count)) {
        outcome.status = call.evaluate(outcome.value);
        outcome.flagged = call.flagged();
    }
    return outcome.status;
}

// The same calculation over rows: results of each, the missing value where there is none; answered: 1 or 0 of each.
// Gives how many are answered, or -1: no memory.
EXPORT("rows")
std::int32_t zelkovan_rows(const Word* arguments, const std::uint8_t* kinds, std::uint32_t count, std::uint32_t rows,
                           double* results, std::uint8_t* answered) {
    const Workspace workspace;
    Call call;
    if (!call.make(arguments, kinds, count)) return -1;
    std::int32_t number_answered = 0;
    for (std::uint32_t row = 0; row < rows; ++row) {
        const Workspace workspace_of_row;
        logged.length = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (kinds[i] == column) call.slot(i).value = at(arguments[i].span.place + row * arguments[i].span.size);
        }
        answered[row] = call.evaluate(results[row]) == ZELKOVAN_STATUS_SUCCESS ? 1 : 0;
        number_answered += answered[row];
    }
    return number_answered;
}
