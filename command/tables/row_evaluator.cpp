#include "command/tables/row_evaluator.hpp"

#include <algorithm>
#include <cmath>

#include "command/argument_text.hpp"
#include "command/json_report.hpp"

namespace finance::command {

std::string field_count_words(std::size_t fields, std::size_t columns) {
    return "the row has " + std::to_string(fields) + (fields == 1 ? " field" : " fields") + " where the table has " +
           std::to_string(columns);
}

RowEvaluator::RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const RowForm& form)
    : host_{host}, plan_{plan}, form_{form}, rows_{plan, form.delimiter}, answers_(plan.calls.size()) {
    for (const PlannedCall& call : plan.calls) {
        auto& arguments = arguments_.emplace_back();
        for (const PlannedArgument& argument : call.arguments) arguments.push_back(argument.constant);
    }
}

// ---- Calls

void RowEvaluator::call_rows(std::size_t call) {
    columns_.clear();
    for (std::size_t k = 0; k < arguments_[call].size(); ++k) {
        const std::size_t input = plan_.calls[call].arguments[k].input;
        columns_.push_back(input == no_input ? host::Column{arguments_[call][k]} : rows_.column(input));
    }
    Answers& answers = answers_[call];
    (void)host_.evaluate_rows({.name = plan_.calls[call].calculation->name,
                               .columns = columns_,
                               .rows = rows_.size(),
                               .results = answers.values.data(),
                               .statuses = answers.statuses.data(),
                               .flagged = answers.flagged.data()});
}

void RowEvaluator::take_arguments(Place at) {
    const PlannedCall& call = plan_.calls[at.call];
    for (std::size_t k = 0; k < call.arguments.size(); ++k) {
        const std::size_t input = call.arguments[k].input;
        if (input != no_input) arguments_[at.call][k] = rows_.value(input, at.row);
    }
}

host::Evaluation RowEvaluator::evaluation_alone(std::size_t call) const {
    return host_.evaluate(plan_.calls[call].calculation->name, arguments_[call]);
}

// Takes the arguments too, but of an answer among others: it speaks for itself.
host::Evaluation RowEvaluator::evaluation(Place at) {
    if (form_.objects) {
        take_arguments(at);
        return evaluation_alone(at.call);
    }
    const Answers& answers = answers_[at.call];
    host::Evaluation evaluation;  // without what the module logged and noted
    evaluation.status = answers.statuses[at.row];
    evaluation.value = answers.values[at.row];
    evaluation.flagged = answers.flagged[at.row];
    if (std::isnan(evaluation.value)) take_arguments(at);
    return evaluation;
}

// ---- Results

// The position of the first that cannot be read; 0: all can.
std::size_t RowEvaluator::unread_argument(Place at) const {
    if (rows_.row(at.row).readable) return 0;
    const auto& arguments = plan_.calls[at.call].arguments;
    const auto unread = std::ranges::find_if(arguments, [&](const PlannedArgument& argument) {
        return argument.input != no_input && !rows_.readable(argument.input, at.row);
    });
    return unread == arguments.end() ? 0 : static_cast<std::size_t>(unread - arguments.begin()) + 1;
}

RowEvaluator::Result RowEvaluator::result(Place at) {
    Result result;
    if (!rows_.row(at.row).fits) return result;
    result.unread = unread_argument(at);
    if (result.unread != 0) return result;
    result.evaluation = evaluation(at);
    result.verdict =
        calls::answer_of(*plan_.calls[at.call].calculation, arguments_[at.call], *result.evaluation).verdict();
    return result;
}

// ---- Reasons

std::string RowEvaluator::unread_text(Place at, const PlannedArgument& argument) {
    const Input& input = plan_.inputs[argument.input];
    return unreadable(input.kind, rows_.text(input.column, at.row));
}

std::string RowEvaluator::reason(Place at, const Result& result) {
    const PlannedCall& call = plan_.calls[at.call];
    if (result.verdict == Verdict::answered) return {};
    if (result.evaluation) {
        const host::Evaluation evaluation = evaluation_alone(at.call);
        return calls::answer_of(*call.calculation, arguments_[at.call], evaluation).sentence();
    }
    if (result.unread == 0) return misfit_;
    return calls::argument_label(*call.calculation, result.unread, call.arguments.size()) + ": " +
           unread_text(at, call.arguments[result.unread - 1]);
}

// ---- Rows

void RowEvaluator::append_columns(Place at, const Result& result, std::string& output) {
    output += form_.delimiter;
    if (result.verdict == Verdict::answered) {
        append_value(output, *plan_.calls[at.call].calculation, result.evaluation->value);
    }
    if (!form_.status) return;
    output += form_.delimiter;
    append_field(output, reason(at, result), form_.delimiter);
}

void RowEvaluator::append_object(Place at, const Result& result, std::string& output) {
    const PlannedCall& call = plan_.calls[at.call];
    json_.clear();
    json_.object().member("line", static_cast<double>(rows_.row(at.row).line)).member("result", call.result);
    if (result.evaluation) {
        add_result(json_, calls::answer_of(*call.calculation, arguments_[at.call], *result.evaluation),
                   word_of(result.verdict));
    } else if (result.unread == 0) {
        add_refusal(json_, *call.calculation, misfit_);
    } else {
        const PlannedArgument& argument = call.arguments[result.unread - 1];
        add_refusal(json_, *call.calculation, unread_text(at, argument), {argument.parameter, result.unread});
    }
    output.append(json_.end_object().str()).push_back('\n');
}

// The summary lists why the row is refused.
Verdict RowEvaluator::append_results(std::size_t row, std::string& output, RunSummary& summary) {
    const bool fits = rows_.row(row).fits;
    misfit_ = fits ? "" : field_count_words(rows_.row(row).fields, plan_.columns);
    Verdict verdict = Verdict::answered;
    std::string reasons;
    for (std::size_t i = 0; i < plan_.calls.size(); ++i) {
        const Place at{i, row};
        const Result result = this->result(at);
        verdict = std::max(verdict, result.verdict);
        form_.objects ? append_object(at, result, output) : append_columns(at, result, output);
        if (result.verdict != Verdict::refused || !fits || !summary.lists_more()) continue;
        reasons.append(reasons.empty() ? "" : "; ").append(plan_.calls[i].result).append(": ");
        reasons.append(reason(at, result));
    }
    if (verdict == Verdict::refused && summary.lists_more()) {
        summary.list("line " + std::to_string(rows_.row(row).line) + ": " + (fits ? reasons : misfit_));
    }
    return verdict;
}

Verdict RowEvaluator::append_row(std::size_t row, std::string& output, RunSummary& summary) {
    const auto& [record, line, fields, fits, readable] = rows_.row(row);
    const bool is_row = fields > 0;
    if (!form_.objects) output += record.text;
    if (!form_.objects && is_row && fields < plan_.columns) output.append(plan_.columns - fields, form_.delimiter);
    const Verdict verdict = is_row ? append_results(row, output, summary) : Verdict::answered;
    if (!form_.objects) output += line_end(record);
    if (is_row) summary.count(verdict);
    return verdict;
}

bool RowEvaluator::evaluate(std::string& output, RunSummary& summary) {
    for (std::size_t i = 0; i < plan_.calls.size() && !form_.objects; ++i) call_rows(i);
    bool goes_on = true;
    for (std::size_t row = 0; row < rows_.size() && goes_on; ++row) {
        const std::size_t begin = output.size();
        goes_on = append_row(row, output, summary) != Verdict::refused || !form_.strict;
        if (!goes_on) output.resize(begin);
    }
    rows_.clear();
    return goes_on;
}

}  // namespace finance::command
