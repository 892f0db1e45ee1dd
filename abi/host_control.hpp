// What the module knows of its host: the anchors kept at load, and the words of the global control block that it reads.
// All but the toolkit handle are read anew at every use; the block and all it points to belong to the host.
#pragma once

#include <bit>
#include <cstdint>

#include "abi/zelkovan.h"

// Written once by mcn_main, read everywhere afterwards.
extern "C" {
extern void* v_global_gcb_anchor;
extern void* v_global_pidb_anchor;
extern std::uint64_t Exported_KXHandle;
}

namespace finance {

// Words of the global control block.
enum class GcbWord : std::uint32_t {
    service_vectors = ZELKOVAN_GCB_SERVICES,
    vector_marks = ZELKOVAN_GCB_MARKS,
    collating_table = ZELKOVAN_GCB_COLLATING,
    memory_vector = ZELKOVAN_GCB_MEMORY,
    locale = ZELKOVAN_GCB_LOCALE,
    translation_tables = ZELKOVAN_GCB_TRANSLATION,
    toolkit = ZELKOVAN_GCB_TOOLKIT,
};

inline const std::uint64_t* gcb_word(GcbWord word) {
    return static_cast<const std::uint64_t*>(v_global_gcb_anchor) + static_cast<std::uint32_t>(word);
}

template <typename T>
T* gcb_pointer(GcbWord word) {
    return std::bit_cast<T*>(static_cast<std::uintptr_t>(*gcb_word(word)));
}

inline const unsigned char* collating_table() { return gcb_pointer<const unsigned char>(GcbWord::collating_table); }

inline const unsigned char* translation_table(std::uint32_t mode) {
    return gcb_pointer<const unsigned char* const>(GcbWord::translation_tables)[ZELKOVAN_FIRST_TRANSLATION + mode];
}

// True where texts are double-byte, so that only the host can compare and translate them.
inline bool multibyte_mode() {
    const auto* locale = gcb_pointer<const unsigned char* const>(GcbWord::locale);
    const unsigned char* record = locale != nullptr ? locale[ZELKOVAN_LOCALE_MODE_RECORD] : nullptr;
    return record != nullptr && record[ZELKOVAN_MODE_RECORD_ACTIVE] != 0;
}

// ---- Host memory

using HostMemoryVector = void*;  // the first word of a table of entry points
using HostAllocate = void* (*)(HostMemoryVector* vector, std::int64_t bytes, std::int64_t flags);
using HostRelease = void* (*)(HostMemoryVector* vector, void* block, std::int64_t bytes, std::int64_t flags);

inline void* host_allocate(std::int64_t bytes) {
    auto* vector = gcb_pointer<HostMemoryVector>(GcbWord::memory_vector);
    return reinterpret_cast<HostAllocate>(vector[0])(vector, bytes, ZELKOVAN_MEMORY_FLAGS);
}

inline void host_release(void* block, std::int64_t bytes) {
    auto* vector = gcb_pointer<HostMemoryVector>(GcbWord::memory_vector);
    reinterpret_cast<HostRelease>(vector[1])(vector, block, bytes, ZELKOVAN_MEMORY_FLAGS);
}

}  // namespace finance
