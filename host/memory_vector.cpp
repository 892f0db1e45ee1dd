#include "host/memory_vector.hpp"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace finance::host {
namespace {

constexpr std::uint64_t live_mark = 0x6B636F6C42657665;
constexpr unsigned char guard_byte = 0x7E;
constexpr std::size_t guard_bytes = 16;

struct alignas(16) Header {
    std::uint64_t mark;
    const MemoryVector* owner;
    std::int64_t bytes;
    std::int64_t flags;
};
static_assert(sizeof(Header) == 32);

constexpr std::int64_t largest_request =
    std::numeric_limits<std::int64_t>::max() - static_cast<std::int64_t>(sizeof(Header) + guard_bytes);

unsigned char* bytes_after(Header* header) { return reinterpret_cast<unsigned char*>(header + 1); }

// bytes: 0..largest_request.
Header* make_block(const MemoryVector* owner, std::int64_t bytes, std::int64_t flags) noexcept {
    const auto size = static_cast<std::size_t>(bytes);
    void* memory = std::malloc(sizeof(Header) + size + guard_bytes);
    if (memory == nullptr) return nullptr;
    auto* header = new (memory) Header{live_mark, owner, bytes, flags};
    std::memset(bytes_after(header), MemoryVector::fresh_byte, size);
    std::memset(bytes_after(header) + size, guard_byte, guard_bytes);
    return header;
}

bool guard_is_whole(Header* header) noexcept {
    const unsigned char* guard = bytes_after(header) + header->bytes;
    for (std::size_t i = 0; i < guard_bytes; ++i) {
        if (guard[i] != guard_byte) return false;
    }
    return true;
}

}  // namespace

MemoryVector::MemoryVector() noexcept
    : face_{{reinterpret_cast<void*>(&allocate_slot), reinterpret_cast<void*>(&release_slot)}, this} {}

void* MemoryVector::allocate_slot(void** vector, std::int64_t bytes, std::int64_t flags) noexcept {
    return reinterpret_cast<Face*>(vector)->owner->allocate(bytes, flags);
}

void* MemoryVector::release_slot(void** vector, void* block, std::int64_t bytes, std::int64_t flags) noexcept {
    reinterpret_cast<Face*>(vector)->owner->release(block, bytes, flags);
    return nullptr;
}

void* MemoryVector::allocate(std::int64_t bytes, std::int64_t flags) noexcept {
    requests_.fetch_add(1, std::memory_order_relaxed);
    last_flags_.store(flags, std::memory_order_relaxed);
    if (fault_.due() || bytes < 0 || bytes > largest_request) return nullptr;
    Header* header = make_block(this, bytes, flags);
    if (header == nullptr) return nullptr;
    blocks_.fetch_add(1, std::memory_order_relaxed);
    bytes_.fetch_add(bytes, std::memory_order_relaxed);
    return bytes_after(header);
}

void MemoryVector::release(void* block, std::int64_t bytes, std::int64_t flags) noexcept {
    if (block == nullptr) return;
    Header* header = static_cast<Header*>(block) - 1;
    if (header->mark != live_mark || header->owner != this) {
        errors_.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    if (header->bytes != bytes || header->flags != flags || !guard_is_whole(header)) {
        errors_.fetch_add(1, std::memory_order_relaxed);
    }
    blocks_.fetch_sub(1, std::memory_order_relaxed);
    bytes_.fetch_sub(header->bytes, std::memory_order_relaxed);
    header->mark = ~live_mark;
    std::free(header);
}

}  // namespace finance::host
