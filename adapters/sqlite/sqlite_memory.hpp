// Memory from SQLite, so that what an aggregate gathers counts within the heap limit of the program.
#pragma once

#include <cstddef>
#include <deque>
#include <new>
#include <string>
#include <vector>

#include "adapters/sqlite/sqlite_api.hpp"

namespace finance::adapters::sqlite {

template <typename T>
struct Allocator {
    using value_type = T;

    Allocator() = default;
    template <typename U>
    Allocator(const Allocator<U>&) {}

    T* allocate(std::size_t count) {
        void* const block = count <= PTRDIFF_MAX / sizeof(T) ? sqlite3_malloc64(count * sizeof(T)) : nullptr;
        if (block == nullptr) throw std::bad_alloc{};
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) { sqlite3_free(block); }

    friend bool operator==(const Allocator&, const Allocator&) { return true; }
};

template <typename T>
using Vector = std::vector<T, Allocator<T>>;
template <typename T>
using Deque = std::deque<T, Allocator<T>>;
using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

}  // namespace finance::adapters::sqlite
