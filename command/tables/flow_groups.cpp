#include "command/tables/flow_groups.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "catalogue/text.hpp"
#include "command/argument_text.hpp"
#include "command/tables/row_evaluator.hpp"

namespace finance::command {

namespace {

bool is_same_value(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

}  // namespace

FlowGroups::FlowGroups(const CallPlan& plan, std::vector<std::size_t> by, const std::vector<std::string>& names,
                       char delimiter)
    : plan_{plan}, by_{std::move(by)}, names_{names}, delimiter_{delimiter} {
    std::size_t used = plan.used_columns;
    for (const std::size_t column : by_) used = std::max(used, column + 1);
    fields_.resize(used);
}

Group& FlowGroups::new_group() {
    Group& group = groups_.emplace_back();
    group.values.resize(plan_.inputs.size());
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

void FlowGroups::add_fault(Group& group, std::size_t input, std::uint64_t line, const std::string& reason) const {
    if (std::ranges::find(group.faults, input, &GroupFault::input) != group.faults.end()) return;
    const std::string column = input == no_input ? "" : names_[plan_.inputs[input].column] + ": ";
    group.faults.push_back({.input = input, .reason = "line " + std::to_string(line) + ": " + column + reason});
}

void FlowGroups::add_value(Group& group, std::size_t input, std::uint64_t line) {
    const auto [column, kind] = plan_.inputs[input];
    const auto value = read_field(plan_.fields, fields_[column], kind, scratch_);
    if (!value || value->kind() != host::Argument::Kind::number) {
        add_fault(group, input, line, unreadable(plan_.fields, kind, trimmed(field_text(fields_[column], scratch_))));
        return;
    }
    std::vector<double>& values = group.values[input];
    if (is_list(kind) || values.empty()) {
        values.push_back(value->number());
        return;
    }
    if (is_same_value(values.front(), value->number())) return;
    const bool dated = is_dated(kind);
    add_fault(group, input, line,
              catalogue::value_text(value->number(), dated) + " is not the " +
                  catalogue::value_text(values.front(), dated) + " of the group's first row");
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
    for (std::size_t input = 0; input < plan_.inputs.size(); ++input) add_value(group, input, line);
    return {};
}

}  // namespace finance::command
