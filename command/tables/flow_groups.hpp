// Rows gathered into groups: of each group the flows that its calls want, and the values that all its rows share.
//
//  (1) Groups stand in the order in which their first rows stand; a group's rows need not stand together.
//  (2) Rows are of one group where the texts of the columns that group them are the same.
//  (3) A column for a parameter that is no list must have one value in all rows of a group.
//  (4) A formula over a group's rows is one value a row, like a column; what a formula of results reads is shared.
//  (5) A field that cannot be read, or a value that changes, refuses the calls of its group that want it; a row with
//      too few or too many fields refuses all calls of its group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "command/tables/call_plan.hpp"
#include "command/tables/table_record.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

// What a group has values of: the plan's inputs, and then its formulas.
constexpr std::size_t slot_of_formula(const CallPlan& plan, std::size_t formula) {
    return plan.inputs.size() + formula;
}
// Of a formula of results: none, since no row has its value.
std::size_t slot_of(const CallPlan& plan, const PlannedArgument& argument);

struct GroupFault {
    std::size_t slot = no_input;  // none: all calls of the group
    std::string reason{};
};

struct Group {
    std::string fields{};                       // of the columns that group, as they stand in its first row
    std::vector<std::string> texts{};           // what they say
    std::vector<std::vector<double>> values{};  // by slot: all of a list, the shared one of others
    std::vector<GroupFault> faults{};           // the first of each slot
    std::set<std::size_t> faulty{};             // the slots
};

class FlowGroups {
public:
    // by: columns.
    FlowGroups(const CallPlan& plan, std::vector<std::size_t> by, const std::vector<std::string>& names,
               char delimiter);

    // Why nobody can know the row's group; nothing where it has one.
    std::optional<std::string> add(const Record& record, std::uint64_t line);
    [[nodiscard]] const std::deque<Group>& groups() const { return groups_; }

private:
    Group& group_of_row();
    Group& new_group();
    void find_uses();
    void add_input(Group& group, std::size_t input, std::uint64_t line);
    void add_formula(Group& group, std::size_t formula, std::uint64_t line);
    void add_value(Group& group, std::size_t slot, catalogue::Kind kind, double value, std::uint64_t line) const;
    void add_fault(Group& group, std::size_t slot, std::uint64_t line, const std::string& reason) const;
    [[nodiscard]] std::string unread(std::size_t input);

    const CallPlan& plan_;
    std::vector<std::size_t> by_;
    const std::vector<std::string>& names_;
    char delimiter_;
    std::vector<std::string_view> fields_;
    std::vector<char> gathered_{};   // by input: whether groups have values of it, or formulas of rows only
    std::vector<double> row_{};      // of one row, by input
    std::vector<char> readable_{};   // by input
    std::vector<double> numbers_{};  // of one formula
    FormulaStack stack_{};
    std::string key_;
    std::string scratch_;
    std::unordered_map<std::string, Group*> by_key_;
    std::deque<Group> groups_;  // in place for good: by_key_ points to them
};

}  // namespace finance::command
