// The processor's floating-point mode, which belongs to the thread of whoever calls. Results are those of the usual mode:
// every routine that the host may call and that looks at numbers is entered through in_usual_mode, and so is what front
// ends say of an answer.
//
//  (1) Usual is what a process starts with: round to nearest, denormal numbers neither read as zero nor flushed to zero,
//      no exception traps. In any other mode the usual one is set, and the caller's is back when the routine returns.
//  (2) Flags of exceptions are raised by a call, as by any arithmetic, and never cleared, in every mode.
//  (3) The host's services are called in the usual mode: the number of a day is part of an answer.
//  (4) Whether exceptions trap is asked of the x87 unit's control word, which the C library's routines (feenableexcept,
//      fesetenv) set along with MXCSR. A program that unmasks exceptions in MXCSR alone is served with them unmasked.
//      Else that unit does not matter: the module does not use it.
//  (5) WebAssembly has the usual mode only.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <cstdint>
#include <type_traits>

namespace finance {

#ifdef __SSE2__

// ---- Which mode it is. Reading MXCSR waits for all arithmetic under way, 2 to 3 ns a call, since it has the flags in it;
// a sum that depends on the mode takes its turn with the others.

inline bool exceptions_trap() {
    constexpr std::uint16_t masks = 0x003F;
    std::uint16_t control;
    asm volatile("fnstcw %0" : "=m"(control));
    return (control & masks) != masks;
}

// Four sums, each of which some other mode changes. (23 bits of fraction; 2^-126 is the smallest normal number.)
//     1 + 3/4 ulp          rounds up to nearest; down toward zero and downwards
//     1 + 1/4 ulp          rounds down to nearest; up upwards
//     2^-126 + 2^-127      is 2^-126 where denormals are read as zero
//     1.5 2^-126 - 2^-126  is 0 where they are flushed to zero
struct alignas(16) FourFloats {
    float lanes[4];
};
inline constexpr FourFloats augend{{1.0F, 1.0F, 0x1p-126F, 0x1.8p-126F}};
inline constexpr FourFloats addend{{0x1.8p-24F, 0x1p-25F, 0x1p-127F, -0x1p-126F}};
inline constexpr FourFloats usual_sum{{1.0F + 0x1p-23F, 1.0F, 0x1.8p-126F, 0x1p-127F}};

inline bool sums_are_usual() {
    constexpr int all_bytes = 0xFFFF;
    __m128 sum = _mm_load_ps(augend.lanes);
    asm volatile("addps %1, %0" : "+x"(sum) : "m"(addend));  // at run time, after the question before
    const __m128i equal = _mm_cmpeq_epi32(_mm_castps_si128(sum), _mm_castps_si128(_mm_load_ps(usual_sum.lanes)));
    return _mm_movemask_epi8(equal) == all_bytes;
}

// ---- Another mode for a while

// Sets the usual mode while it lives.
class UsualMode {
public:
    UsualMode() : callers_control_{_mm_getcsr() & ~flags} { set(usual_control); }
    ~UsualMode() { set(callers_control_); }
    UsualMode(const UsualMode&) = delete;
    UsualMode& operator=(const UsualMode&) = delete;

private:
    // Bits of MXCSR: flags of exceptions 0 to 5, denormals read as zero 6, exceptions masked 7 to 12, rounding 13 and 14,
    // denormals flushed to zero 15.
    static constexpr std::uint32_t flags = 0x003F;
    static constexpr std::uint32_t usual_control = 0x1F80;

    static void set(std::uint32_t control) { _mm_setcsr(control | (_mm_getcsr() & flags)); }

    std::uint32_t callers_control_;
};

// Compilers know nothing of modes: arithmetic, and calls of routines that do nothing else, may be moved past a change of
// mode. Here there is neither: what is called is for the compiler whatever the pointer holds once the mode is set.
template <typename Result, typename... Parameters>
[[gnu::cold, gnu::noinline]] Result call_in_usual_mode(Result (*routine)(Parameters...),
                                                       std::type_identity_t<Parameters>... arguments) {
    const UsualMode usual;
    asm volatile("" : "+r"(routine) : : "memory");
    return routine(arguments...);
}

#endif

// ---- routine(arguments...)

template <typename Result, typename... Parameters>
Result in_usual_mode(Result (*routine)(Parameters...), std::type_identity_t<Parameters>... arguments) {
#ifdef __SSE2__
    if (exceptions_trap() || !sums_are_usual()) [[unlikely]]
        return call_in_usual_mode(routine, arguments...);
#endif
    return routine(arguments...);
}

}  // namespace finance
