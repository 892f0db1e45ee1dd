#include "command/tables/group_evaluator.hpp"

#include <algorithm>
#include <utility>

#include "calls/lists.hpp"
#include "calls/meant.hpp"
#include "catalogue/text.hpp"

namespace finance::command {

namespace {

std::string label_of(const Group& group) {
    std::string label;
    for (const std::string& text : group.texts) label.append(label.empty() ? "" : ", ").append(catalogue::shown(text));
    return label.empty() ? label : label + ": ";
}

}  // namespace

GroupEvaluator::GroupEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const ResultForm& form,
                               std::vector<std::string> by)
    : host_{host},
      plan_{plan},
      by_{std::move(by)},
      writer_{form},
      results_(plan.calls.size()),
      refused_(plan.calls.size()) {}

Verdict GroupEvaluator::evaluate(const Group& group, std::string& output, RunSummary& summary) {
    const bool listed = summary.lists_more();
    const bool objects = writer_.form().objects;
    const std::size_t begin = output.size();
    std::string reasons;
    if (!objects) output += group.fields;
    const Verdict verdict = writer_.write(
        plan_, [&](std::size_t call) { return result(group, call); },
        [&](JsonText& json) { begin_object(json, group); }, output, listed ? &reasons : nullptr);
    if (!objects && by_.empty()) output.erase(begin, 1);  // no column, no delimiter
    if (!objects) output += writer_.form().line_end;
    summary.count(verdict);
    if (is_failure(verdict) && listed) summary.list(label_of(group) + reasons);
    return verdict;
}

void GroupEvaluator::begin_object(JsonText& json, const Group& group) const {
    json.key("group").object();
    for (std::size_t i = 0; i < by_.size(); ++i) json.member(by_[i], group.texts[i]);
    json.end_object();
}

// Results are asked for in order, so that later ones find those before.
CallResult GroupEvaluator::result(const Group& group, std::size_t index) {
    CallResult made = evaluated(group, plan_.calls[index]);
    const bool answered = made.verdict() == Verdict::answered;
    results_[index] = answered ? made.answer->value() : host::Argument::missing().number();
    refused_[index] = is_failure(made.verdict()) ? 1 : 0;
    return made;
}

CallResult GroupEvaluator::evaluated(const Group& group, const PlannedCall& call) {
    if (const GroupFault* fault = fault_of(group, call)) {
        return {.fault = fault->reason, .at = argument_at(call, fault->slot)};
    }
    const auto is_refused = [&](std::size_t source) { return refused_[source] != 0; };
    if (const PlannedCall* refused = refused_source(plan_, call, is_refused)) {
        return {.fault = catalogue::shown(refused->result) + " has no answer"};
    }
    take_arguments(group, call);
    if (call.is_formula()) {
        evaluation_ = host::Evaluation{};
        evaluation_.value = arguments_.front().number();
    } else {
        evaluation_ = calls::evaluate(host_, *call.calculation, arguments_);
    }
    return {.answer = calls::answer_of(host_, *call.calculation, arguments_, evaluation_)};
}

// The one that the slot is for; none for a fault of a whole row, or of what a formula of results reads.
WrittenArgument GroupEvaluator::argument_at(const PlannedCall& call, std::size_t slot) const {
    const auto found = std::ranges::find_if(
        call.arguments, [&](const PlannedArgument& argument) { return slot_of(plan_, argument) == slot; });
    if (slot == no_input || found == call.arguments.end()) return {};
    return {found->parameter, static_cast<std::size_t>(found - call.arguments.begin()) + 1};
}

// The slots that a call reads, in ascending order.
std::vector<std::size_t> GroupEvaluator::slots_of(const PlannedCall& call) const {
    std::vector<std::size_t> slots;
    for (const PlannedArgument& argument : call.arguments) {
        slots.push_back(slot_of(plan_, argument));
        if (argument.formula == no_input || plan_.formulas[argument.formula].of_rows) continue;
        for (const FormulaSource& source : plan_.formulas[argument.formula].sources) {
            if (!source.result) slots.push_back(source.index);
        }
    }
    std::ranges::sort(slots);
    return slots;
}

const GroupFault* GroupEvaluator::fault_of(const Group& group, const PlannedCall& call) const {
    if (group.faults.empty()) return nullptr;
    const std::vector<std::size_t> slots = slots_of(call);
    const auto concerns = [&](const GroupFault& fault) {
        return fault.slot == no_input || std::ranges::binary_search(slots, fault.slot);
    };
    const auto fault = std::ranges::find_if(group.faults, concerns);
    return fault != group.faults.end() ? &*fault : nullptr;
}

double GroupEvaluator::calculated(const Group& group, const PlannedFormula& formula) {
    numbers_.clear();
    for (const FormulaSource& source : formula.sources) {
        numbers_.push_back(source.result ? results_[source.index] : group.values[source.index].front());
    }
    return formula.text.formula.value(numbers_, {}, stack_);
}

void GroupEvaluator::take_arguments(const Group& group, const PlannedCall& call) {
    arguments_.clear();
    for (const PlannedArgument& argument : call.arguments) {
        const std::size_t slot = slot_of(plan_, argument);
        if (slot != no_input) {
            const std::vector<double>& values = group.values[slot];
            arguments_.insert(arguments_.end(), values.begin(), values.end());
        } else if (argument.formula != no_input) {
            arguments_.emplace_back(calculated(group, plan_.formulas[argument.formula]));
        } else {
            arguments_.push_back(argument.constant);
        }
    }
    if (!call.is_formula()) calls::put_in_order_of_dates(*call.calculation, arguments_);
}

}  // namespace finance::command
