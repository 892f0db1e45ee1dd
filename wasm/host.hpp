// The host that the module has in WebAssembly: its control block, and the services under the names of their stubs.
//
//  (1) Names are compared case-blind, in single-byte mode: no locale, no toolkit.
//  (2) Workspace is the call's (wasm/memory.hpp). Nothing registers, so that nobody asks for the exit.
//  (3) Log lines end with a line feed each, as long as there is place for them; of notes the last one counts.
#pragma once

#include <cstdint>

namespace finance::wasm {

struct Logged {
    std::uint32_t length = 0;  // of `lines`
    std::int32_t note = 0;     // the number of a message, ZELKOVAN_MESSAGE_...; 0 none
    char lines[2040];
};
extern Logged logged;

// Before a call.
inline void forget_log() {
    logged.length = 0;
    logged.note = 0;
}

// Before the first call.
void set_up();

}  // namespace finance::wasm
