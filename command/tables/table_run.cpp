#include "command/tables/table_run.hpp"

#include <exception>
#include <string>

#include "command/tables/table_record.hpp"
#include "command/words.hpp"

namespace finance::command {

namespace {

void append_name(std::string& line, std::string_view name, char delimiter) {
    if (!line.empty()) line += delimiter;
    append_field(line, name, delimiter);
}

// Nothing but the byte-order mark where the table has no header; nothing at all before objects.
std::string header_text(const TableRun& run, std::string_view columns) {
    if (run.options.json) return {};
    std::string mark{run.table.has_byte_order_mark() ? byte_order_mark : ""};
    if (!run.table.header().named) return mark;
    std::string line{columns};
    for (const PlannedCall& call : run.plan.calls) {
        append_name(line, call.result, run.table.delimiter());
        if (run.options.status) append_name(line, status_name(call), run.table.delimiter());
    }
    return mark.append(line).append(run.table.header().line_end);
}

}  // namespace

ResultForm TableRun::form() const {
    return {.delimiter = table.delimiter(),
            .line_end = table.header().line_end,
            .status = options.status,
            .objects = options.json,
            .numbers = {.decimals = options.digits, .decimal = options.fields.decimal_comma ? ',' : '.'},
            .names = table.header().names,
            .strict = options.strict};
}

Outcome finish(const TableRun& run, std::string_view job, std::string_view things, std::string_view columns,
               const std::function<void(TableWriter&, RunSummary&)>& body) {
    const TableOptions& options = run.options;
    TableWriter writer{options.output, run.table.descriptor(), options.json ? '\0' : run.table.delimiter()};
    writer.write(header_text(run, columns));
    RunSummary summary;
    std::string fault;
    const auto sentence = [](const std::exception& error) { return std::string{"finance: "} + error.what() + '\n'; };
    try {
        body(writer, summary);
        if (options.strict && summary.failures() > 0) fault = "finance: stopped at the first refusal\n";
        if (fault.empty()) writer.keep();
    } catch (const TableError& error) {
        fault = sentence(error);
    } catch (const OutputError& error) {
        fault = sentence(error);
    }
    const bool failed = summary.failures() > 0 || !fault.empty();
    const bool kept = fault.empty() || !writer.file().replaces();
    Outcome outcome{.exit_status = failed ? exit_refused : exit_answered};
    if (!options.quiet) {
        outcome.error = kept ? summary.text(job, things) : summary.text_unkept(job, writer.file().unchanged());
    }
    outcome.error += fault;
    return outcome;
}

}  // namespace finance::command
