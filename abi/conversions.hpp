// Every narrowing of the module by name. All are total: no argument is undefined behaviour.
#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <bit>
#include <cstdint>
#include <limits>

namespace finance {

// Toward zero, as the processor converts: out of range, infinite or NaN give the smallest value.
#ifdef __SSE2__
inline std::int64_t truncate_to_int64(double x) { return _mm_cvttsd_si64(_mm_set_sd(x)); }
inline std::int32_t truncate_to_int32(double x) { return _mm_cvttsd_si32(_mm_set_sd(x)); }
#else
inline std::int64_t truncate_to_int64(double x) {
    return x >= -0x1p63 && x < 0x1p63 ? static_cast<std::int64_t>(x) : std::numeric_limits<std::int64_t>::min();
}
inline std::int32_t truncate_to_int32(double x) {
    return x > -0x1p31 - 1.0 && x < 0x1p31 ? static_cast<std::int32_t>(x) : std::numeric_limits<std::int32_t>::min();
}
#endif

// The low half of a 64-bit value, as a signed number: 2^32 + 3 gives 3, 2^31 gives -2^31.
constexpr std::int32_t low_32_bits(std::int64_t k) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(k)); }

// A step that leaves every bit as it was has come to rest; NaN and signed zeros compare as bits.
constexpr bool same_bits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Sums and products that wrap at the width of their field.
constexpr std::int32_t wrapping_add(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int64_t wrapping_add(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}
constexpr std::int64_t wrapping_multiply(std::int64_t a, std::int64_t b) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
}

}  // namespace finance
