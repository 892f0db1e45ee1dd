#include "adapters/postgresql/flows.hpp"
#include "adapters/postgresql/values.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;
using catalogue::Kind;

namespace {

// Zeros of both signs have an order too.
bool before(const Flow& a, const Flow& b) {
    if (a.key != b.key) return a.key < b.key;
    if (a.value != b.value) return a.value < b.value;
    return std::signbit(a.value) && !std::signbit(b.value);
}

double day_of(const Flow& flow) { return host_day(static_cast<DateADT>(flow.key)); }
double value_of(const Flow& flow) { return flow.value; }

Row::List column(const FlowState& state, double (*of)(const Flow&)) {
    auto* values = static_cast<double*>(palloc(state.count * sizeof(double)));
    std::transform(state.flows, state.flows + state.count, values, of);
    return {values, state.count};
}

// The one call that the flows make. An optional argument after the lists may have been left out.
Row row_of(const Calculation& calculation, const FlowState& state) {
    Row row;
    row.count = std::min(state.constant_count + catalogue::list_count(calculation), calculation.parameters.size());
    row.texts_given = 0;
    row.lists_given = true;
    std::size_t constant = 0;
    for (std::size_t i = 0; i < row.count; ++i) {
        const Kind kind = calculation.parameters[i].kind;
        if (is_list(kind)) {
            row.lists[i] = column(state, kind == Kind::dates ? day_of : value_of);
        } else {
            row.numbers[i] = state.constants[constant++];
        }
    }
    return row;
}

std::size_t position_of_dates(const Calculation& calculation) {
    std::size_t i = 0;
    while (calculation.parameters[i].kind != Kind::dates) ++i;
    return i + 1;
}

[[noreturn]] void report_differing(const Calculation& calculation) {
    ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE),
                    errmsg("%.*s: the arguments beside the flows differ between the rows of a group",
                           static_cast<int>(calculation.name.size()), calculation.name.data()),
                    errhint("Group by them too, or give constants.")));
    pg_unreachable();
}

}  // namespace

// Putting the flows in order changes nothing that a later step or result of the same state could see.
Datum answer_of_flows(FunctionCallInfo call, std::size_t index) {
    CHECK_FOR_INTERRUPTS();
    aggregate_context(call);
    const Calculation& calculation = calculation_at(index);
    const FlowState* state = state_of(call->args[0]);
    if (state == nullptr || state->missing) return null_of(call);
    if (state->infinite_date) report_infinite_date(calculation, position_of_dates(calculation));
    if (state->differing) report_differing(calculation);
    if (!std::is_sorted(state->flows, state->flows + state->count, before)) {
        std::sort(state->flows, state->flows + state->count, before);
    }
    return answer_of(calculation, postgresql::call(calculation, row_of(calculation, *state)), call);
}

}  // namespace finance::adapters::postgresql
