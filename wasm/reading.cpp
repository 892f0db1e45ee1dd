// What JavaScript calls to read a text as the command does (reading/): a value, or why there is none. The text is written
// into the room; kinds and forms of dates are counted as catalogue::Kind and reading::DateForm count them.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "reading/field_form.hpp"
#include "wasm/memory.hpp"
#include "wasm/program_memory.hpp"
#include "wasm/told.hpp"
#include "wasm/words.hpp"

namespace finance::wasm {

namespace {

using host::Argument;

enum class Status : std::uint32_t { value = 0, absent = 1, missing = 2, text = 3, unreadable = 4 };

// How it is written: the sum of these, and 8 times 1 + the form of dates, or 0: as in calls.
constexpr std::uint32_t loose = 1;
constexpr std::uint32_t decimal_comma = 2;
constexpr std::uint32_t usual_missing = 4;
constexpr std::uint32_t dates = 8;

struct Read {
    double value;
    Status status;
    std::uint32_t unused;
    Text reason;
    Text hint;
};
Read read;

reading::FieldForm form_of(std::uint32_t word) {
    reading::FieldForm form{.decimal_comma = (word & decimal_comma) != 0, .loose = (word & loose) != 0};
    if ((word & usual_missing) != 0) form.missing.assign(reading::usual_missing.begin(), reading::usual_missing.end());
    if (word >= dates) form.dates = static_cast<reading::DateForm>(word / dates - 1);
    return form;
}

Status status_of(const Argument& argument) {
    switch (argument.kind()) {
        case Argument::Kind::number:
            return std::isnan(argument.number()) ? Status::missing : Status::value;
        case Argument::Kind::text:
            return Status::text;
        default:
            return Status::absent;
    }
}

}  // namespace

}  // namespace finance::wasm

using namespace finance;
using namespace finance::wasm;

extern "C" void __wasm_call_ctors();  // NOLINT(bugprone-reserved-identifier): the linker's name

// Before anything else.
EXPORT("begin") void zelkovan_begin() { __wasm_call_ctors(); }

// Where that many bytes may be written; 0: no memory.
EXPORT("room") void* zelkovan_room(std::uint32_t bytes) { return room(bytes); }

// {value, status, -, {place, bytes} of reason and hint}, of the text that was read before, until the room is asked for again.
EXPORT("outcome") const void* zelkovan_outcome() { return &wasm::read; }

// 1, or 0: no memory. An empty text is absent in every form.
EXPORT("read")
std::uint32_t zelkovan_read(const char* place, std::uint32_t size, std::uint32_t kind, std::uint32_t form_word) {
    constexpr std::uint64_t copies = 4;  // of a text, each changed otherwise
    wasm::read = {.value = Argument::missing().number(), .status = Status::unreadable};
    begin_program_memory();
    if (!there_is_memory_for(1, copies * size)) return 0;
    const std::string_view text{place, size};
    const auto of = static_cast<catalogue::Kind>(kind);
    const reading::FieldForm form = form_of(form_word);
    if (const auto argument = text.empty() ? Argument::absent() : reading::read_meant(form, of, text)) {
        wasm::read.status = status_of(*argument);
        if (wasm::read.status == Status::value) wasm::read.value = argument->number();
        return 1;
    }
    const reading::Refusal refusal = reading::refusal_of(form, of, text);
    wasm::read.reason = kept(refusal.reason);
    wasm::read.hint = kept(refusal.hint);
    return 1;
}
