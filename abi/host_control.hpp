// What the module knows of its host: the anchors kept at load, and the words of the global control block that it reads.
// All but the toolkit handle are read anew at every use; the block and all it points to belong to the host.
#pragma once

#include <bit>
#include <cstdint>

// Written once by mcn_main, read everywhere afterwards.
extern "C" {
extern void* v_global_gcb_anchor;
extern void* v_global_pidb_anchor;
extern std::uint64_t Exported_KXHandle;
}

namespace finance {

// Words (64 bits each) of the global control block.
enum class GcbWord : std::uint32_t {
    service_vectors = 0,      // table of pointers to service vectors
    vector_marks = 1,         // a byte for each service vector
    collating_table = 6,      // 256 bytes
    memory_vector = 10,       // slot 0 allocates, slot 1 releases
    locale = 13,              // its word 3 points to the multibyte-mode record, or is null
    translation_tables = 27,  // entry 2 + m: 256 bytes for translation mode m
    toolkit = 82,
};

inline const std::uint64_t* gcb_word(GcbWord word) {
    return static_cast<const std::uint64_t*>(v_global_gcb_anchor) + static_cast<std::uint32_t>(word);
}

template <typename T>
T* gcb_pointer(GcbWord word) {
    return std::bit_cast<T*>(*gcb_word(word));
}

inline const unsigned char* collating_table() { return gcb_pointer<const unsigned char>(GcbWord::collating_table); }

inline const unsigned char* translation_table(std::uint32_t mode) {
    return gcb_pointer<const unsigned char* const>(GcbWord::translation_tables)[2 + mode];
}

// True where texts are double-byte, so that only the host can compare and translate them.
inline bool multibyte_mode() {
    constexpr int mode_record_word = 3;
    constexpr int active_byte = 72;
    const auto* locale = gcb_pointer<const unsigned char* const>(GcbWord::locale);
    const unsigned char* record = locale != nullptr ? locale[mode_record_word] : nullptr;
    return record != nullptr && record[active_byte] != 0;
}

// ---- Host memory

using HostMemoryVector = void*;  // the first word of a table of entry points
using HostAllocate = void* (*)(HostMemoryVector* vector, std::int64_t bytes, std::int64_t flags);
using HostRelease = void* (*)(HostMemoryVector* vector, void* block, std::int64_t bytes, std::int64_t flags);

inline constexpr std::int64_t host_memory_flags = 0x2006;

inline void* host_allocate(std::int64_t bytes) {
    auto* vector = gcb_pointer<HostMemoryVector>(GcbWord::memory_vector);
    return reinterpret_cast<HostAllocate>(vector[0])(vector, bytes, host_memory_flags);
}

inline void host_release(void* block, std::int64_t bytes) {
    auto* vector = gcb_pointer<HostMemoryVector>(GcbWord::memory_vector);
    reinterpret_cast<HostRelease>(vector[1])(vector, block, bytes, host_memory_flags);
}

}  // namespace finance
