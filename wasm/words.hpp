// A call as JavaScript writes it down.
//
//  (1) An argument is a word of 8 bytes and a kind of one: a number; a text, the place of its first byte and their count,
//      32 bits each; or nothing. Argument 0 is the name of the calculation.
//  (2) In rows an argument may be a column, the place of its first number and the bytes to the next one, 32 bits each.
#pragma once

#include <cstdint>

#define EXPORT(name) extern "C" __attribute__((export_name(name)))

namespace finance::wasm {

enum Kind : std::uint8_t { number = 0, text = 1, absent = 2, absent_text = 3, column = 4 };

union Word {
    double number;
    struct {
        std::uint32_t place;
        std::uint32_t size;  // of a text its bytes, of a column those from a number to the next
    } span;
};
static_assert(sizeof(Word) == 8);

inline void* at(std::uint32_t place) { return reinterpret_cast<void*>(std::uintptr_t{place}); }

}  // namespace finance::wasm
