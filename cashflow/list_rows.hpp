// A row of columns some of which are lists: calculations of flows that are read straight from them.
//
// What is refused, missing, rare or noted is left to single calls, as in lanes/rows.hpp.
#pragma once

#include <cstdint>

#include "cashflow/discounting.hpp"

namespace finance {

// Some arguments, one behind the other.
struct ListValues {
    const double* first;
    std::int64_t count;  // not below 0
};

struct ListRow {
    static constexpr int most_columns = 4;

    ListValues columns[most_columns];  // a number is a list of one
    int count;
};

// False where the row is left.
using ListHandler = bool(const ListRow& row, const Discounting& discounting, double& result);

ListHandler list_XNPV;
ListHandler list_XIRR;

}  // namespace finance
