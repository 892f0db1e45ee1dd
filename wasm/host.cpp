#include "wasm/host.hpp"

#include <cstdarg>
#include <cstddef>

#include "abi/host_control.hpp"
#include "abi/host_services.hpp"
#include "host/byte_tables.hpp"
#include "host/service_work.hpp"
#include "wasm/memory.hpp"

void* v_global_gcb_anchor = nullptr;
void* v_global_pidb_anchor = nullptr;
std::uint64_t Exported_KXHandle = 0;

namespace finance::wasm {

Logged logged;

namespace {

std::uint64_t control_block[ZELKOVAN_GCB_TOOLKIT + 1];
const unsigned char* const translations[] = {nullptr,
                                             nullptr,
                                             host::identity.data(),
                                             host::identity.data(),
                                             host::to_upper.data(),
                                             host::to_lower.data(),
                                             host::identity.data()};
const unsigned char* const locale[ZELKOVAN_LOCALE_MODE_RECORD + 1] = {};

void* take(HostMemoryVector* /*vector*/, std::int64_t bytes, std::int64_t /*flags*/) {
    return allocate(static_cast<std::uint64_t>(bytes));  // of a negative number there is never so much
}
void* give_back(HostMemoryVector* /*vector*/, void* /*block*/, std::int64_t /*bytes*/, std::int64_t /*flags*/) {
    return nullptr;
}
HostMemoryVector memory[] = {reinterpret_cast<void*>(take), reinterpret_cast<void*>(give_back)};

template <typename T>
void set_word(GcbWord word, T* place) {
    control_block[static_cast<std::uint32_t>(word)] = reinterpret_cast<std::uintptr_t>(place);
}

void put(char c) {
    if (logged.length < sizeof logged.lines) logged.lines[logged.length++] = c;
}

}  // namespace

void set_up() {
    set_word(GcbWord::collating_table, host::to_upper.data());
    set_word(GcbWord::memory_vector, memory);
    set_word(GcbWord::locale, locale);
    set_word(GcbWord::translation_tables, translations);
    v_global_gcb_anchor = control_block;
}

}  // namespace finance::wasm

using namespace finance;

void xexit(std::int64_t /*code*/, std::int64_t /*detail*/) { __builtin_trap(); }

// The module's lines have words in them, %s, and nothing else.
void xpslog(const char* format, ...) {
    va_list words;
    va_start(words, format);
    for (const char* c = format; *c != '\0'; ++c) {
        if (c[0] == '%' && c[1] == 's') {
            for (const char* word = va_arg(words, const char*); *word != '\0'; ++word) wasm::put(*word);
            ++c;
        } else {
            wasm::put(*c);
        }
    }
    va_end(words);
    wasm::put('\n');
}

void xpmlog(std::int32_t /*message_set*/, std::int32_t message_number) { wasm::logged.note = message_number; }

void wzstrlo(char* text, std::int64_t length) { host::convert_case(text, length, host::Case::lower, false); }
void wzstrup(char* text, std::int64_t length) { host::convert_case(text, length, host::Case::upper, false); }

// In multibyte mode only, which is never on.
void wzsxcch(const char* source, std::int64_t length, char* destination, std::int64_t destination_length,
             std::int64_t /*one*/) {
    host::copy_text(source, length, destination, destination_length);
}
void wzsxrch(const char* source, std::int64_t length, char* destination, std::int64_t destination_length,
             std::int64_t /*one*/) {
    host::copy_text(source, length, destination, destination_length);
}
std::int32_t wzsxcmn(const char* a, std::int64_t a_length, const char* b, std::int64_t b_length,
                     std::int64_t /*options*/) {
    return host::compare_texts(host::to_upper.data(), a, a_length, b, b_length);
}

double zmdy(double month, double day, double year) { return host::date_value(month, day, year); }
