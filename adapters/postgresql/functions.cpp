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

// Of a call that is not made.
Datum unmade(FunctionCallInfo call, const catalogue::Calculation& calculation, const GivenArguments& given, Way way) {
    if (way == Way::reason) {
        const char* words =
            given.too_long() ? long_list_words() : infinite_date_words(calculation, given.infinite_date());
        return text_of(words);
    }
    if (way == Way::attempt) return null_of(call);
    if (given.too_long()) report_long_list();
    report_infinite_date(calculation, given.infinite_date());
}

}  // namespace

Datum answer(FunctionCallInfo call, std::size_t index, std::string_view letters, bool coded_basis, Way way) {
    CHECK_FOR_INTERRUPTS();
    const catalogue::Calculation& calculation = calculation_at(index);
    const GivenArguments given{call, letters, coded_basis};
    if (given.too_long()) return unmade(call, calculation, given, way);
    if (given.missing()) return null_of(call);
    if (given.infinite_date() > 0) return unmade(call, calculation, given, way);
    const Row& row = given.row();
    const Outcome outcome = row.lists_given ? postgresql::call(calculation, row, way)
                                            : postgresql::call(prepared_for(call, calculation), row, way);
    return answer_of(calculation, outcome, call, way);
}

}  // namespace finance::adapters::postgresql
