// Workspace from a pool of the host's toolkit, destroyed with the object.
#pragma once

#include <cstdint>

#include "abi/host_control.hpp"

namespace finance {

// Operations of the toolkit and of its pools; an object's first word points to its table.
struct PoolOperations;
struct Pool {
    const PoolOperations* operations;
};
struct PoolOperations {
    void* (*allocate)(Pool* pool, std::int64_t bytes, std::uint64_t flags);
    void (*release)(Pool* pool);
};
struct ToolkitOperations;
struct Toolkit {
    const ToolkitOperations* operations;
};
struct ToolkitOperations {
    Pool* (*create_pool)(Toolkit* toolkit, const char* name, std::uint64_t flags);
};

// One block of `bytes` bytes. Where the host has no toolkit, or one that creates no pools, the block comes from its
// memory vector.
class WorkPool {
public:
    explicit WorkPool(std::int64_t bytes);
    ~WorkPool();
    WorkPool(const WorkPool&) = delete;
    WorkPool& operator=(const WorkPool&) = delete;

    // Null where the host had no pool or no memory.
    [[nodiscard]] void* block() const { return block_; }

private:
    std::int64_t bytes_;
    Pool* pool_ = nullptr;
    void* block_ = nullptr;
    bool from_memory_vector_ = false;
};

}  // namespace finance
