// What the processor has and the system keeps for it. Asked here in a few lines: the compiler's own library asks for all
// processors that there are, in three thousand bytes.
#include <cpuid.h>

#include <cstdint>

#include "elementary/functions.hpp"

namespace finance::elementary {

namespace {

struct Features {
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
};

Features features(unsigned leaf) {
    Features f;
    (void)__get_cpuid_count(leaf, 0, &f.a, &f.b, &f.c, &f.d);
    return f;
}

// The system saves the registers of 32 bytes between threads: states 1 and 2 of the control register 0.
bool keeps_wide_registers() {
    constexpr unsigned needed = 1U << 1 | 1U << 2;
    std::uint32_t low;
    std::uint32_t high;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return (low & needed) == needed;
}

// That control register may be read where the first bit is set.
bool has_fused() {
    constexpr unsigned needed = bit_OSXSAVE | bit_FMA;
    return (features(1).c & needed) == needed && keeps_wide_registers();
}

}  // namespace

const bool has_fused_multiply_add = has_fused();
const bool has_wide_lanes = has_fused_multiply_add && (features(7).b & bit_AVX2) != 0;

}  // namespace finance::elementary
