// Statuses and the missing value, as every handler uses them.
#pragma once

#include <bit>
#include <cstdint>

#include "abi/zelkovan.h"

namespace finance {

using Status = std::uint32_t;

inline constexpr Status STATUS_SUCCESS = ZELKOVAN_STATUS_SUCCESS;
inline constexpr Status STATUS_MISSING_RESULT = ZELKOVAN_STATUS_MISSING_RESULT;
inline constexpr Status STATUS_INVALID_ARGUMENT = ZELKOVAN_STATUS_INVALID_ARGUMENT;

inline constexpr double MISSING_VALUE = std::bit_cast<double>(ZELKOVAN_MISSING_VALUE_BITS);

// Any NaN is missing, whatever its sign and payload.
constexpr bool is_missing(double x) { return x != x; }

}  // namespace finance
