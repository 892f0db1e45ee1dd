// A run of a job on a table: what is read, what is called, the header that is written, and how the run ends.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "command/outcome.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/open_table.hpp"
#include "command/tables/result_writer.hpp"
#include "command/tables/run_summary.hpp"
#include "command/tables/table_writer.hpp"

namespace finance::command {

struct TableRun {
    // UsageError, TableError.
    // variables: of the session, or null.
    TableRun(const TableOptions& given, const Variables* variables)
        : options{given},
          calls{read_calls(given.calls)},
          table{given},
          plan{plan_calls(calls, table.header(), variables)} {
        for (const std::string_view condition : given.where) {
            plan.where.push_back(plan_condition(condition, table.header(), variables));
        }
        plan.fields = given.fields;
    }

    [[nodiscard]] ResultForm form() const;

    const TableOptions& options;
    std::vector<CallExpression> calls;
    OpenTable table;
    CallPlan plan;
};

// job, things: "map", "rows". columns: the header of those before the results, as they stand. Opens the output, writes
// the header, does the body, in which a TableError ends the table early, and tells the summary. TableError where there is
// no output.
Outcome finish(const TableRun& run, std::string_view job, std::string_view things, std::string_view columns,
               const std::function<void(TableWriter&, RunSummary&)>& body);

}  // namespace finance::command
