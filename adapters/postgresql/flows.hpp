// Aggregates over flows, a row a flow.
//
//  (1) The flows are put in order at the end, by their date or key and then by their value, so that the answer is the same
//      bits whatever the plan: rows may come in any order, and in parts from parallel workers.
//  (2) What is no list must be the same, bit for bit, in all rows.
//  (3) A NULL or NaN in any row makes the answer NULL. FILTER leaves rows out; a flow left out by itself would move all
//      later ones by a period.
//  (4) Without rows the answer is NULL.
//  (5) A state is the flows and one copy of the rest, in the aggregate's memory; 16 bytes a flow, twice that while it
//      grows. There are no more than longest_list flows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adapters/postgresql/server.hpp"

namespace finance::adapters::postgresql {

struct Flow {
    std::int64_t key;  // of dated flows the server's day
    double value;
};

struct FlowState {
    std::uint32_t count;
    std::uint32_t capacity;
    bool missing;
    bool infinite_date;
    bool differing;  // constants between rows
    std::uint32_t constant_count;
    double constants[most_parameters];  // of the first row, in the parameters' order
    Flow* flows;
};

// ---- States

MemoryContext aggregate_context(FunctionCallInfo call);
FlowState* new_state(MemoryContext context);
FlowState* state_of(const NullableDatum& given);  // null where there is none yet
void add_flows(MemoryContext context, FlowState& state, const Flow* flows, std::size_t count);
void keep_constants(FlowState& state, const double* constants, std::uint32_t count);

// ---- What SQL calls, with the merging of parallel workers' states in flow_parts.cpp

Datum add_flow(FunctionCallInfo call, std::size_t index, Order order);
Datum answer_of_flows(FunctionCallInfo call, std::size_t index);

}  // namespace finance::adapters::postgresql
