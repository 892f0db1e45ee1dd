// Which calculation a name means.
//
//  (1) Trailing blanks of the name do not count; a leading one, or none but blanks, makes it unknown.
//  (2) The text of the argument itself is looked up, at its full length: whether lower case is found is a matter of
//      the host's collating table alone.
#pragma once

#include <cstdint>

#include "abi/arguments.hpp"

namespace finance {

inline constexpr std::int32_t unknown_calculation = -1;

// Index in FinancialList, or unknown_calculation.
[[nodiscard]] std::int32_t find_calculation(CharacterValue name);

}  // namespace finance
