// The host's global control block: 128 words of which a module reads seven (ZELKOVAN_GCB_..., abi/zelkovan.h), and what
// they point to: 256 service vectors of 512 routines each among others. Every other word has a value that is no address
// and tells its own index.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace finance::host {

class ControlBlock {
public:
    static constexpr std::size_t word_count = 128;
    static constexpr std::size_t vector_count = 256;
    static constexpr std::size_t slot_count = 512;
    static constexpr unsigned char untouched_mark = 0xFF;

    // What stands in word i where the host has no use for it.
    static constexpr std::uint64_t junk_word(std::size_t i) { return 0xA5A5A5A5A5A50000 | i; }

    // Collating tables: bytes as they are; a to z as A to Z.
    [[nodiscard]] static const unsigned char* plain_table();
    [[nodiscard]] static const unsigned char* case_blind_table();

    // memory_vector and toolkit stay the caller's and must outlive the block; toolkit may be null.
    ControlBlock(void** memory_vector, void* toolkit);
    ControlBlock(const ControlBlock&) = delete;
    ControlBlock& operator=(const ControlBlock&) = delete;

    [[nodiscard]] void** words() { return words_.data(); }
    [[nodiscard]] void* process_block() { return process_block_.data(); }  // 64 bytes of no meaning

    // Between calls only. Without multibyte mode the record's pointer is null.
    void set_case_blind(bool on);
    void set_multibyte(bool on);

    // As the words say now, whoever wrote them.
    [[nodiscard]] const unsigned char* collating_table() const;
    [[nodiscard]] bool multibyte() const;

private:
    using SlotTable = std::array<void*, slot_count>;

    void place_services();
    SlotTable& new_slot_table();

    std::array<void*, word_count> words_;
    std::array<void*, vector_count> vectors_;
    std::array<unsigned char, vector_count> marks_;
    std::vector<std::unique_ptr<SlotTable>> slot_tables_;  // the first belongs to all vectors without a service
    std::array<const void*, 7> translation_tables_;
    std::array<void*, 8> locale_;
    std::array<unsigned char, 96> multibyte_record_;
    std::array<unsigned char, 64> process_block_;
};

}  // namespace finance::host
