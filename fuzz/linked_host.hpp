// The embedded host around the module's objects linked into the fuzzer, made once. Its log and note services count
// instead of keeping: a run of hours would fill memory with lines.
#pragma once

#include <cstdint>

#include "host/embedded_host.hpp"

namespace finance::fuzz {

// What the module told its host since the program began.
struct Told {
    std::uint64_t lines = 0;
    std::uint64_t notes = 0;
    std::int32_t last_note = 0;
};

host::EmbeddedHost& linked_host();
const Told& told();

// Blocks, pools and bytes outstanding, and errors at releases: the same before and after every call.
struct Holdings {
    std::int64_t blocks;
    std::int64_t bytes;
    std::uint64_t errors;
    std::int64_t pools;
    std::int64_t pool_blocks;
    std::int64_t pool_bytes;
    std::uint64_t pool_errors;
    friend bool operator==(const Holdings&, const Holdings&) = default;
};
Holdings holdings();

}  // namespace finance::fuzz
