// What the jobs on tables share: the header that they write, and how they end.
#pragma once

#include <string>
#include <string_view>

#include "command/outcome.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/open_table.hpp"
#include "command/tables/run_summary.hpp"
#include "command/tables/table_writer.hpp"

namespace finance::command {

// columns: those before the results, as they stand. Nothing but the byte-order mark where the table has no header;
// nothing at all before objects.
std::string header_text(const OpenTable& table, const CallPlan& plan, std::string_view columns,
                        const TableOptions& options);

// Where results go. Objects have no fields that a delimiter separates.
TableWriter open_writer(const OpenTable& table, const TableOptions& options);

// fault: why the table ended early; empty where it did not. things: that were counted.
Outcome table_outcome(const RunSummary& summary, const std::string& fault, std::string_view job,
                      std::string_view things, const TableOptions& options);

}  // namespace finance::command
