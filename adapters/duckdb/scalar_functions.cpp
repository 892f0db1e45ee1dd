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

// Rows that hold a value which is not meant are dropped; in the way of an answer CallRefused for the first.
void drop_unmeant(const Calculation& calculation, ChunkColumns& chunk, Run run, Way way) {
    std::vector<host::Argument> arguments(chunk.columns().size(), host::Argument::absent());
    for (std::size_t row = run.first; row < run.last; ++row) {
        chunk.fill(arguments, row);
        const int unmeant = calls::unmeant_argument(calculation, arguments);
        if (unmeant == 0) continue;
        chunk.rows().drop(row);
        (void)value_of(calls::answer_of(calculation, arguments, calls::refused_at(unmeant)), way);
    }
}

// CallRefused for the first row of a batch that is.
void refuse_first(const Calculation& calculation, const ChunkColumns& chunk, Run run, const Marks& marks) {
    std::vector<host::Argument> arguments(chunk.columns().size(), host::Argument::absent());
    for (std::size_t row = 0; row < run.last - run.first; ++row) {
        if (marks.statuses[row] == ZELKOVAN_STATUS_SUCCESS) continue;
        chunk.fill(arguments, run.first + row);
        const host::Evaluation refused{
            .status = marks.statuses[row], .flagged = marks.flagged[row], .log = {}, .notes = {}};
        (void)value_of(calls::answer_of(calculation, arguments, refused));
    }
}

// The rows of one run that stand together and are all meant, in one batch; a NaN where one is refused.
void answer_run(const Calculation& calculation, const ChunkColumns& chunk, Run run, Answers& answers, Marks& marks,
                Way way) {
    const auto columns = chunk.columns_from(run.first);
    const host::Batch batch{.name = calculation.name,
                            .columns = columns,
                            .rows = run.last - run.first,
                            .results = &answers.values()[run.first],
                            .statuses = marks.statuses.data(),
                            .flagged = marks.flagged.data()};
    const std::size_t refused = shared_host().evaluate_rows(batch);
    if (refused > 0 && way == Way::answer) refuse_first(calculation, chunk, run, marks);
    drop_unheld(calculation, chunk, run, answers);
}

struct Function {
    Signature signature;
    Way way;
    void (*answer)(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result, Way way);
};

void call(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_vector result) {
    or_tell(
        [&] {
            const auto& function = *static_cast<const Function*>(duckdb_scalar_function_get_extra_info(info));
            function.answer(function.signature, chunk, result, function.way);
        },
        [&](const char* sentence) { duckdb_scalar_function_set_error(info, sentence); });
}

void add(duckdb_scalar_function_set set, Function function) {
    const Calculation& calculation = *function.signature.calculation;
    const Owned<duckdb_scalar_function> added{duckdb_create_scalar_function()};
    duckdb_scalar_function_set_name(added.get(), way_name(calculation, function.way).c_str());
    for (std::size_t i = 0; i < function.signature.types.size(); ++i) {
        const Type type = function.signature.types[i];
        const bool list = is_list(calculation.parameters[i].kind);
        duckdb_scalar_function_add_parameter(added.get(), (list ? list_type(type) : logical_type(type)).get());
    }
    const bool text = function.way == Way::reason;
    duckdb_scalar_function_set_return_type(added.get(),
                                           (text ? logical_type(Type::text) : result_type(calculation)).get());
    duckdb_scalar_function_set_function(added.get(), call);
    auto kept = std::make_unique<Function>(std::move(function));
    duckdb_scalar_function_set_extra_info(added.get(), kept.release(), delete_kept<Function>);
    if (duckdb_add_scalar_function_to_set(set, added.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB takes no function of " + function_name(calculation)};
    }
}

}  // namespace

void answer_rows(const Signature& signature, duckdb_data_chunk chunk, duckdb_vector result, Way way) {
    const Calculation& calculation = *signature.calculation;
    ChunkColumns columns{chunk};
    for (const Type type : signature.types) columns.read(type);
    RowMask& rows = columns.rows();
    Answers answers{signature, result, rows, way};
    Marks marks{rows.rows()};
    for (Run run = rows.next_run(0); !run.empty(); run = rows.next_run(run.last)) {
        if (calls::all_meant(calculation, columns.columns_from(run.first), run.last - run.first)) {
            answer_run(calculation, columns, run, answers, marks, way);
        } else {
            drop_unmeant(calculation, columns, run, way);
            run.last = run.first;  // those that are left of it come again
        }
    }
    std::vector<host::Argument> arguments(columns.columns().size(), host::Argument::absent());
    answers.finish([&](std::size_t row) {
        columns.fill(arguments, row);
        return why_no_value(calculation, arguments);
    });
}

void register_scalar(duckdb_connection connection, const Calculation& calculation, Way way) {
    const std::string name = way_name(calculation, way);
    const Owned<duckdb_scalar_function_set> set{duckdb_create_scalar_function_set(name.c_str())};
    auto* const answer = is_scalar(calculation) ? answer_rows : answer_lists;
    for (Signature& signature : signatures(calculation)) add(set.get(), {std::move(signature), way, answer});
    if (duckdb_register_scalar_function_set(connection, set.get()) == DuckDBError) {
        throw std::runtime_error{"DuckDB registers no function " + name};
    }
}

}  // namespace finance::adapters::duckdb
