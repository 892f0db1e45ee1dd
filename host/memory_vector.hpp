// The host's memory, as a module reaches it: a vector of two entry points, each called with the vector itself first.
//
//     slot 0  (vector, bytes, flags)         -> block, or null
//     slot 1  (vector, block, bytes, flags)  -> null; bytes and flags as at the allocation
//
// bytes and flags are signed 64-bit. A block is aligned to 16 bytes and comes filled with a pattern. It lies between a
// header, which says what it is, and a guard, which tells an overrun: a release is checked in constant time.
#pragma once

#include <atomic>
#include <cstdint>

#include "host/fault_countdown.hpp"

namespace finance::host {

// Safe from any thread. Blocks that nobody released outlive the vector (a leak checker names them).
class MemoryVector {
public:
    static constexpr unsigned char fresh_byte = 0xC3;  // fills a block that has just been handed out

    MemoryVector() noexcept;
    MemoryVector(const MemoryVector&) = delete;
    MemoryVector& operator=(const MemoryVector&) = delete;
    ~MemoryVector() = default;

    // The vector that a module is given.
    [[nodiscard]] void** entry_points() noexcept { return face_.slots; }

    // Null for a negative size, where the system has no memory, and where a fault is due.
    [[nodiscard]] void* allocate(std::int64_t bytes, std::int64_t flags) noexcept;

    // A null block is ignored. Each of these is one error: a block without this vector's header (it is left alone),
    // other bytes or flags than at the allocation, a damaged guard (the block is released all the same). The 32 bytes
    // before the block are read, whatever it is.
    void release(void* block, std::int64_t bytes, std::int64_t flags) noexcept;

    // The n-th request from now gets nothing, once; 0: none.
    void fail_at(std::uint64_t n) noexcept { fault_.fail_at(n); }

    [[nodiscard]] std::uint64_t requests() const noexcept { return requests_; }     // so far, refused ones included
    [[nodiscard]] std::int64_t blocks() const noexcept { return blocks_; }          // outstanding
    [[nodiscard]] std::int64_t bytes() const noexcept { return bytes_; }            // outstanding, as requested
    [[nodiscard]] std::int64_t last_flags() const noexcept { return last_flags_; }  // of the latest request
    [[nodiscard]] std::uint64_t errors() const noexcept { return errors_; }         // at releases, so far

private:
    struct Face {  // what the module sees begins it
        void* slots[2];
        MemoryVector* owner;
    };

    static void* allocate_slot(void** vector, std::int64_t bytes, std::int64_t flags) noexcept;
    static void* release_slot(void** vector, void* block, std::int64_t bytes, std::int64_t flags) noexcept;

    Face face_;
    FaultCountdown fault_;
    std::atomic<std::uint64_t> requests_{0};
    std::atomic<std::int64_t> blocks_{0};
    std::atomic<std::int64_t> bytes_{0};
    std::atomic<std::int64_t> last_flags_{0};
    std::atomic<std::uint64_t> errors_{0};
};

}  // namespace finance::host
