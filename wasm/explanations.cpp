// What a call came to, and why there is no value, in the words of every front end (calls/). The call itself is made as they
// make it: not with too few or too many arguments, with a text for a number, or with a value that nobody can mean.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calls/answer.hpp"
#include "calls/counts.hpp"
#include "calls/meant.hpp"
#include "calls/solution.hpp"
#include "catalogue/catalogue.hpp"
#include "catalogue/text.hpp"
#include "wasm/call_record.hpp"
#include "wasm/module_calls.hpp"
#include "wasm/program_memory.hpp"
#include "wasm/told.hpp"
#include "wasm/words.hpp"

namespace finance::wasm {

namespace {

enum TextOf : std::uint8_t { verdict_word, label, reason, sentence, named_sentence, remedy, texts };

struct Explanation {
    double value;
    std::uint32_t status;
    std::int32_t position;  // of the argument at fault, 1 the first after the name; 0 none
    std::array<Text, texts> texts;
};
Explanation explanation;

std::string_view text_of(const Word& word) { return {static_cast<const char*>(at(word.span.place)), word.span.size}; }

// Blanks at the end of a name count for nothing, as in a call.
const catalogue::Calculation* calculation_named(std::string_view name) {
    return catalogue::find(name.substr(0, name.find_last_not_of(' ') + 1));
}

host::Argument argument_of(const Word& word, std::uint8_t kind) {
    switch (kind) {
        case number:
            return word.number;
        case text:
            return text_of(word);
        case absent_text:
            return host::Argument::absent_text();
        default:
            return host::Argument::absent();
    }
}

void set_verdict(calls::Verdict verdict) {
    const std::string_view word = word_of(verdict);
    explanation.texts[verdict_word] = {word.data(), static_cast<std::uint32_t>(word.size())};
}

// Of a call that is none.
void explain_misuse(const std::string& name, const std::string& words) {
    set_verdict(calls::Verdict::refused);
    explanation.texts[reason] = explanation.texts[sentence] = kept(words);
    explanation.texts[named_sentence] = kept(name + words);
}

host::Evaluation evaluate(const ModuleCalls& module, const catalogue::Calculation& calculation,
                          calls::Arguments arguments) {
    const int misplaced = calls::misplaced_text(calculation, arguments);
    return misplaced == 0 ? calls::evaluate(module, calculation, arguments) : calls::refused_at(misplaced);
}

void explain(const catalogue::Calculation& calculation, calls::Arguments arguments) {
    const std::string misuse = calls::count_fault(calculation, arguments);
    if (!misuse.empty()) return explain_misuse(std::string{calculation.name} + ": ", misuse);
    const ModuleCalls module;
    const host::Evaluation evaluation = evaluate(module, calculation, arguments);
    const calls::Answer answer = calls::answer_of(module, calculation, arguments, evaluation);
    explanation.value = evaluation.value;
    explanation.status = evaluation.status;
    explanation.position = answer.position();
    set_verdict(answer.verdict());
    if (answer.verdict() == calls::Verdict::answered) return;
    explanation.texts[label] = kept(answer.label());
    explanation.texts[reason] = kept(answer.reason());
    explanation.texts[sentence] = kept(answer.sentence());
    explanation.texts[named_sentence] = kept(answer.named_sentence());
    explanation.texts[remedy] = kept(answer.remedy());
}

}  // namespace

}  // namespace finance::wasm

using namespace finance::wasm;

// {value, status, position, {place, bytes} of each text}, of the explanation before, until the room is asked for again.
EXPORT("explanation") const void* zelkovan_explanation() { return &explanation; }

// 1, or 0: no memory, or no name.
EXPORT("explain")
std::uint32_t zelkovan_explain(const Word* words, const std::uint8_t* kinds, std::uint32_t count) {
    using finance::host::Argument;
    explanation = {.value = missing, .status = ZELKOVAN_STATUS_INVALID_ARGUMENT};
    begin_program_memory();
    if (count == 0 || kinds[0] != text) return 0;
    std::uint64_t bytes_of_texts = 0;
    for (std::uint32_t i = 0; i < count; ++i) bytes_of_texts += kinds[i] == text ? words[i].span.size : 0;
    if (!there_is_memory_for(count, bytes_of_texts)) return 0;
    const std::string_view name = text_of(words[0]);
    const auto* calculation = calculation_named(name);
    if (calculation == nullptr) {
        explain_misuse("", "no calculation is called " + finance::catalogue::in_quotes(name));
        return 1;
    }
    std::vector<Argument> arguments;
    arguments.reserve(count - 1);
    for (std::uint32_t i = 1; i < count; ++i) arguments.push_back(argument_of(words[i], kinds[i]));
    explain(*calculation, arguments);
    return 1;
}

// Of a call of numbers, its name in capitals, that came to that value: 1 where it is finite and, if it was searched, solves its
// equation. 0: it does not, or there is no memory to tell. A call that is laid out stays so.
EXPORT("holds") std::uint32_t zelkovan_holds(const Word* words, std::uint32_t count, double value) {
    const Workspace workspace;
    forget_free_blocks();
    if (!there_is_memory_for(count, 0)) return 0;
    std::vector<finance::host::Argument> arguments;
    arguments.reserve(count - 1);
    for (std::uint32_t i = 1; i < count; ++i) arguments.emplace_back(words[i].number);
    const auto* calculation = finance::catalogue::find(text_of(words[0]));
    return finance::calls::holds(ModuleCalls{}, *calculation, arguments, value) ? 1 : 0;
}
