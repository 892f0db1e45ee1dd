#include "adapters/postgresql/entries.hpp"

extern "C" {
PG_MODULE_MAGIC;
}

namespace finance::adapters::postgresql {

namespace {

// Found once in a query: the server keeps it with the call's place there.
PreparedCall& prepared_for(FunctionCallInfo call, const catalogue::Calculation& calculation) {
    void* known = call->flinfo != nullptr ? call->flinfo->fn_extra : nullptr;
    if (known != nullptr) return *static_cast<PreparedCall*>(known);
    PreparedCall* prepared = prepared_call(calculation);
    if (prepared == nullptr) ereport(ERROR, (errcode(ERRCODE_OUT_OF_MEMORY), errmsg("out of memory")));
    if (call->flinfo != nullptr) call->flinfo->fn_extra = prepared;
    return *prepared;
}

}  // namespace

Datum answer(FunctionCallInfo call, std::size_t index, std::string_view letters, bool coded_basis) {
    CHECK_FOR_INTERRUPTS();
    const catalogue::Calculation& calculation = calculation_at(index);
    const GivenArguments given{call, letters, coded_basis};
    if (given.missing()) return answer_of(calculation, {.verdict = Verdict::missing}, call);
    if (given.infinite_date() > 0) report_infinite_date(calculation, given.infinite_date());
    const Row& row = given.row();
    const Outcome outcome =
        row.lists_given ? postgresql::call(calculation, row) : postgresql::call(prepared_for(call, calculation), row);
    return answer_of(calculation, outcome, call);
}

}  // namespace finance::adapters::postgresql
