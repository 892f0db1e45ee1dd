#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "command/interruption.hpp"
#include "command/jobs.hpp"
#include "command/options.hpp"
#include "command/tables/flow_groups.hpp"
#include "command/tables/group_evaluator.hpp"
#include "command/tables/progress.hpp"
#include "command/tables/row_filter.hpp"
#include "command/tables/table_reader.hpp"
#include "command/tables/table_run.hpp"
#include "command/text_layout.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

[[noreturn]] void fail(const std::string& message) { throw UsageError{"fold: " + message, "finance help fold"}; }

// Each list of each call is one column.
void check_lists(const CallPlan& plan) {
    for (const PlannedCall& call : plan.calls) {
        if (call.is_formula()) continue;
        const std::string name{call.calculation->name};
        if (catalogue::list_count(*call.calculation) == 0) fail(name + " takes no list; use finance map");
        std::vector<std::size_t> lists;
        for (const PlannedArgument& argument : call.arguments) {
            const catalogue::Parameter& parameter = call.calculation->parameters[argument.parameter];
            if (!is_list(parameter.kind)) continue;
            const bool column = slot_of(plan, argument) != no_input;
            if (!column || std::ranges::find(lists, argument.parameter) != lists.end()) {
                fail(name + ": " + std::string{parameter.name} + " must be one column");
            }
            lists.push_back(argument.parameter);
        }
    }
}

std::vector<std::size_t> group_columns(const TableOptions& options, const Header& header) {
    std::vector<std::size_t> columns;
    for (const std::string_view by : options.by) {
        for (const Operand& operand : read_columns(by)) columns.push_back(header.column(operand));
    }
    return columns;
}

// ---- Rows into groups

class Gathering {
public:
    Gathering(TableRun& run, FlowGroups& groups)
        : table_{run.table},
          groups_{groups},
          filter_{run.plan, run.table.header().names, run.table.delimiter()},
          progress_{run.table.size(), run.options.quiet},
          columns_{run.plan.columns} {}

    // Refused rows, which belong to no group, go into the summary. TableError.
    void run(RunSummary& summary) {
        Block block;
        while (table_.next(block)) {
            stop_if_interrupted();
            add(block, summary);
            bytes_ += block.text().size();
            progress_.update(rows_, bytes_);
        }
    }

private:
    void add(const Block& block, RunSummary& summary) {
        RowCursor cursor{block, table_.delimiter(), columns_};
        for (Record record; cursor.next(record);) {
            if (cursor.empty_line()) continue;
            ++rows_;
            const RowFilter::Verdict verdict = filter_.of(record);
            if (verdict == RowFilter::Verdict::left_out) continue;
            const bool known = verdict == RowFilter::Verdict::taken;
            const auto fault = known ? groups_.add(record, cursor.line()) : std::optional{filter_.fault()};
            if (!fault) continue;
            summary.count(Verdict::refused);
            if (summary.lists_more()) summary.list("line " + std::to_string(cursor.line()) + ": " + *fault);
        }
    }

    OpenTable& table_;
    FlowGroups& groups_;
    RowFilter filter_;
    Progress progress_;
    std::uint64_t rows_ = 0;
    std::uint64_t bytes_ = 0;
    std::size_t columns_;
};

// ---- Groups into results

// In blocks, so that few results take few writes.
void write_groups(const FlowGroups& groups, GroupEvaluator& evaluator, TableWriter& writer, RunSummary& summary,
                  bool strict) {
    constexpr std::size_t block = std::size_t{64} * 1024;
    std::string output;
    RunSummary unwritten;  // of what stands there
    const auto write = [&] {
        writer.write(output);
        summary.add(unwritten);
        output.clear();
        unwritten.clear();
    };
    for (const Group& group : groups.groups()) {
        stop_if_interrupted();
        const std::size_t begin = output.size();
        if (is_failure(evaluator.evaluate(group, output, unwritten)) && strict) {
            output.resize(begin);
            break;
        }
        if (output.size() >= block) write();
    }
    write();
}

std::string group_header(const Header& header, const std::vector<std::size_t>& by, char delimiter) {
    std::string text;
    for (const std::size_t column : by) {
        if (!text.empty()) text += delimiter;
        append_field(text, header.names[column], delimiter);
    }
    return text;
}

std::vector<std::string> names_of(const Header& header, const std::vector<std::size_t>& columns) {
    std::vector<std::string> names;
    names.reserve(columns.size());
    for (const std::size_t column : columns) names.push_back(header.names[column]);
    return names;
}

Outcome fold_rows(const TableOptions& options, const Settings& settings) {
    TableRun run{options, settings.variables};
    const Header& header = run.table.header();
    check_lists(run.plan);
    const std::vector<std::size_t> by = group_columns(options, header);
    name_results(run.plan, run.calls, names_of(header, by), options.status);
    const std::string columns = group_header(header, by, run.table.delimiter());
    return finish(run, "fold", "groups", columns, [&](TableWriter& writer, RunSummary& summary) {
        FlowGroups groups{run.plan, by, header.names, run.table.delimiter()};
        GroupEvaluator evaluator{settings.host.get(), run.plan, run.form(), names_of(header, by)};
        Gathering{run, groups}.run(summary);
        write_groups(groups, evaluator, writer, summary, options.strict);
    });
}

std::string fold_help() {
    return "fold: calls over lists whose values stand one below the other, one result a group of rows\n"
           "\n"
           "  finance fold 'CALL(ARGUMENT, ...) [as NAME], ...' [--by COLUMN,...] [FILE] [OPTION...]\n"
           "\n"
           "Rows with the same texts in the columns after --by are one group, wherever they stand; groups stand in\n"
           "the order of their first rows. Without --by all rows are one group. A list takes a column, in the order\n"
           "of the rows, and where it has dates (XIRR, XNPV) in their order, the earliest first, or a formula of\n"
           "columns, a value a row; any other argument a value, or a column that has one value in all rows of a "
           "group.\n"
           "A formula alone takes the results before it, and such columns.\n"
           "\n" +
           table_options_help(true) +
           "\n"
           "Examples\n"
           "  finance fold 'XIRR(amount, date)' --by deal flows.csv\n"
           "  finance fold 'NPV(rate, amount) as value, IRR(amount)' --by fund,deal flows.csv\n";
}

// What calls and tables have to say points to map, whose they are first.
Outcome fold_table(Words words, const Settings& settings) {
    const TableOptions options = read_table_options(words, fold_job, settings);
    if (options.help) return shown_help(fold_help());
    try {
        return fold_rows(options, settings);
    } catch (const UsageError& error) {
        if (error.hint() != "finance help map") throw;
        throw UsageError{error.what(), "finance help fold", error.subject()};
    }
}

}  // namespace

constinit const Job fold_job{
    {"fold", "'CALL(...)' --by COLUMN [FILE]", "calls over groups of rows", table_options}, fold_table, fold_help};

}  // namespace finance::command
