// What a group of rows comes to: its calls, and the formulas of what they came to.
#pragma once

#include <string>
#include <vector>

#include "command/tables/flow_groups.hpp"
#include "command/tables/result_writer.hpp"
#include "command/tables/run_summary.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

class GroupEvaluator {
public:
    // by: the names of the columns that group.
    GroupEvaluator(const host::EmbeddedHost& host, const CallPlan& plan, const ResultForm& form,
                   std::vector<std::string> by);

    // Appends a line, or objects; the summary gets the verdict, which is the worst of the calls'.
    Verdict evaluate(const Group& group, std::string& output, RunSummary& summary);

private:
    void begin_object(JsonText& json, const Group& group) const;
    CallResult result(const Group& group, std::size_t index);
    CallResult evaluated(const Group& group, const PlannedCall& call);
    [[nodiscard]] WrittenArgument argument_at(const PlannedCall& call, std::size_t slot) const;
    [[nodiscard]] std::vector<std::size_t> slots_of(const PlannedCall& call) const;
    [[nodiscard]] const GroupFault* fault_of(const Group& group, const PlannedCall& call) const;
    void take_arguments(const Group& group, const PlannedCall& call);
    double calculated(const Group& group, const PlannedFormula& formula);

    const host::EmbeddedHost& host_;
    const CallPlan& plan_;
    std::vector<std::string> by_;
    ResultWriter writer_;
    std::vector<double> results_;    // by call; missing where there is no answer
    std::vector<char> refused_;      // by call
    std::vector<double> numbers_{};  // of one formula
    FormulaStack stack_{};
    std::vector<host::Argument> arguments_{};  // of the call whose result is written
    host::Evaluation evaluation_{};
};

}  // namespace finance::command
