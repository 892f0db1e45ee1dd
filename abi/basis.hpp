// The day-count bases: codes, keywords, and how an argument names one.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "abi/zelkovan.h"

namespace finance {

enum DayCountBasis : std::int32_t {
    BASIS_30_360 = 0,
    BASIS_ACTUAL = 1,
    BASIS_ACT_360 = 2,
    BASIS_ACT_365 = 3,
    BASIS_EU30_360 = 4,
};

struct BasisKey {
    std::uint32_t code;
    std::string_view keyword;
};

inline constexpr std::array<BasisKey, 5> Keys{{
    {BASIS_30_360, "30/360"},
    {BASIS_ACTUAL, "ACTUAL"},
    {BASIS_ACT_360, "ACT/360"},
    {BASIS_ACT_365, "ACT/365"},
    {BASIS_EU30_360, "EU30/360"},
}};

// Reads a basis from a slot of either type. False where the slot names none; basis is then unchanged.
//  (1) A number is truncated toward zero: 2.9 is code 2, -0.5 is code 0. Codes outside Keys fail.
//  (2) A missing number, or none at all, is ACTUAL. (An argument left out of the call is 30/360: not decided here.)
//  (3) A text of 1 to 255 bytes is a keyword in any case, blanks anywhere ignored.
//  (4) Any other type fails.
bool read_basis(const ArgSlot& slot, std::int32_t& basis);

}  // namespace finance
