#include "command/tables/row_evaluator.hpp"

#include <algorithm>

#include "command/argument_text.hpp"
#include "command/json_report.hpp"

namespace finance::command {

bool read_field(std::string_view raw, catalogue::Kind kind, std::string& scratch, host::Argument& value) {
    const std::string_view text = trimmed(field_text(raw, scratch));
    if (text.empty()) {
        value = host::Argument::missing();
        return true;
    }
    const auto given = read_value(kind, text);
    if (given) value = as_argument(*given);
    return given.has_value();
}

std::string field_count_words(std::size_t fields, std::size_t columns) {
    return "the row has " + std::to_string(fields) + (fields == 1 ? " field" : " fields") + " where the table has " +
           std::to_string(columns);
}

RowEvaluator::RowEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const RowForm& form)
    : host_{host},
      plan_{plan},
      form_{form},
      fields_(plan.used_columns),
      inputs_(plan.inputs.size(), host::Argument::absent()),
      scratch_(plan.inputs.size()),
      readable_(plan.inputs.size(), 1) {
    for (const PlannedCall& call : plan.calls) {
        auto& arguments = arguments_.emplace_back();
        for (const PlannedArgument& argument : call.arguments) arguments.push_back(as_argument(argument.constant));
    }
}

// ---- Calls

void RowEvaluator::read_inputs() {
    for (std::size_t i = 0; i < inputs_.size(); ++i) {
        const Input& input = plan_.inputs[i];
        readable_[i] = read_field(fields_[input.column], input.kind, scratch_[i], inputs_[i]) ? 1 : 0;
    }
}

RowEvaluator::Result RowEvaluator::call(std::size_t i) {
    const PlannedCall& call = plan_.calls[i];
    std::vector<host::Argument>& arguments = arguments_[i];
    for (std::size_t k = 0; k < arguments.size(); ++k) {
        const std::size_t input = call.arguments[k].input;
        if (input == no_input) continue;
        if (readable_[input] == 0) return {.unread = k + 1};
        arguments[k] = inputs_[input];
    }
    Result result;
    result.evaluation = host_.evaluate(call.calculation->name, arguments);
    result.verdict = verdict_of(*call.calculation, arguments, *result.evaluation);
    return result;
}

// ---- Reasons

std::string RowEvaluator::unread_text(const PlannedArgument& argument) {
    const Input& input = plan_.inputs[argument.input];
    return unreadable(input.kind, trimmed(field_text(fields_[input.column], scratch_[argument.input])));
}

std::string RowEvaluator::reason(std::size_t i, const Result& result) {
    const PlannedCall& call = plan_.calls[i];
    if (result.evaluation) return why(*call.calculation, arguments_[i], *result.evaluation);
    if (result.unread == 0) return misfit_;
    return catalogue::argument_label(*call.calculation, result.unread, call.arguments.size()) + ": " +
           unread_text(call.arguments[result.unread - 1]);
}

// ---- Rows

void RowEvaluator::append_columns(std::size_t i, const Result& result, std::string& output) {
    output += form_.delimiter;
    if (result.verdict == Verdict::answered) {
        append_value(output, *plan_.calls[i].calculation, result.evaluation->value);
    }
    if (!form_.status) return;
    output += form_.delimiter;
    append_field(output, reason(i, result), form_.delimiter);
}

void RowEvaluator::append_object(std::size_t i, const Result& result, std::uint64_t line, std::string& output) {
    const PlannedCall& call = plan_.calls[i];
    json_.clear();
    json_.object().member("line", static_cast<double>(line)).member("result", call.result);
    if (result.evaluation) {
        add_result(json_, *call.calculation, as_given(arguments_[i]), *result.evaluation, word_of(result.verdict));
    } else if (result.unread == 0) {
        add_refusal(json_, *call.calculation, misfit_);
    } else {
        const PlannedArgument& argument = call.arguments[result.unread - 1];
        add_refusal(json_, *call.calculation, unread_text(argument), {argument.parameter, result.unread});
    }
    output.append(json_.end_object().str()).push_back('\n');
}

void RowEvaluator::keep(const Record& record, std::string& output) const {
    if (!form_.objects) output.append(record.text).append(line_end(record));
}

Verdict RowEvaluator::evaluate(const Record& record, std::uint64_t line, std::string& output, RunSummary& summary) {
    const std::size_t fields = split_record(record, form_.delimiter, fields_);
    const bool fits = fields == plan_.columns;
    misfit_ = fits ? "" : field_count_words(fields, plan_.columns);
    if (fits) read_inputs();
    if (!form_.objects) output += record.text;
    if (!form_.objects && fields < plan_.columns) output.append(plan_.columns - fields, form_.delimiter);
    Verdict verdict = Verdict::answered;
    std::string reasons;
    for (std::size_t i = 0; i < plan_.calls.size(); ++i) {
        const Result result = fits ? call(i) : Result{};
        verdict = std::max(verdict, result.verdict);
        form_.objects ? append_object(i, result, line, output) : append_columns(i, result, output);
        if (result.verdict != Verdict::refused || !fits || !summary.lists_more()) continue;
        reasons.append(reasons.empty() ? "" : "; ").append(plan_.calls[i].result).append(": ");
        reasons.append(reason(i, result));
    }
    if (!form_.objects) output += line_end(record);
    summary.count(verdict);
    if (verdict == Verdict::refused) summary.list("line " + std::to_string(line) + ": " + (fits ? reasons : misfit_));
    return verdict;
}

}  // namespace finance::command
