#include "adapters/postgresql/flows.hpp"

#include <bit>

#include "adapters/postgresql/values.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Parameter;

MemoryContext aggregate_context(FunctionCallInfo call) {
    MemoryContext context = nullptr;
    if (AggCheckCallContext(call, &context) == 0) {
        ereport(ERROR, (errcode(ERRCODE_WRONG_OBJECT_TYPE), errmsg("a part of an aggregate was called by itself")));
    }
    return context;
}

FlowState* new_state(MemoryContext context) {
    return static_cast<FlowState*>(MemoryContextAllocZero(context, sizeof(FlowState)));
}

FlowState* state_of(const NullableDatum& given) {
    return given.isnull ? nullptr : static_cast<FlowState*>(static_cast<void*>(DatumGetPointer(given.value)));
}

namespace {

constexpr std::uint32_t first_capacity = 8;

// ---- Growth

void make_room(MemoryContext context, FlowState& state, std::size_t more) {
    const std::size_t enough = state.count + more;
    if (enough > longest_list) report_long_list();
    if (enough <= state.capacity) return;
    const std::size_t capacity =
        std::min(longest_list, std::max({enough, std::size_t{first_capacity}, std::size_t{2} * state.capacity}));
    const std::size_t bytes = capacity * sizeof(Flow);
    state.flows =
        static_cast<Flow*>(state.flows == nullptr ? MemoryContextAlloc(context, bytes) : repalloc(state.flows, bytes));
    state.capacity = static_cast<std::uint32_t>(capacity);
}

bool same_bits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

}  // namespace

void add_flows(MemoryContext context, FlowState& state, const Flow* flows, std::size_t count) {
    if (count == 0) return;
    make_room(context, state, count);
    std::copy_n(flows, count, state.flows + state.count);
    state.count += static_cast<std::uint32_t>(count);
}

void keep_constants(FlowState& state, const double* constants, std::uint32_t count) {
    if (state.constant_count == 0) {
        std::copy_n(constants, count, state.constants);
        state.constant_count = count;
        return;
    }
    state.differing = state.differing || !std::equal(constants, constants + count, state.constants, same_bits);
}

// ---- A row

namespace {

struct FlowRow {
    Flow flow{};
    double constants[most_parameters]{};
    std::uint32_t constant_count = 0;
    bool missing = false;
    bool infinite_date = false;
};

void read_date(FlowRow& row, DateADT date) {
    row.flow.key = date;
    row.infinite_date = DATE_NOT_FINITE(date);
}

void read(FlowRow& row, const Parameter& parameter, const NullableDatum& given) {
    if (parameter.kind == Kind::dates) {
        if (given.isnull) {
            row.missing = true;
        } else {
            read_date(row, DatumGetDateADT(given.value));
        }
        return;
    }
    const double number = given.isnull ? 0.0 : DatumGetFloat8(given.value);
    row.missing = row.missing || given.isnull || std::isnan(number);
    if (parameter.kind == Kind::numbers) {
        row.flow.value = number;
    } else {
        row.constants[row.constant_count++] = number;
    }
}

void read_key(FlowRow& row, const NullableDatum& given, Order order) {
    row.missing = row.missing || given.isnull;
    if (given.isnull) return;
    row.flow.key = order == Order::by_date ? DatumGetDateADT(given.value) : DatumGetInt64(given.value);
}

bool has_key(Order order) { return order == Order::by_number || order == Order::by_date; }

// The state, the row's arguments, and its key where there is one.
FlowRow flow_row_of(FunctionCallInfo call, const Calculation& calculation, Order order) {
    FlowRow row;
    const std::size_t last = static_cast<std::size_t>(call->nargs) - (has_key(order) ? 1 : 0);
    if (last > calculation.parameters.size() + 1) {
        ereport(ERROR, (errcode(ERRCODE_INVALID_FUNCTION_DEFINITION),
                        errmsg("an aggregate of zelkovan is declared with other arguments than its library has")));
    }
    for (std::size_t i = 1; i < last; ++i) read(row, calculation.parameters[i - 1], call->args[i]);
    if (has_key(order)) read_key(row, call->args[last], order);
    return row;
}

}  // namespace

Datum add_flow(FunctionCallInfo call, std::size_t index, Order order) {
    MemoryContext context = aggregate_context(call);
    FlowState* state = state_of(call->args[0]);
    if (state == nullptr) state = new_state(context);
    FlowRow row = flow_row_of(call, calculation_at(index), order);
    if (order == Order::of_rows) row.flow.key = state->count;
    state->missing = state->missing || row.missing;
    state->infinite_date = state->infinite_date || row.infinite_date;
    if (!state->missing) {  // else the answer is known
        keep_constants(*state, row.constants, row.constant_count);
        add_flows(context, *state, &row.flow, 1);
    }
    return PointerGetDatum(state);
}

}  // namespace finance::adapters::postgresql
