// The C functions that SQL names, one line a calculation; the lines are made from the catalogue.
#pragma once

#include <cstddef>

#include "adapters/postgresql/flows.hpp"
#include "adapters/postgresql/values.hpp"

namespace finance::adapters::postgresql {

// One call of the calculation at that index; the letters are kind_letters of signatures.hpp.
Datum answer(FunctionCallInfo call, std::size_t index, std::string_view letters, bool coded_basis, Way way);

}  // namespace finance::adapters::postgresql

#define ZELKOVAN_ENTRY(name, body)                     \
    extern "C" {                                       \
    PG_FUNCTION_INFO_V1(name);                         \
    Datum name(FunctionCallInfo call) {                \
        using namespace finance::adapters::postgresql; \
        return body;                                   \
    }                                                  \
    }

#define ZELKOVAN_FUNCTION(name, index, letters, way)                    \
    ZELKOVAN_ENTRY(name, answer(call, index, letters, false, Way::way)) \
    ZELKOVAN_ENTRY(name##_coded, answer(call, index, letters, true, Way::way))

// A step for each order of flows, and the result.
#define ZELKOVAN_AGGREGATE(name, index)                                            \
    ZELKOVAN_ENTRY(name##_step_by_dates, add_flow(call, index, Order::by_dates))   \
    ZELKOVAN_ENTRY(name##_step_by_number, add_flow(call, index, Order::by_number)) \
    ZELKOVAN_ENTRY(name##_step_by_date, add_flow(call, index, Order::by_date))     \
    ZELKOVAN_ENTRY(name##_step_of_rows, add_flow(call, index, Order::of_rows))     \
    ZELKOVAN_ENTRY(name##_result, answer_of_flows(call, index))
