#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "command/jobs.hpp"
#include "command/options.hpp"
#include "command/tables/flow_groups.hpp"
#include "command/tables/progress.hpp"
#include "command/tables/table_reader.hpp"
#include "command/tables/table_run.hpp"
#include "command/usage_error.hpp"

namespace finance::command {

namespace {

[[noreturn]] void fail(const std::string& message) { throw UsageError{"fold: " + message, "finance help fold"}; }

// Each list of each call is one column.
void check_lists(const CallPlan& plan) {
    for (const PlannedCall& call : plan.calls) {
        const std::string name{call.calculation->name};
        if (catalogue::list_count(*call.calculation) == 0) fail(name + " takes no list; use finance map");
        std::vector<std::size_t> lists;
        for (const PlannedArgument& argument : call.arguments) {
            const catalogue::Parameter& parameter = call.calculation->parameters[argument.parameter];
            if (!is_list(parameter.kind)) continue;
            const bool column = argument.input != no_input;
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
          progress_{run.table.size(), run.options.quiet},
          columns_{run.plan.columns} {}

    // Refused rows, which belong to no group, go into the summary. TableError.
    void run(RunSummary& summary) {
        Block block;
        while (table_.next(block)) {
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
            const auto fault = groups_.add(record, cursor.line());
            if (!fault) continue;
            summary.count(Verdict::refused);
            if (summary.lists_more()) summary.list("line " + std::to_string(cursor.line()) + ": " + *fault);
        }
    }

    OpenTable& table_;
    FlowGroups& groups_;
    Progress progress_;
    std::uint64_t rows_ = 0;
    std::uint64_t bytes_ = 0;
    std::size_t columns_;
};

// ---- Groups into results

class GroupEvaluator {
public:
    // by: the names of the columns that group.
    GroupEvaluator(const host::EmbeddedHost& host, const TableRun& run, std::vector<std::string> by)
        : host_{host}, plan_{run.plan}, by_{std::move(by)}, writer_{run.form()} {}

    Verdict evaluate(const Group& group, std::string& output, RunSummary& summary) {
        const bool listed = summary.lists_more();
        const bool objects = writer_.form().objects;
        const std::size_t begin = output.size();
        std::string reasons;
        if (!objects) output += group.fields;
        const Verdict verdict = writer_.write(
            plan_, [&](std::size_t call) { return result(group, plan_.calls[call]); },
            [&](JsonText& json) { begin_object(json, group); }, output, listed ? &reasons : nullptr);
        if (!objects && by_.empty()) output.erase(begin, 1);  // no column, no delimiter
        if (!objects) output += writer_.form().line_end;
        summary.count(verdict);
        if (verdict == Verdict::refused && listed) summary.list(label_of(group) + reasons);
        return verdict;
    }

private:
    static std::string label_of(const Group& group) {
        std::string label;
        for (const std::string& text : group.texts) label.append(label.empty() ? "" : ", ").append(text);
        return label.empty() ? label : label + ": ";
    }

    void begin_object(JsonText& json, const Group& group) const {
        json.key("group").object();
        for (std::size_t i = 0; i < by_.size(); ++i) json.member(by_[i], group.texts[i]);
        json.end_object();
    }

    CallResult result(const Group& group, const PlannedCall& call) {
        if (const GroupFault* fault = fault_of(group, call)) {
            return {.fault = fault->reason, .at = argument_at(call, fault->input)};
        }
        take_arguments(group, call);
        evaluation_ = host_.evaluate(call.calculation->name, arguments_);
        return {.answer = calls::answer_of(*call.calculation, arguments_, evaluation_)};
    }

    // The one that the input is for; none for a fault of a whole row.
    static WrittenArgument argument_at(const PlannedCall& call, std::size_t input) {
        if (input == no_input) return {};
        const auto found = std::ranges::find(call.arguments, input, &PlannedArgument::input);
        return {found->parameter, static_cast<std::size_t>(found - call.arguments.begin()) + 1};
    }

    static const GroupFault* fault_of(const Group& group, const PlannedCall& call) {
        const auto concerns = [&](const GroupFault& fault) {
            if (fault.input == no_input) return true;
            return std::ranges::find(call.arguments, fault.input, &PlannedArgument::input) != call.arguments.end();
        };
        const auto fault = std::ranges::find_if(group.faults, concerns);
        return fault != group.faults.end() ? &*fault : nullptr;
    }

    void take_arguments(const Group& group, const PlannedCall& call) {
        arguments_.clear();
        for (const PlannedArgument& argument : call.arguments) {
            if (argument.input == no_input) {
                arguments_.push_back(argument.constant);
                continue;
            }
            const std::vector<double>& values = group.values[argument.input];
            arguments_.insert(arguments_.end(), values.begin(), values.end());
        }
    }

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    std::vector<std::string> by_;
    ResultWriter writer_;
    std::vector<host::Argument> arguments_;  // of the call whose result is written
    host::Evaluation evaluation_;
};

// In blocks, so that few results take few writes.
void write_groups(const FlowGroups& groups, GroupEvaluator& evaluator, TableWriter& writer, RunSummary& summary,
                  bool strict) {
    constexpr std::size_t block = std::size_t{64} * 1024;
    std::string output;
    for (const Group& group : groups.groups()) {
        const std::size_t begin = output.size();
        if (evaluator.evaluate(group, output, summary) == Verdict::refused && strict) {
            output.resize(begin);
            break;
        }
        if (output.size() < block) continue;
        writer.write(output);
        output.clear();
    }
    writer.write(output);
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
    TableRun run{options};
    const Header& header = run.table.header();
    check_lists(run.plan);
    const std::vector<std::size_t> by = group_columns(options, header);
    name_results(run.plan, run.calls, names_of(header, by), options.status);
    const std::string columns = group_header(header, by, run.table.delimiter());
    return finish(run, "fold", "groups", columns, [&](TableWriter& writer, RunSummary& summary) {
        FlowGroups groups{run.plan, by, header.names, run.table.delimiter()};
        GroupEvaluator evaluator{settings.host.get(), run, names_of(header, by)};
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
           "of the rows; any other argument a value, or a column that has one value in all rows of a group.\n"
           "\n" +
           table_options_help() + option_lines(table_options, 0, 1) +
           "\n"
           "Examples\n"
           "  finance fold 'XIRR(amount, date)' --by deal flows.csv\n"
           "  finance fold 'NPV(rate, amount) as value, IRR(amount)' --by fund,deal flows.csv\n";
}

Outcome fold_table(Words words, const Settings& settings) {
    TableOptions options = read_table_options(words, fold_job, settings.json);
    if (!options.digits) options.digits = settings.digits;
    return options.help ? Outcome{exit_answered, fold_help(), ""} : fold_rows(options, settings);
}

}  // namespace

constinit const Job fold_job{
    {"fold", "'CALL(...)' --by COLUMN [FILE]", "calls over groups of rows", table_options}, fold_table, fold_help};

}  // namespace finance::command
