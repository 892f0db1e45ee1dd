// What a call came to, and why there is no value.
//
//  (1) answered: there is a value. missing: the answer is a missing value, or an argument at fault is missing or left
//      out. does not solve: the search ended with a value that does not solve its equation (calls/solution.hpp).
//      too large: the answer is infinite. refused: everything else.
//  (2) Whoever made the call has the verdict at once; words are made where somebody wants to read them.
//  (3) What the module logged goes before what is worked out here.
//  (4) Without a host nothing is checked, nor is a remedy known: for calls that do not search it makes no difference.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "calls/diagnosis.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

enum class Verdict : std::uint8_t { answered, missing, does_not_solve, too_large, refused };  // from good to bad

inline constexpr std::array<std::string_view, 5> verdict_words{"answered", "missing", "does not solve", "too large",
                                                               "refused"};
constexpr std::string_view word_of(Verdict verdict) { return verdict_words[static_cast<std::size_t>(verdict)]; }
// Neither a value that holds nor a missing one.
constexpr bool is_failure(Verdict verdict) { return verdict >= Verdict::does_not_solve; }

// The sentence of a call that is refused where nothing can go on without it.
class CallRefused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A view of what it was made of: that must live as long.
class Answer {
public:
    Answer(const host::Evaluator* host, const catalogue::Calculation& calculation, Arguments arguments,
           const host::Evaluation& evaluation);

    [[nodiscard]] Verdict verdict() const { return verdict_; }
    [[nodiscard]] double value() const { return evaluation_->value; }
    // A search that found nothing answers with a missing value and notes it.
    [[nodiscard]] bool noted() const { return verdict_ == Verdict::missing && position_ == 0 && has_notes(); }

    // The argument at fault, 1 the first after the name; 0: none is. Its label: "argument 2 (nper)", "" where none is.
    [[nodiscard]] int position() const { return position_; }
    [[nodiscard]] std::string label() const;
    // The rule that is broken, or why the calculation has no answer; all that was logged, in lines, where anything was.
    // "" where there is a value, or one that is missing without a note.
    [[nodiscard]] std::string reason() const;
    // In one line, the argument named; "" where there is a value.
    [[nodiscard]] std::string sentence() const;
    // The call that has the answer which this one has not, as it is typed: "IRR flows=-100,60,60"; "" where none is
    // known.
    [[nodiscard]] std::string remedy() const;
    // "PMT: argument 2 (nper): 2.5 is not a whole number"
    [[nodiscard]] std::string named_sentence() const { return std::string{calculation_->name} + ": " + sentence(); }

    [[nodiscard]] const catalogue::Calculation& calculation() const { return *calculation_; }
    [[nodiscard]] Arguments arguments() const { return arguments_; }
    [[nodiscard]] const host::Evaluation& evaluation() const { return *evaluation_; }

private:
    [[nodiscard]] bool has_notes() const { return !evaluation_->notes.empty(); }
    [[nodiscard]] std::string why_unsolved() const;

    const host::Evaluator* host_;
    const catalogue::Calculation* calculation_;
    Arguments arguments_;
    const host::Evaluation* evaluation_;
    int position_ = 0;
    Verdict verdict_ = Verdict::answered;
};

// host: the one that evaluated.
inline Answer answer_of(const host::Evaluator& host, const catalogue::Calculation& calculation, Arguments arguments,
                        const host::Evaluation& evaluation) {
    return {&host, calculation, arguments, evaluation};
}
inline Answer answer_of(const catalogue::Calculation& calculation, Arguments arguments,
                        const host::Evaluation& evaluation) {
    return {nullptr, calculation, arguments, evaluation};
}

// What is told of a call that was made alone, beside its value: a named line for each that was logged, or for why there
// is no value or none that solves.
std::vector<std::string> lines_of(const Answer& answer);

}  // namespace finance::calls
