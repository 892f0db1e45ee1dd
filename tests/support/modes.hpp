// Floating-point modes that a thread may have when it calls.
#pragma once

#include <emmintrin.h>

#include <array>
#include <cstdint>

namespace finance::test {

// Control words without the flags of exceptions.
struct FloatingPointMode {
    const char* name;
    std::uint32_t control;  // of MXCSR
    std::uint16_t x87;
};

inline constexpr FloatingPointMode usual_mode{"usual", 0x1F80, 0x037F};
inline constexpr FloatingPointMode other_modes[]{
    {"downwards", 0x3F80, 0x077F},
    {"upwards", 0x5F80, 0x0B7F},
    {"toward zero", 0x7F80, 0x0F7F},
    {"upwards, in MXCSR alone", 0x5F80, 0x037F},
    {"upwards at 24 bits, in the x87 unit alone", 0x1F80, 0x087F},
    {"flush to zero", 0x9F80, 0x037F},
    {"denormals are zero", 0x1FC0, 0x037F},
    {"flush to zero, denormals are zero", 0x9FC0, 0x037F},
    {"every exception traps", 0x0000, 0x0340},
    {"every exception traps, toward zero", 0xE040, 0x0F40},
};

// Sets both control words; flags are cleared, so that none traps at once.
inline void set_mode(const FloatingPointMode& mode) {
    asm volatile("fnclex\n\tfldcw %0" : : "m"(mode.x87));
    _mm_setcsr(mode.control);
}

// Of the same thread. Flags are not looked at.
inline bool mode_is(const FloatingPointMode& mode) {
    constexpr std::uint32_t flags = 0x003F;
    std::uint16_t x87;
    asm volatile("fnstcw %0" : "=m"(x87));
    return (_mm_getcsr() & ~flags) == mode.control && x87 == mode.x87;
}

}  // namespace finance::test
