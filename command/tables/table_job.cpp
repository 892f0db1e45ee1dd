#include "command/tables/table_job.hpp"

namespace finance::command {

namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

void append_name(std::string& line, std::string_view name, char delimiter) {
    if (!line.empty()) line += delimiter;
    append_field(line, name, delimiter);
}

}  // namespace

std::string header_text(const OpenTable& table, const CallPlan& plan, std::string_view columns,
                        const TableOptions& options) {
    if (options.json) return {};
    std::string mark{table.has_byte_order_mark() ? byte_order_mark : ""};
    if (!table.header().named) return mark;
    std::string line{columns};
    for (const PlannedCall& call : plan.calls) {
        append_name(line, call.result, table.delimiter());
        if (options.status) append_name(line, status_name(call), table.delimiter());
    }
    return mark.append(line).append(table.header().line_end);
}

TableWriter open_writer(const OpenTable& table, const TableOptions& options) {
    return {options.output, table.descriptor(), options.json ? '\0' : table.delimiter()};
}

Outcome table_outcome(const RunSummary& summary, const std::string& fault, std::string_view job,
                      std::string_view things, const TableOptions& options) {
    Outcome outcome;
    const bool refused = summary.of(Verdict::refused) > 0;
    if (refused || !fault.empty()) outcome.exit_status = exit_refused;
    if (!options.quiet) outcome.error = summary.text(job, things);
    if (options.strict && refused) outcome.error += "finance: stopped at the first refusal\n";
    if (!fault.empty()) outcome.error += "finance: " + fault + '\n';
    return outcome;
}

}  // namespace finance::command
