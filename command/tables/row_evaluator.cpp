#include "command/tables/row_evaluator.hpp"

#include <algorithm>
#include <cmath>

#include "catalogue/text.hpp"

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
      answers_(plan.calls.size()),
      carried_(plan.formulas.empty() ? 0 : plan.calls.size()),
      formulas_(plan.formulas.size(), std::vector<double>(RowColumns::most_rows)) {
    for (const PlannedCall& call : plan.calls) {
        auto& arguments = arguments_.emplace_back();
        for (const PlannedArgument& argument : call.arguments) arguments.push_back(argument.constant);
    }
}

// ---- Calls

void RowEvaluator::calculate(std::size_t formula) {
    sources_.clear();
    for (const FormulaSource& source : plan_.formulas[formula].sources) {
        sources_.push_back(source.result ? carried_[source.index].values.data() : rows_.numbers(source.index));
    }
    plan_.formulas[formula].text.formula.values(sources_, stack_, formulas_[formula].data());
}

void RowEvaluator::call_rows(std::size_t call) {
    columns_.clear();
    for (std::size_t k = 0; k < arguments_[call].size(); ++k) {
        const auto& [parameter, input, formula, constant] = plan_.calls[call].arguments[k];
        if (formula != no_input) {
            calculate(formula);
            columns_.push_back(host::Column::numbers(formulas_[formula].data()));
        } else {
            columns_.push_back(input == no_input ? host::Column{arguments_[call][k]} : rows_.column(input));
        }
    }
    Answers& answers = answers_[call];
    if (plan_.calls[call].is_formula()) {
        answers.values = formulas_[plan_.calls[call].arguments.front().formula];
        return;
    }
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
        const auto& [parameter, input, formula, constant] = call.arguments[k];
        if (input != no_input) arguments_[at.call][k] = rows_.value(input, at.row);
        if (formula != no_input) arguments_[at.call][k] = formulas_[formula][at.row];
    }
}

host::Evaluation RowEvaluator::evaluation_alone(std::size_t call) const {
    return host_.evaluate(plan_.calls[call].calculation->name, arguments_[call]);
}

// Takes the arguments too, but of an answer among others: it speaks for itself, unless it was searched. A batch keeps no
// notes.
void RowEvaluator::take_evaluation(Place at) {
    const ResultForm& form = writer_.form();
    const Answers& answers = answers_[at.call];
    evaluation_.status = answers.statuses[at.row];
    evaluation_.value = answers.values[at.row];
    evaluation_.flagged = answers.flagged[at.row];
    evaluation_.log.clear();
    evaluation_.notes.clear();
    if (plan_.calls[at.call].is_formula()) return;
    if (!form.objects && std::isfinite(evaluation_.value) && !plan_.calls[at.call].calculation->searches) return;
    take_arguments(at);
    const bool may_have_notes = form.status && evaluation_.answered() && std::isnan(evaluation_.value);
    if (form.objects || may_have_notes) evaluation_ = evaluation_alone(at.call);
}

// ---- Results

// The input that cannot be read of an argument; none where it can.
std::size_t RowEvaluator::unread_input(const PlannedArgument& argument, std::size_t row) const {
    const auto unread = [&](std::size_t input) { return !rows_.readable(input, row); };
    if (argument.input != no_input) return unread(argument.input) ? argument.input : no_input;
    if (argument.formula == no_input) return no_input;
    for (const FormulaSource& source : plan_.formulas[argument.formula].sources) {
        if (!source.result && unread(source.index)) return source.index;
    }
    return no_input;
}

// The position of the first that cannot be read; 0: all can.
std::size_t RowEvaluator::unread_argument(Place at) const {
    if (rows_.row(at.row).readable) return 0;
    const auto& arguments = plan_.calls[at.call].arguments;
    const auto unread = std::ranges::find_if(
        arguments, [&](const PlannedArgument& argument) { return unread_input(argument, at.row) != no_input; });
    return unread == arguments.end() ? 0 : static_cast<std::size_t>(unread - arguments.begin()) + 1;
}

CallResult RowEvaluator::unread_result(Place at, std::size_t position) {
    const PlannedCall& call = plan_.calls[at.call];
    const PlannedArgument& argument = call.arguments[position - 1];
    const Input& input = plan_.inputs[unread_input(argument, at.row)];
    const std::string fault = unreadable(plan_.fields, input, rows_.text(input.column, at.row));
    if (call.is_formula()) return {.fault = fault};
    const std::string label = calls::argument_label(*call.calculation, position, call.arguments.size()) + ": ";
    return {.fault = label + fault, .label = label.size(), .at = {argument.parameter, position}};
}

CallResult RowEvaluator::result(Place at) {
    if (!rows_.row(at.row).fits) return {.fault = rows_.misfit(at.row)};
    if (const std::size_t unread = unread_argument(at); unread != 0) return unread_result(at, unread);
    if (!plan_.formulas.empty()) {
        const PlannedCall* refused = refused_source(
            plan_, plan_.calls[at.call], [&](std::size_t source) { return carried_[source].refused[at.row] != 0; });
        if (refused != nullptr) return {.fault = catalogue::shown(refused->result) + " has no answer"};
    }
    take_evaluation(at);
    return {.answer = calls::answer_of(host_, *plan_.calls[at.call].calculation, arguments_[at.call], evaluation_)};
}

void RowEvaluator::carry(std::size_t call) {
    Carried& carried = carried_[call];
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (rows_.row(row).fields == 0) continue;
        const CallResult of_row = result({call, row});
        const Verdict verdict = of_row.verdict();
        const bool answered = verdict == Verdict::answered;
        carried.values[row] = answered ? of_row.answer->value() : host::Argument::missing().number();
        carried.refused[row] = is_failure(verdict) ? 1 : 0;
    }
}

// ---- Rows

// The summary lists why the row is refused.
Verdict RowEvaluator::append_results(std::size_t row, std::string& output, RunSummary& summary) {
    const bool fits = rows_.row(row).fits;
    const bool listed = summary.lists_more();
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
    if (is_failure(verdict) && listed) {
        summary.list("line " + std::to_string(rows_.row(row).line) + ": " + (fits ? reasons : rows_.misfit(row)));
    }
    return verdict;
}

Verdict RowEvaluator::append_row(std::size_t row, std::string& output, RunSummary& summary) {
    const auto& [record, line, fields, fits, readable, place] = rows_.row(row);
    const bool is_row = fields > 0;
    const bool objects = writer_.form().objects;
    if (!objects) output += record.text;
    if (!objects && is_row && fields < plan_.columns) output.append(plan_.columns - fields, writer_.form().delimiter);
    const Verdict verdict = is_row ? append_results(row, output, summary) : Verdict::answered;
    if (!objects) output += line_end(record);
    if (is_row) summary.count(verdict);
    return verdict;
}

// Such answers need no look at their arguments, nor have they notes.
void RowEvaluator::find_plain_rows() {
    for (std::size_t row = 0; row < rows_.size(); ++row) plain_[row] = rows_.row(row).readable ? 1 : 0;
    for (std::size_t call = 0; call < plan_.calls.size(); ++call) {
        const Answers& answers = answers_[call];
        const bool searched = plan_.calls[call].calculation->searches;
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            const bool answered =
                answers.statuses[row] == ZELKOVAN_STATUS_SUCCESS && std::isfinite(answers.values[row]);
            if (searched || !answered) plain_[row] = 0;
        }
    }
}

// false: the line may be too long for the buffer.
bool RowEvaluator::write_plain_row(std::size_t row, std::string& output) {
    const Record& record = rows_.row(row).record;
    const std::string_view end = line_end(record);
    const std::size_t bytes = record.text.size() + plan_.calls.size() * ResultWriter::answer_room + end.size();
    if (bytes > LineBuffer::most_bytes) return false;
    char* to = copy_text(lines_.room(bytes, output), record.text);
    for (std::size_t call = 0; call < plan_.calls.size(); ++call) {
        to = writer_.write_answer(to, plan_.calls[call], answers_[call].values[row]);
    }
    lines_.end_at(copy_text(to, end));
    return true;
}

bool RowEvaluator::evaluate(std::string& output, RunSummary& summary) {
    const bool in_rows = !writer_.form().objects || !plan_.formulas.empty();
    for (std::size_t i = 0; i < plan_.calls.size() && in_rows; ++i) {
        call_rows(i);
        if (plan_.calls[i].wanted_later) carry(i);
    }
    if (!writer_.form().objects) find_plain_rows();
    bool goes_on = true;
    for (std::size_t row = 0; row < rows_.size() && goes_on; ++row) {
        if (plain_[row] != 0 && write_plain_row(row, output)) {
            summary.count(Verdict::answered);
            continue;
        }
        lines_.flush(output);
        const std::size_t begin = output.size();
        goes_on = !is_failure(append_row(row, output, summary)) || !writer_.form().strict;
        if (!goes_on) output.resize(begin);
    }
    lines_.flush(output);
    rows_.clear();
    return goes_on;
}

}  // namespace finance::command
