#include "cashflow/work_pool.hpp"

#include <bit>

namespace finance {

namespace {

Toolkit* host_toolkit() {
    auto* toolkit = std::bit_cast<Toolkit*>(static_cast<std::uintptr_t>(Exported_KXHandle));
    const bool creates_pools =
        toolkit != nullptr && toolkit->operations != nullptr && toolkit->operations->create_pool != nullptr;
    return creates_pools ? toolkit : nullptr;
}

}  // namespace

WorkPool::WorkPool(std::int64_t bytes) : bytes_{bytes} {
    if (Toolkit* toolkit = host_toolkit(); toolkit != nullptr) {
        pool_ = toolkit->operations->create_pool(toolkit, ZELKOVAN_POOL_NAME, ZELKOVAN_POOL_FLAGS);
        if (pool_ != nullptr) block_ = pool_->operations->allocate(pool_, bytes_, ZELKOVAN_POOL_FLAGS);
    } else {
        block_ = host_allocate(bytes_);
        from_memory_vector_ = true;
    }
}

WorkPool::~WorkPool() {
    if (pool_ != nullptr) pool_->operations->release(pool_);
    if (from_memory_vector_ && block_ != nullptr) host_release(block_, bytes_);
}

}  // namespace finance
