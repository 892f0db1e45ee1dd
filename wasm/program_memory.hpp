// What C++ programs take memory from, `new` and `delete`, out of the memory of a call (wasm/memory.hpp).
//
//  (1) Blocks are powers of 2, kept by size when they are given up, and taken again.
//  (2) Nothing throws: whether there is memory is asked before a call. Without it `new` would stop the program.
#pragma once

#include <cstdint>

namespace finance::wasm {

// All that calls have asked for is given back.
void begin_program_memory();

// Blocks of before are of memory that has been given back. What a call that goes on has is kept.
void forget_free_blocks();

// For the words of a call with so many arguments.
bool there_is_memory_for(std::uint32_t arguments, std::uint64_t bytes_of_texts);

}  // namespace finance::wasm
