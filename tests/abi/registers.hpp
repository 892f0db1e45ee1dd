// Calls as the processor sees them: all that can carry an argument, set by the caller and seen by the callee.
#pragma once

#include <cstddef>
#include <cstdint>

namespace finance::test {

// Laid out for registers.S.
struct alignas(16) Registers {
    std::uint64_t integers[6];    // rdi rsi rdx rcx r8 r9
    std::uint64_t rax;            // on the way in: al is the number of vector registers of a variadic call
    std::uint64_t r10;            // seen only
    std::uint64_t stack[2];       // the first two words of the arguments in memory
    std::uint64_t stack_pointer;  // seen only, at the callee's first instruction
    std::uint64_t unused;
    double vectors[8][2];  // xmm0 to xmm7
};
static_assert(offsetof(Registers, rax) == 48 && offsetof(Registers, r10) == 56 && offsetof(Registers, stack) == 64);
static_assert(offsetof(Registers, stack_pointer) == 80 && offsetof(Registers, vectors) == 96);
static_assert(sizeof(Registers) == 224);

extern "C" {
// Calls target with these registers and stack words; returns its rax.
std::uint64_t registers_call(void* target, const Registers* registers);

// A routine of any signature: notes what arrived, hands it to registers_recorded, returns its answer in rax and xmm0.
void registers_record();
std::uint64_t registers_recorded(const Registers* registers);
}

}  // namespace finance::test
