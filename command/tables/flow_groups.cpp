#include "command/tables/flow_groups.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "catalogue/text.hpp"
#include "command/tables/row_evaluator.hpp"

namespace finance::command {

namespace {

bool is_same_value(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

}  // namespace

std::size_t slot_of(const CallPlan& plan, const PlannedArgument& argument) {
    if (argument.formula == no_input) return argument.input;
    return plan.formulas[argument.formula].of_rows ? slot_of_formula(plan, argument.formula) : no_input;
}

FlowGroups::FlowGroups(const CallPlan& plan, std::vector<std::size_t> by, const std::vector<std::string>& names,
                       char delimiter)
    : plan_{plan}, by_{std::move(by)}, names_{names}, delimiter_{delimiter} {
    std::size_t used = plan.used_columns;
    for (const std::size_t column : by_) used = std::max(used, column + 1);
    fields_.resize(used);
    row_.resize(plan.inputs.size());
    readable_.resize(plan.inputs.size());
    find_uses();
}

void FlowGroups::find_uses() {
    gathered_.resize(plan_.inputs.size());
    for (const PlannedCall& call : plan_.calls) {
        for (const PlannedArgument& argument : call.arguments) {
            if (argument.input != no_input) gathered_[argument.input] = 1;
        }
    }
    for (const PlannedFormula& formula : plan_.formulas) {
        for (const FormulaSource& source : formula.sources) {
            if (!source.result && !formula.of_rows) gathered_[source.index] = 1;
        }
    }
}

Group& FlowGroups::new_group() {
    Group& group = groups_.emplace_back();
    group.values.resize(plan_.inputs.size() + plan_.formulas.size());
    for (const std::size_t column : by_) {
        if (!group.texts.empty()) group.fields += delimiter_;
        group.fields += fields_[column];
        group.texts.emplace_back(field_text(fields_[column], scratch_));
    }
    return group;
}

Group& FlowGroups::group_of_row() {
    key_.clear();
    for (const std::size_t column : by_) key_.append(field_text(fields_[column], scratch_)).push_back('\0');
    const auto found = by_key_.find(key_);
    if (found != by_key_.end()) return *found->second;
    return *by_key_.emplace(key_, &new_group()).first->second;
}

void FlowGroups::add_fault(Group& group, std::size_t slot, std::uint64_t line, const std::string& reason) const {
    if (!group.faulty.insert(slot).second) return;
    const std::string column =
        slot < plan_.inputs.size() ? catalogue::shown(names_[plan_.inputs[slot].column]) + ": " : "";
    group.faults.push_back({.slot = slot, .reason = "line " + std::to_string(line) + ": " + column + reason});
}

std::string FlowGroups::unread(std::size_t input) {
    const Input& read = plan_.inputs[input];
    return unreadable(plan_.fields, read, trimmed(field_text(fields_[read.column], scratch_)));
}

void FlowGroups::add_value(Group& group, std::size_t slot, catalogue::Kind kind, double value,
                           std::uint64_t line) const {
    std::vector<double>& values = group.values[slot];
    if (is_list(kind) || values.empty()) {
        values.push_back(value);
        return;
    }
    if (is_same_value(values.front(), value)) return;
    const bool dated = is_dated(kind);
    add_fault(group, slot, line,
              catalogue::value_text(value, dated) + " is not the " + catalogue::value_text(values.front(), dated) +
                  " of the group's first row");
}

void FlowGroups::add_input(Group& group, std::size_t input, std::uint64_t line) {
    const auto [column, kind, in_formula] = plan_.inputs[input];
    const auto value = read_field(plan_.fields, fields_[column], kind, scratch_);
    readable_[input] = value && value->kind() == host::Argument::Kind::number ? 1 : 0;
    if (readable_[input] != 0) row_[input] = value->number();
    if (gathered_[input] == 0) return;
    if (readable_[input] == 0) return add_fault(group, input, line, unread(input));
    // What formulas read may be a date or a number: a sentence shows what it is as a number.
    add_value(group, input, in_formula ? catalogue::Kind::number : kind, row_[input], line);
}

// Of this row's inputs.
void FlowGroups::add_formula(Group& group, std::size_t formula, std::uint64_t line) {
    const PlannedFormula& planned = plan_.formulas[formula];
    const std::size_t slot = slot_of_formula(plan_, formula);
    if (!planned.of_rows) return;
    numbers_.clear();
    for (const FormulaSource& source : planned.sources) {
        if (readable_[source.index] == 0) return add_fault(group, slot, line, unread(source.index));
        numbers_.push_back(row_[source.index]);
    }
    add_value(group, slot, planned.kind, planned.text.formula.value(numbers_, {}, stack_), line);
}

std::optional<std::string> FlowGroups::add(const Record& record, std::uint64_t line) {
    const std::size_t count = split_record(record, delimiter_, fields_);
    const bool fits = count == plan_.columns;
    const bool has_group = std::ranges::all_of(by_, [&](std::size_t column) { return column < count; });
    if (!has_group) return field_count_words(count, plan_.columns);
    Group& group = group_of_row();
    if (!fits) {
        add_fault(group, no_input, line, field_count_words(count, plan_.columns));
        return {};
    }
    for (std::size_t input = 0; input < plan_.inputs.size(); ++input) add_input(group, input, line);
    for (std::size_t formula = 0; formula < plan_.formulas.size(); ++formula) add_formula(group, formula, line);
    return {};
}

}  // namespace finance::command
