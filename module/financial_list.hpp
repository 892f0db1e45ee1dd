// The table of calculations.
#pragma once

#include <array>
#include <cstdint>

#include "abi/status.hpp"

namespace finance {

// Evaluates one calculation. argument_count includes the name; row is the calculation's index in FinancialList, by
// which the members of a family tell themselves apart.
using Handler = Status (*)(HostCallContext* context, double* result, std::int64_t argument_count, std::int32_t row);

struct FinancialRow {
    const char* name;  // upper case, NUL-terminated
    std::uint32_t name_length;
    Handler handler;
    std::int32_t minimum_count;  // of arguments, the name included
    std::int32_t maximum_count;  // the same; 0 where there is no upper bound
};

// All calculations, ascending by name.
extern const std::array<FinancialRow, 54> FinancialList;

}  // namespace finance
