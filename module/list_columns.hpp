// Columns some of which are lists.
#pragma once

#include <cstdint>

#include "abi/zelkovan.h"
#include "cashflow/discounting.hpp"

namespace finance {

bool has_lists(const ZelkovanColumns& request);

// Of the calculation with this index in FinancialList. Sets bits of the answer, which has none yet, and returns how many.
std::int64_t calculate_lists(const ZelkovanColumns& request, std::int32_t calculation, const Discounting& discounting);

}  // namespace finance
