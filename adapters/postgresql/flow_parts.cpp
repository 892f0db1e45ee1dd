// States of parallel workers: copied between processes of one server as their bytes, and put together.
#include <cstring>

#include "adapters/postgresql/entries.hpp"

namespace finance::adapters::postgresql {

namespace {

Datum combine(FunctionCallInfo call) {
    MemoryContext context = aggregate_context(call);
    FlowState* state = state_of(call->args[0]);
    const FlowState* more = state_of(call->args[1]);
    if (more == nullptr) {
        call->isnull = state == nullptr;
        return PointerGetDatum(state);
    }
    if (state == nullptr) state = new_state(context);
    state->missing = state->missing || more->missing;
    state->infinite_date = state->infinite_date || more->infinite_date;
    state->differing = state->differing || more->differing;
    if (!state->missing) {
        keep_constants(*state, more->constants, more->constant_count);
        add_flows(context, *state, more->flows, more->count);
    }
    return PointerGetDatum(state);
}

Datum serialize(FunctionCallInfo call) {
    aggregate_context(call);
    const FlowState& state = *state_of(call->args[0]);
    const std::size_t flow_bytes = state.count * sizeof(Flow);
    auto* bytes = static_cast<bytea*>(palloc(VARHDRSZ + sizeof(FlowState) + flow_bytes));
    SET_VARSIZE(bytes, VARHDRSZ + sizeof(FlowState) + flow_bytes);
    std::memcpy(VARDATA(bytes), &state, sizeof(FlowState));
    if (flow_bytes > 0) std::memcpy(VARDATA(bytes) + sizeof(FlowState), state.flows, flow_bytes);
    return PointerGetDatum(bytes);
}

// Into the current memory: what is combined is copied.
Datum deserialize(FunctionCallInfo call) {
    aggregate_context(call);
    const bytea* bytes = DatumGetByteaPP(call->args[0].value);
    const auto size = static_cast<std::size_t>(VARSIZE_ANY_EXHDR(bytes));
    FlowState* state = new_state(CurrentMemoryContext);
    if (size >= sizeof(FlowState)) std::memcpy(state, VARDATA_ANY(bytes), sizeof(FlowState));
    state->flows = nullptr;
    if (size != sizeof(FlowState) + state->count * sizeof(Flow)) {
        ereport(ERROR, (errcode(ERRCODE_DATA_CORRUPTED), errmsg("a part of an aggregate is of the wrong size")));
    }
    const std::size_t count = state->count;
    state->count = 0;
    state->capacity = 0;
    if (count == 0) return PointerGetDatum(state);
    state->flows = static_cast<Flow*>(palloc(count * sizeof(Flow)));
    std::memcpy(state->flows, VARDATA_ANY(bytes) + sizeof(FlowState), count * sizeof(Flow));
    state->count = static_cast<std::uint32_t>(count);
    state->capacity = state->count;
    return PointerGetDatum(state);
}

}  // namespace

}  // namespace finance::adapters::postgresql

ZELKOVAN_ENTRY(zelkovan_fin_flows_combine, combine(call))
ZELKOVAN_ENTRY(zelkovan_fin_flows_serialize, serialize(call))
ZELKOVAN_ENTRY(zelkovan_fin_flows_deserialize, deserialize(call))
