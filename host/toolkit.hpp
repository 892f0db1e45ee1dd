// The host's toolkit, as a module reaches it through the toolkit handle: memory pools.
//
//     toolkit: first word -> operations   0  (toolkit, name, flags) -> pool, or null
//     pool:    first word -> operations   0  (pool, bytes, flags)   -> block, or null
//                                         1  (pool)                 releases the pool and its blocks
//
// name is NUL-terminated, flags are 64 bits, bytes signed 64-bit. Blocks are aligned to 16 bytes and filled with a
// pattern. A pool serves one thread at a time, the toolkit any number.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>

#include "host/fault_countdown.hpp"

namespace finance::host {

class Toolkit {
public:
    static constexpr unsigned char fresh_byte = 0xC5;  // fills a block that has just been handed out

    // What a module finds behind the handle.
    enum class Shape : std::uint8_t {
        whole,
        without_table,      // the first word is null
        without_operation,  // the table's operation 0 is null
    };

    Toolkit() noexcept;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    ~Toolkit() = default;

    // The object whose address is the toolkit handle.
    [[nodiscard]] void* object() noexcept { return &face_; }

    // Between calls only.
    void take_shape(Shape shape) noexcept;

    // The n-th pool, or the n-th block of any pool, from now cannot be had, once; 0: none.
    void fail_pool_at(std::uint64_t n) noexcept { pool_fault_.fail_at(n); }
    void fail_block_at(std::uint64_t n) noexcept { block_fault_.fail_at(n); }

    [[nodiscard]] std::uint64_t pools_created() const noexcept { return pools_created_; }    // so far
    [[nodiscard]] std::int64_t pools() const noexcept { return pools_; }                     // outstanding
    [[nodiscard]] std::uint64_t blocks_created() const noexcept { return blocks_created_; }  // so far, of all pools
    [[nodiscard]] std::int64_t blocks() const noexcept { return blocks_; }                   // outstanding
    [[nodiscard]] std::int64_t bytes() const noexcept { return bytes_; }                     // outstanding
    [[nodiscard]] std::uint64_t last_pool_flags() const noexcept { return last_pool_flags_; }
    [[nodiscard]] std::uint64_t last_block_flags() const noexcept { return last_block_flags_; }
    [[nodiscard]] std::string last_name() const;  // of the latest pool asked for
    // Operations on something that is no live pool, and pools without a name.
    [[nodiscard]] std::uint64_t errors() const noexcept { return errors_; }

private:
    struct Pool;
    struct Face {
        void* const* operations;
        Toolkit* owner;
    };

    static void* create_pool(void* toolkit, const char* name, std::uint64_t flags) noexcept;
    static void* allocate_block(void* object, std::int64_t bytes, std::uint64_t flags) noexcept;
    static void release_pool(void* object) noexcept;

    void note_request(const char* name, std::uint64_t flags) noexcept;

    Face face_;
    void* operations_[1];
    void* no_operation_[1] = {nullptr};
    void* pool_operations_[2];
    FaultCountdown pool_fault_;
    FaultCountdown block_fault_;
    std::atomic<std::uint64_t> pools_created_{0};
    std::atomic<std::int64_t> pools_{0};
    std::atomic<std::uint64_t> blocks_created_{0};
    std::atomic<std::int64_t> blocks_{0};
    std::atomic<std::int64_t> bytes_{0};
    std::atomic<std::uint64_t> last_pool_flags_{0};
    std::atomic<std::uint64_t> last_block_flags_{0};
    std::atomic<std::uint64_t> errors_{0};
    mutable std::mutex name_mutex_;
    std::string last_name_;
};

}  // namespace finance::host
