#include "command/tables/fold_job.hpp"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "command/json_report.hpp"
#include "command/tables/call_plan.hpp"
#include "command/tables/flow_groups.hpp"
#include "command/tables/open_table.hpp"
#include "command/tables/progress.hpp"
#include "command/tables/row_evaluator.hpp"
#include "command/tables/table_job.hpp"
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
    Gathering(OpenTable& table, FlowGroups& groups, const TableOptions& options)
        : table_{table},
          groups_{groups},
          progress_{table.size(), options.quiet},
          several_columns_{table.header().names.size() > 1} {}

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
        RecordCursor cursor{block.text(), table_.delimiter()};
        std::uint64_t line = block.first_line;
        for (Record record; cursor.next(record);) {
            const bool empty = record.text.empty() && several_columns_;
            if (const auto fault = empty ? std::nullopt : groups_.add(record, line)) {
                summary.count(Verdict::refused);
                if (summary.lists_more()) summary.list("line " + std::to_string(line) + ": " + *fault);
            }
            rows_ += empty ? 0 : 1;
            line += 1;
            if (record.quoted) line += static_cast<std::uint64_t>(std::ranges::count(record.text, '\n'));
        }
    }

    OpenTable& table_;
    FlowGroups& groups_;
    Progress progress_;
    std::uint64_t rows_ = 0;
    std::uint64_t bytes_ = 0;
    bool several_columns_;
};

// ---- Groups into results

class GroupEvaluator {
public:
    GroupEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, std::vector<std::string> by,
                   const OpenTable& table, const TableOptions& options)
        : host_{host},
          plan_{plan},
          by_{std::move(by)},
          delimiter_{table.delimiter()},
          line_end_{table.header().line_end},
          with_status_{options.status},
          objects_{options.json} {}

    Verdict evaluate(const Group& group, std::string& output, RunSummary& summary) {
        Verdict verdict = Verdict::answered;
        std::string label;
        for (const std::string& text : group.texts) label.append(label.empty() ? "" : ", ").append(text);
        std::string reasons;
        std::string columns = group.fields;
        for (const PlannedCall& call : plan_.calls) {
            const Result result = this->call(group, call);
            verdict = std::max(verdict, result.verdict);
            objects_ ? append_object(group, call, result, output) : append_columns(call, result, columns);
            if (result.verdict != Verdict::refused) continue;
            reasons.append(reasons.empty() ? "" : "; ").append(call.result + ": " + reason(call, result));
        }
        if (!objects_) output.append(columns, by_.empty() ? 1 : 0).append(line_end_);  // no column, no delimiter
        summary.count(verdict);
        if (verdict == Verdict::refused) summary.list(label + (label.empty() ? "" : ": ") + reasons);
        return verdict;
    }

private:
    struct Result {
        Verdict verdict = Verdict::refused;
        const GroupFault* fault = nullptr;  // or else it was evaluated
        std::vector<host::Argument> arguments{};
        host::Evaluation evaluation{};
    };

    Result call(const Group& group, const PlannedCall& call) {
        if (const GroupFault* fault = fault_of(group, call)) return {.fault = fault};
        Result result{.arguments = arguments_of(group, call)};
        result.evaluation = host_.evaluate(call.calculation->name, result.arguments);
        result.verdict = calls::answer_of(*call.calculation, result.arguments, result.evaluation).verdict();
        return result;
    }

    static std::string reason(const PlannedCall& call, const Result& result) {
        return result.fault != nullptr
                   ? result.fault->reason
                   : calls::answer_of(*call.calculation, result.arguments, result.evaluation).sentence();
    }

    void append_columns(const PlannedCall& call, const Result& result, std::string& columns) const {
        columns += delimiter_;
        if (result.verdict == Verdict::answered) append_value(columns, *call.calculation, result.evaluation.value);
        if (with_status_) append_field(columns += delimiter_, reason(call, result), delimiter_);
    }

    void append_object(const Group& group, const PlannedCall& call, const Result& result, std::string& output) {
        json_.clear();
        json_.object().key("group").object();
        for (std::size_t i = 0; i < by_.size(); ++i) json_.member(by_[i], group.texts[i]);
        json_.end_object().member("result", call.result);
        if (result.fault == nullptr) {
            add_result(json_, calls::answer_of(*call.calculation, result.arguments, result.evaluation),
                       word_of(result.verdict));
        } else {
            add_refusal(json_, *call.calculation, result.fault->reason, argument_at(call, result.fault->input));
        }
        output.append(json_.end_object().str()).push_back('\n');
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

    static std::vector<host::Argument> arguments_of(const Group& group, const PlannedCall& call) {
        std::vector<host::Argument> arguments;
        for (const PlannedArgument& argument : call.arguments) {
            if (argument.input == no_input) {
                arguments.push_back(argument.constant);
                continue;
            }
            const std::vector<double>& values = group.values[argument.input];
            arguments.insert(arguments.end(), values.begin(), values.end());
        }
        return arguments;
    }

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    std::vector<std::string> by_;
    char delimiter_;
    std::string_view line_end_;
    bool with_status_;
    bool objects_;
    JsonText json_;
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
    const std::vector<CallExpression> calls = read_calls(options.calls);
    OpenTable table{options};
    CallPlan plan = plan_calls(calls, table.header());
    check_lists(plan);
    const std::vector<std::size_t> by = group_columns(options, table.header());
    name_results(plan, calls, names_of(table.header(), by), options.status);
    TableWriter writer = open_writer(table, options);
    writer.write(header_text(table, plan, group_header(table.header(), by, table.delimiter()), options));
    FlowGroups groups{plan, by, table.header().names, table.delimiter()};
    GroupEvaluator evaluator{settings.host.get(), plan, names_of(table.header(), by), table, options};
    RunSummary summary;
    std::string fault;
    try {
        Gathering{table, groups, options}.run(summary);
        write_groups(groups, evaluator, writer, summary, options.strict);
        writer.close();
    } catch (const TableError& error) {
        fault = error.what();
    }
    return table_outcome(summary, fault, "fold", "groups", options);
}

}  // namespace

std::string fold_help() {
    return "fold: calls over lists whose values stand one below the other, one result a group of rows\n"
           "\n"
           "  finance fold 'CALL(ARGUMENT, ...) [as NAME], ...' [--by COLUMN,...] [FILE] [OPTION...]\n"
           "\n"
           "Rows with the same texts in the columns after --by are one group, wherever they stand; groups stand in\n"
           "the order of their first rows. Without --by all rows are one group. A list takes a column, in the order\n"
           "of the rows; any other argument a value, or a column that has one value in all rows of a group.\n"
           "\n" +
           std::string{table_options_help()} +
           "  --by COLUMN,...    the columns that tell groups apart\n"
           "\n"
           "Examples\n"
           "  finance fold 'XIRR(amount, date)' --by deal flows.csv\n"
           "  finance fold 'NPV(rate, amount) as value, IRR(amount)' --by fund,deal flows.csv\n";
}

Outcome fold_table(Words words, const Settings& settings) {
    const TableOptions options = read_table_options(words, "fold", true, settings.json);
    return options.help ? Outcome{exit_answered, fold_help(), ""} : fold_rows(options, settings);
}

}  // namespace finance::command
