#include "host/toolkit.hpp"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <new>

// A module calls an operation through a pointer that names its own view of pools: that the types are one cannot be
// checked.
#if __has_cpp_attribute(clang::no_sanitize)
#define CALLED_BY_MODULES [[clang::no_sanitize("function")]]
#else
#define CALLED_BY_MODULES
#endif

namespace finance::host {
namespace {

constexpr std::uint64_t live_mark = 0x6C6F6F506576694C;

struct alignas(16) BlockHeader {
    BlockHeader* next;
    std::int64_t bytes;
};

}  // namespace

struct Toolkit::Pool {
    void* const* operations;
    Toolkit* owner;
    BlockHeader* newest;
    std::uint64_t mark;
};

Toolkit::Toolkit() noexcept
    : face_{operations_, this},
      operations_{reinterpret_cast<void*>(&create_pool)},
      pool_operations_{reinterpret_cast<void*>(&allocate_block), reinterpret_cast<void*>(&release_pool)} {}

void Toolkit::take_shape(Shape shape) noexcept {
    face_.operations = shape == Shape::whole               ? operations_
                       : shape == Shape::without_operation ? no_operation_
                                                           : nullptr;
}

std::string Toolkit::last_name() const {
    const std::lock_guard lock{name_mutex_};
    return last_name_;
}

void Toolkit::note_request(const char* name, std::uint64_t flags) noexcept {
    last_pool_flags_ = flags;
    if (name == nullptr) ++errors_;
    try {
        const std::lock_guard lock{name_mutex_};
        last_name_ = name != nullptr ? name : "";
    } catch (const std::exception&) {
        // The name is for inspection alone; the pool does not depend on it.
    }
}

CALLED_BY_MODULES void* Toolkit::create_pool(void* toolkit, const char* name, std::uint64_t flags) noexcept {
    Toolkit& self = *static_cast<Face*>(toolkit)->owner;
    self.note_request(name, flags);
    if (self.pool_fault_.due()) return nullptr;
    Pool* pool = new (std::nothrow) Pool{self.pool_operations_, &self, nullptr, live_mark};
    if (pool == nullptr) return nullptr;
    ++self.pools_created_;
    ++self.pools_;
    return pool;
}

CALLED_BY_MODULES void* Toolkit::allocate_block(void* object, std::int64_t bytes, std::uint64_t flags) noexcept {
    Pool* pool = static_cast<Pool*>(object);
    Toolkit& self = *pool->owner;
    if (pool->mark != live_mark) {
        ++self.errors_;
        return nullptr;
    }
    self.last_block_flags_ = flags;
    constexpr auto largest = std::numeric_limits<std::int64_t>::max() - std::int64_t{sizeof(BlockHeader)};
    if (self.block_fault_.due() || bytes < 0 || bytes > largest) return nullptr;
    const auto size = static_cast<std::size_t>(bytes);
    void* memory = std::malloc(sizeof(BlockHeader) + size);
    if (memory == nullptr) return nullptr;
    pool->newest = new (memory) BlockHeader{pool->newest, bytes};
    ++self.blocks_created_;
    ++self.blocks_;
    self.bytes_ += bytes;
    return std::memset(pool->newest + 1, fresh_byte, size);
}

CALLED_BY_MODULES void Toolkit::release_pool(void* object) noexcept {
    if (object == nullptr) return;
    Pool* pool = static_cast<Pool*>(object);
    Toolkit& self = *pool->owner;
    if (pool->mark != live_mark) {
        ++self.errors_;
        return;
    }
    while (pool->newest != nullptr) {
        BlockHeader* block = pool->newest;
        pool->newest = block->next;
        --self.blocks_;
        self.bytes_ -= block->bytes;
        std::free(block);
    }
    --self.pools_;
    pool->mark = ~live_mark;
    delete pool;
}

}  // namespace finance::host
