#include "wasm/memory.hpp"

// Where the linker's own data end.
extern "C" unsigned char __heap_base;  // NOLINT(bugprone-reserved-identifier): the linker's name

namespace finance::wasm {

namespace {

constexpr std::size_t page = 65536;
constexpr std::size_t word = 8;
constexpr std::size_t none = ~std::size_t{0};

std::size_t begin() { return (reinterpret_cast<std::size_t>(&__heap_base) + word - 1) / word * word; }

std::size_t room_end = 0;  // 0: nobody has asked for anything yet
std::size_t top = 0;

// Where memory is known to end: engines take their time over the question.
std::size_t known_end = 0;

// False where memory does not reach so far.
bool grow_to(std::size_t end) {
    if (end <= known_end) return true;
    known_end = __builtin_wasm_memory_size(0) * page;
    if (end <= known_end) return true;
    if (__builtin_wasm_memory_grow(0, (end - known_end + page - 1) / page) == none) return false;
    known_end = __builtin_wasm_memory_size(0) * page;
    return true;
}

// The end of so many bytes behind an address; `none` where addresses end before.
std::size_t behind(std::size_t address, std::uint64_t bytes) {
    if (bytes > none - page - word - address) return none;
    return address + (static_cast<std::size_t>(bytes) + word - 1) / word * word;
}

}  // namespace

void* room(std::uint64_t bytes) {
    const std::size_t end = behind(begin(), bytes);
    if (end == none || !grow_to(end)) return nullptr;
    if (end > room_end) room_end = end;
    give_back();
    return reinterpret_cast<void*>(begin());
}

void give_back() { top = room_end; }

void* allocate(std::uint64_t bytes) {
    const std::size_t end = behind(top, bytes);
    if (end == none || !grow_to(end)) return nullptr;
    void* block = reinterpret_cast<void*>(top);
    top = end;
    return block;
}

Workspace::Workspace() : top_{top} {}
Workspace::~Workspace() { top = top_; }

}  // namespace finance::wasm
