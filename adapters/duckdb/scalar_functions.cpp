#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "adapters/duckdb/chunk_columns.hpp"
#include "adapters/duckdb/functions.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"

namespace finance::adapters::duckdb {

using catalogue::Calculation;

namespace {

// What a batch says of its rows.
struct Marks {
    explicit Marks(std::size_t rows) : statuses(rows), flagged(rows) {}
    std::vector<std::uint32_t> statuses;
    std::vector<std::int32_t> flagged;
};

// Answers that do not hold become NaN.
void drop_unheld(const Calculation& calculation, const ChunkColumns& chunk, Run run, Answers& answers) {
    const auto values = answers.values().subspan(run.first, run.last - run.first);
    if (all_speak_for_themselves(calculation, values)) return;
    std::vector<host::Argument> arguments(chunk.columns().size(), host::Argument::absent());
    for (std::size_t row = run.first; row < run.last; ++row) {
        double& value = answers.values()[row];
        if (std::isnan(value) || speaks_for_itself(calculation, value)) continue;
        chunk.fill(arguments, row);
        if (!calls::holds(shared_host(), calculation, arguments, value)) value = std::nan("");
    }
}

// For the first row that holds a value which is not meant.
[[noreturn]] void refuse_unmeant(const Calculation& calculation, const ChunkColumns& chunk, Run run) {
    std::vector<host::Argument> arguments(chunk.columns().size(), host::Argument::absent());
    int unmeant = 0;
    for (std::size_t row = run.first; unmeant == 0; ++row) {
        chunk.fill(arguments, row);
        unmeant = calls::unmeant_argument(calculation, arguments);
    }
    throw calls::CallRefused{calls::answer_of(calculation, arguments, calls::refused_at(unmeant)).named_sentence()};
}

// The rows of one run that stand together, in one batch. CallRefused for the first that is.
void answer_run(const Calculation& calculation, const ChunkColumns& chunk, Run run, Answers& answers, Marks& marks) {
    const auto columns = chunk.columns_from(run.first);
    if (!calls::all_meant(calculation, columns, run.last - run.first)) refuse_unmeant(calculation, chunk, run);
    const host::Batch batch{.name = calculation.name,
                            .columns = columns,
                            .rows = run.last - run.first,
                            .results = &answers.values()[run.first],
                            .statuses = marks.statuses.data(),
                            .flagged = marks.flagged.data()};
    if (shared_host().evaluate_rows(batch) == 0) return drop_unheld(calculation, chunk, run, answers);
    std::size_t row = 0;
    while (marks.statuses[row] == ZELKOVAN_STATUS_SUCCESS) ++row;
    std::vector<host::Argument> arguments(columns.size(), host::Argument::absent());
    chunk.fill(arguments, run.first + row);
    const host::Evaluation refused{
        .status = marks.statuses[row], .flagged = marks.flagged[row], .log = {}, .notes = {}};
    (void)value_of(calls::answer_of(calculation, arguments, refused));
}

struct Function {
    Signature signature;
    void (*answer)(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result);
};

void call(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_vector result) {
    or_tell(
        [&] {
            const auto& function = *static_cast<const Function*>(duckdb_scalar_function_get_extra_info(info));
            function.answer(function.signature, chunk, result);
        },
        [&](const char* sentence) { duckdb_scalar_function_set_error(info, sentence); });
}

void add(duckdb_scalar_function_set set, Function function) {
    const Calculation& calculation = *function.signature.calculation;
    const Owned<duckdb_scalar_function> added{duckdb_create_scalar_function()};
    duckdb_scalar_function_set_name(added.get(), function_name(calculation).c_str());
    for (std::size_t i = 0; i < function.signature.types.size(); ++i) {
        const Type type = function.signature.types[i];
        const bool list = is_list(calculation.parameters[i].kind);
        duckdb_scalar_function_add_parameter(added.get(), (list ? list_type(type) : logical_type(type)).get());
    }
    duckdb_scalar_function_set_return_type(added.get(), result_type(calculation).get());
    duckdb_scalar_function_set_function(added.get(), call);
    auto kept = std::make_unique<Function>(std::move(function));
    duckdb_scalar_function_set_extra_info(added.get(), kept.release(), delete_kept<Function>);
    if (duckdb_add_scalar_function_to_set(set, added.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB takes no function " + function_name(calculation)};
    }
}

}  // namespace

void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result) {
    ChunkColumns columns{chunk};
    for (const Type type : signature.types) columns.read(type);
    RowMask& rows = columns.rows();
    Answers answers{*signature.calculation, result, rows.rows()};
    Marks marks{rows.rows()};
    for (Run run = rows.next_run(0); !run.empty(); run = rows.next_run(run.last)) {
        answer_run(*signature.calculation, columns, run, answers, marks);
    }
    rows.drop_missing(answers.values());
    answers.finish(rows);
}

void register_scalar(duckdb_connection connection, const Calculation& calculation) {
    const std::string name = function_name(calculation);
    const Owned<duckdb_scalar_function_set> set{duckdb_create_scalar_function_set(name.c_str())};
    auto* const answer = is_scalar(calculation) ? answer_rows : answer_lists;
    for (Signature& signature : signatures(calculation)) add(set.get(), {std::move(signature), answer});
    if (duckdb_register_scalar_function_set(connection, set.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB registers no function " + name};
    }
}

}  // namespace finance::adapters::duckdb
