#include "calls/answer.hpp"

#include <cmath>

#include "calls/causes.hpp"
#include "calls/remedies.hpp"
#include "calls/solution.hpp"

namespace finance::calls {

namespace {

Verdict verdict_of_value(const host::Evaluator* host, const catalogue::Calculation& calculation, Arguments arguments,
                         double value) {
    if (std::isnan(value)) return Verdict::missing;
    if (std::isinf(value)) return Verdict::too_large;
    const bool solved = host == nullptr || solves(*host, calculation, arguments, value);
    return solved ? Verdict::answered : Verdict::does_not_solve;
}

Verdict verdict_of_refusal(Arguments arguments, int position) {
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

Answer::Answer(const host::Evaluator* host, const catalogue::Calculation& calculation, Arguments arguments,
               const host::Evaluation& evaluation)
    : host_{host},
      calculation_{&calculation},
      arguments_{arguments},
      evaluation_{&evaluation},
      position_{evaluation.answered() ? 0 : argument_at_fault(calculation, arguments, evaluation.flagged)},
      verdict_{evaluation.answered() ? verdict_of_value(host, calculation, arguments, evaluation.value)
                                     : verdict_of_refusal(arguments, position_)} {}

std::string Answer::label() const {
    if (position_ == 0) return {};
    return argument_label(*calculation_, static_cast<std::size_t>(position_), arguments_.size());
}

std::string Answer::why_unsolved() const {
    const std::string cause = cause_of(*calculation_, arguments_, evaluation_->answered());
    if (verdict_ != Verdict::does_not_solve) return cause.empty() ? std::string{calculation_->failure} : cause;
    const std::string figure = unsolved_words(*host_, *calculation_, arguments_, value());
    return cause.empty() ? figure : figure + "; " + cause;
}

std::string Answer::reason() const {
    if (verdict_ == Verdict::too_large) return "the answer is infinite, beyond the largest number or divided by 0";
    if (verdict_ == Verdict::does_not_solve || noted()) return why_unsolved();
    if (evaluation_->answered()) return {};
    if (!evaluation_->log.empty()) return joined(evaluation_->log);
    return position_ == 0 ? why_unsolved() : calls::reason(*calculation_, arguments_, position_);
}

std::string Answer::sentence() const {
    if (verdict_ == Verdict::answered) return {};
    if (!evaluation_->answered() && !evaluation_->log.empty()) return evaluation_->log.front();
    const std::string why = reason();
    if (why.empty()) return "the answer is a missing value";
    if (verdict_ == Verdict::does_not_solve || verdict_ == Verdict::too_large) {
        return std::string{word_of(verdict_)} + ": " + why;
    }
    return (position_ == 0 ? "no answer" : label()) + ": " + why;
}

std::string Answer::remedy() const {
    const bool failed = !evaluation_->answered() && position_ == 0 && evaluation_->log.empty();
    if (host_ == nullptr || !(failed || noted() || verdict_ == Verdict::does_not_solve)) return {};
    const auto remedy = remedy_for(*host_, *calculation_, arguments_);
    return remedy ? remedy->text() : "";
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
