#include "command/tables/row_evaluator.hpp"

#include <algorithm>
#include <cmath>

#include "command/argument_text.hpp"

namespace finance::command {

std::string field_count_words(std::size_t fields, std::size_t columns) {
    return "the row has " + std::to_string(fields) + (fields == 1 ? " field" : " fields") + " where the table has " +
           std::to_string(columns);
}

RowEvaluator::RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const ResultForm& form)
    : host_{host},
      plan_{plan},
      rows_{plan, form.delimiter},
      writer_{form},
      row_object_{form.names, form.delimiter},
      answers_(plan.calls.size()) {
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

// Takes the arguments too, but of an answer among others: it speaks for itself. A batch keeps no notes.
void RowEvaluator::take_evaluation(Place at) {
    const ResultForm& form = writer_.form();
    const Answers& answers = answers_[at.call];
    evaluation_ = {.status = answers.statuses[at.row],
                   .value = answers.values[at.row],
                   .flagged = answers.flagged[at.row],
                   .log = {},
                   .notes = {}};
    if (!form.objects && !std::isnan(evaluation_.value)) return;
    take_arguments(at);
    if (form.objects || (form.status && evaluation_.answered())) evaluation_ = evaluation_alone(at.call);
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

CallResult RowEvaluator::unread_result(Place at, std::size_t position) {
    const PlannedCall& call = plan_.calls[at.call];
    const PlannedArgument& argument = call.arguments[position - 1];
    const auto [column, kind] = plan_.inputs[argument.input];
    return {.fault = unreadable(plan_.fields, kind, rows_.text(column, at.row)),
            .at = {argument.parameter, position},
            .label = calls::argument_label(*call.calculation, position, call.arguments.size()) + ": "};
}

CallResult RowEvaluator::result(Place at) {
    if (!rows_.row(at.row).fits) return {.fault = misfit_};
    if (const std::size_t unread = unread_argument(at); unread != 0) return unread_result(at, unread);
    take_evaluation(at);
    return {.answer = calls::answer_of(*plan_.calls[at.call].calculation, arguments_[at.call], evaluation_)};
}

// ---- Rows

// The summary lists why the row is refused.
Verdict RowEvaluator::append_results(std::size_t row, std::string& output, RunSummary& summary) {
    const bool fits = rows_.row(row).fits;
    const bool listed = summary.lists_more();
    misfit_ = fits ? "" : field_count_words(rows_.row(row).fields, plan_.columns);
    std::string reasons;
    const Verdict verdict = writer_.write(
        plan_,
        [&](std::size_t call) {
            return result({call, row});
        },
        [&](JsonText& json) {
            json.member("line", static_cast<double>(rows_.row(row).line)).key("row");
            row_object_.append(json, rows_.row(row).record);
        },
        output, listed && fits ? &reasons : nullptr);
    if (verdict == Verdict::refused && listed) {
        summary.list("line " + std::to_string(rows_.row(row).line) + ": " + (fits ? reasons : misfit_));
    }
    return verdict;
}

Verdict RowEvaluator::append_row(std::size_t row, std::string& output, RunSummary& summary) {
    const auto& [record, line, fields, fits, readable] = rows_.row(row);
    const bool is_row = fields > 0;
    const bool objects = writer_.form().objects;
    if (!objects) output += record.text;
    if (!objects && is_row && fields < plan_.columns) output.append(plan_.columns - fields, writer_.form().delimiter);
    const Verdict verdict = is_row ? append_results(row, output, summary) : Verdict::answered;
    if (!objects) output += line_end(record);
    if (is_row) summary.count(verdict);
    return verdict;
}

bool RowEvaluator::evaluate(std::string& output, RunSummary& summary) {
    for (std::size_t i = 0; i < plan_.calls.size() && !writer_.form().objects; ++i) call_rows(i);
    bool goes_on = true;
    for (std::size_t row = 0; row < rows_.size() && goes_on; ++row) {
        const std::size_t begin = output.size();
        goes_on = append_row(row, output, summary) != Verdict::refused || !writer_.form().strict;
        if (!goes_on) output.resize(begin);
    }
    rows_.clear();
    return goes_on;
}

}  // namespace finance::command
