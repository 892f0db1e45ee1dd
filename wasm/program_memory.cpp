#include "wasm/program_memory.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <new>

#include "wasm/memory.hpp"

namespace finance::wasm {

namespace {

// Before the program's bytes, which begin on a word of 8.
struct Head {
    std::size_t order;  // of the block's size: 2^order bytes, the head among them
    Head* next;         // of the free blocks of that size
};
static_assert(sizeof(Head) == 8);

constexpr std::size_t orders = 32;
std::array<Head*, orders> free_blocks;

Head* new_block(std::size_t order) {
    if (order >= orders) return nullptr;
    if (Head* free = free_blocks[order]) {
        free_blocks[order] = free->next;
        return free;
    }
    auto* block = static_cast<Head*>(allocate(std::uint64_t{1} << order));
    if (block != nullptr) block->order = order;
    return block;
}

}  // namespace

void begin_program_memory() {
    give_back();
    forget_free_blocks();
}

void forget_free_blocks() { free_blocks = {}; }

bool there_is_memory_for(std::uint32_t arguments, std::uint64_t bytes_of_texts) {
    // Twice what calls were seen to take: half of this, 240 and 4.2 bytes.
    constexpr std::uint64_t for_any_call = std::uint64_t{1} << 20U;
    constexpr std::uint64_t for_an_argument = 512;
    constexpr std::uint64_t for_a_byte = 8;
    const Workspace workspace;
    return allocate(for_any_call + arguments * for_an_argument + bytes_of_texts * for_a_byte) != nullptr;
}

}  // namespace finance::wasm

using namespace finance::wasm;

void* operator new(std::size_t bytes) {
    Head* block = new_block(static_cast<std::size_t>(std::bit_width(bytes + sizeof(Head) - 1)));
    if (block == nullptr) __builtin_trap();
    return block + 1;
}

void operator delete(void* place) noexcept {
    if (place == nullptr) return;
    Head* block = static_cast<Head*>(place) - 1;
    block->next = free_blocks[block->order];
    free_blocks[block->order] = block;
}

void operator delete(void* place, std::size_t /*bytes*/) noexcept { operator delete(place); }
