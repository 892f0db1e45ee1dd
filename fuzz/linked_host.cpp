#include "fuzz/linked_host.hpp"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <span>

#include "fuzz/input.hpp"
#include "host/memory_vector.hpp"
#include "host/toolkit.hpp"

namespace finance::fuzz {

namespace {

Told all_told;

// Formats the line, as a host does: a format that does not fit its arguments is found by the sanitizers.
void count_line(const char* format, ...) {
    std::array<char, 256> line;
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    must(length > 0 && static_cast<std::size_t>(length) < line.size(), "a log line has some characters, and not many");
    ++all_told.lines;
}

void count_note(std::int32_t message_set, std::int32_t message_number) {
    must(message_set == ZELKOVAN_MESSAGE_SET, "notes are of the module's own message set");
    ++all_told.notes;
    all_told.last_note = message_number;
}

void replace_service(host::EmbeddedHost& host, std::size_t vector, std::size_t slot, void* routine) {
    auto** vectors = static_cast<void**>(host.control_block()[ZELKOVAN_GCB_SERVICES]);
    static_cast<void**>(vectors[vector])[slot] = routine;
}

}  // namespace

host::EmbeddedHost& linked_host() {
    static host::EmbeddedHost& host = []() -> host::EmbeddedHost& {
        static host::EmbeddedHost made{mcn_main};
        replace_service(made, ZELKOVAN_SERVICE_LOG, reinterpret_cast<void*>(&count_line));
        replace_service(made, ZELKOVAN_SERVICE_NOTE, reinterpret_cast<void*>(&count_note));
        return made;
    }();
    return host;
}

const Told& told() { return all_told; }

Holdings holdings() {
    const host::MemoryVector& memory = linked_host().memory();
    const host::Toolkit& toolkit = linked_host().toolkit();
    return {memory.blocks(),  memory.bytes(),  memory.errors(), toolkit.pools(),
            toolkit.blocks(), toolkit.bytes(), toolkit.errors()};
}

}  // namespace finance::fuzz
