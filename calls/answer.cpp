#include "calls/answer.hpp"

#include <cmath>

namespace finance::calls {

namespace {

Verdict verdict_of(Arguments arguments, const host::Evaluation& evaluation, int position) {
    if (evaluation.answered()) return std::isnan(evaluation.value) ? Verdict::missing : Verdict::answered;
    const auto fault = static_cast<std::size_t>(position);
    const bool missing = position > 0 && fault <= arguments.size() && !has_value(arguments[fault - 1]);
    return missing ? Verdict::missing : Verdict::refused;
}

std::string joined(std::span<const std::string> lines) {
    std::string text;
    for (const std::string& line : lines) text.append(text.empty() ? "" : "\n").append(line);
    return text;
}

}  // namespace

Answer::Answer(const catalogue::Calculation& calculation, Arguments arguments, const host::Evaluation& evaluation)
    : calculation_{&calculation},
      arguments_{arguments},
      evaluation_{&evaluation},
      position_{evaluation.answered() ? 0 : argument_at_fault(calculation, arguments, evaluation.flagged)},
      verdict_{verdict_of(arguments, evaluation, position_)} {}

std::string Answer::label() const {
    if (position_ == 0) return {};
    return argument_label(*calculation_, static_cast<std::size_t>(position_), arguments_.size());
}

std::string Answer::reason() const {
    if (evaluation_->answered()) return noted() ? std::string{calculation_->failure} : "";
    if (!evaluation_->log.empty()) return joined(evaluation_->log);
    return calls::reason(*calculation_, arguments_, position_);
}

std::string Answer::sentence() const {
    if (verdict_ == Verdict::answered) return {};
    if (!evaluation_->answered() && !evaluation_->log.empty()) return evaluation_->log.front();
    const std::string why = reason();
    if (why.empty()) return "the answer is a missing value";
    return (position_ == 0 ? "no answer" : label()) + ": " + why;
}

std::vector<std::string> lines_of(const Answer& answer) {
    std::vector<std::string> lines;
    const std::string name = std::string{answer.calculation().name} + ": ";
    if (!answer.evaluation().answered()) {
        for (const std::string& line : answer.evaluation().log) lines.push_back(name + line);
    }
    if (lines.empty() && !answer.reason().empty()) lines.push_back(answer.named_sentence());
    return lines;
}

}  // namespace finance::calls
