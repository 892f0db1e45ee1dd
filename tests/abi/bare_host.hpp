// The least that the module can live with: a control block of the test's own, every service of which only writes down
// how it was reached. Its numbers are its own, so that those of abi/zelkovan.h are checked against another list.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/abi/registers.hpp"

namespace finance::test {

using ByteTable = std::array<unsigned char, 256>;

ByteTable plain_table();    // every byte is itself
ByteTable folding_table();  // a to z are A to Z

constexpr std::uint64_t service_identifier(std::uint32_t vector, std::uint32_t slot) {
    return std::uint64_t{vector} << 32 | slot;
}

inline constexpr std::uint64_t service_exit = service_identifier(39, 4);
inline constexpr std::uint64_t service_note = service_identifier(39, 70);
inline constexpr std::uint64_t service_log = service_identifier(39, 89);
inline constexpr std::uint64_t service_lower = service_identifier(0, 330);
inline constexpr std::uint64_t service_upper = service_identifier(0, 331);
inline constexpr std::uint64_t service_translate_0 = service_identifier(4, 7);
inline constexpr std::uint64_t service_translate_1 = service_identifier(4, 39);
inline constexpr std::uint64_t service_compare = service_identifier(4, 65);
inline constexpr std::uint64_t service_date = service_identifier(164, 11);

struct MemoryRequest {
    void* vector;
    void* block;  // null at a request for memory
    std::int64_t bytes;
    std::int64_t flags;
    friend bool operator==(const MemoryRequest&, const MemoryRequest&) = default;
};

// Takes the place of whatever control block the module knows, and gives it back in the end. One at a time.
//
// The case services convert ASCII letters, upper case also '~' to a blank; the log service keeps lines; all others answer with `answer`.
class BareHost {
public:
    static constexpr unsigned char untouched_mark = 0xFF;
    static constexpr unsigned char fresh_byte = 0xC3;  // in a block just handed out
    static constexpr std::uint64_t junk_word = 0xA5A5A5A5A5A5A5A5;

    BareHost();
    ~BareHost();
    BareHost(const BareHost&) = delete;
    BareHost& operator=(const BareHost&) = delete;

    static BareHost* current();
    std::uint64_t serve(const Registers& registers);

    void set_multibyte(bool on) { multibyte_record[72] = on ? 1 : 0; }

    // Marks that are no longer untouched_mark, as vector numbers.
    [[nodiscard]] std::vector<int> marked_vectors() const;

    std::array<std::uint64_t, 128> words;
    std::array<unsigned char, 256> marks;
    ByteTable collating;
    std::array<ByteTable, 5> translations;  // mode m maps a byte to its own value plus m + 1
    std::array<std::uint64_t, 8> locale;
    std::array<unsigned char, 96> multibyte_record;

    std::uint64_t answer = 0;
    std::vector<Registers> calls;         // of services, in order
    std::vector<std::uint32_t> modes;     // MXCSR at each of them
    std::vector<std::string> log;         // lines, in order
    std::vector<MemoryRequest> requests;  // for memory, in order
    bool memory_is_out = false;

private:
    static void* allocate(void** vector, std::int64_t bytes, std::int64_t flags);
    static void* release(void** vector, void* block, std::int64_t bytes, std::int64_t flags);

    std::array<void*, 512> slots_;
    std::array<void*, 256> vectors_;
    std::array<void*, 7> translation_pointers_;
    std::array<void*, 2> memory_vector_;
    std::vector<void*> blocks_;
    void* outer_anchor_;
    void* outer_process_anchor_;
    std::uint64_t outer_toolkit_;
    BareHost* outer_;
};

}  // namespace finance::test
