#include "adapters/postgresql/calls.hpp"

#include <bit>
#include <cmath>
#include <exception>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/postgresql/signatures.hpp"
#include "calls/lists.hpp"
#include "calls/meant.hpp"
#include "host/prepared_call.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;

const Calculation& calculation_at(std::size_t index) noexcept { return catalogue::calculations()[index]; }

namespace {

template <typename Make>
Outcome guarded(Make make) noexcept {
    try {
        return make();
    } catch (const std::bad_alloc&) {
        return {.trouble = Trouble::no_memory};
    } catch (const std::exception& fault) {
        return {.sentence = kept(fault.what())};
    } catch (...) {
        return {};
    }
}

std::vector<host::Argument> arguments_of(const Calculation& calculation, const Row& row) {
    std::vector<host::Argument> scalars;
    std::vector<std::span<const double>> lists(row.count);
    for (std::size_t i = 0; i < row.count; ++i) {
        if (is_list(calculation.parameters[i].kind)) {
            lists[i] = {row.lists[i].first, row.lists[i].size};
            scalars.push_back(host::Argument::absent());
        } else if (row.is_text(i)) {
            scalars.emplace_back(std::string_view{row.texts[i].first, row.texts[i].size});
        } else {
            scalars.emplace_back(row.numbers[i]);
        }
    }
    return calls::unrolled(calculation, scalars, lists);
}

Outcome refused(const Calculation& calculation, const std::string& sentence) {
    return {.trouble = Trouble::argument, .sentence = kept(sentence), .usage = kept(sql_usage(calculation))};
}

Outcome outcome_of(const Calculation& calculation, const host::Evaluation& evaluation, const Row& row, Way way) {
    if (evaluation.answered() && speaks_for_itself(calculation, evaluation.value)) {
        return {.verdict = Verdict::answered, .value = evaluation.value};
    }
    const bool valued = evaluation.answered() && std::isfinite(evaluation.value);
    if (way == Way::attempt && !valued) return {.verdict = Verdict::missing};
    const std::vector<host::Argument> arguments = arguments_of(calculation, row);
    const calls::Answer answer = calls::answer_of(shared_host(), calculation, arguments, evaluation);
    if (answer.verdict() == Verdict::answered) return {.verdict = Verdict::answered, .value = evaluation.value};
    if (way == Way::attempt || (way == Way::answer && !is_refusal(answer))) {
        return {.verdict = Verdict::missing};
    }
    const bool at_fault = answer.position() > 0 || !evaluation.log.empty();
    if (at_fault) return refused(calculation, answer.named_sentence());
    return {.trouble = Trouble::no_answer, .sentence = kept(answer.named_sentence())};
}

Outcome call_with_lists(const Calculation& calculation, const Row& row, Way way) {
    const auto lists = calls::unpaired(calculation, row.count, [&](std::size_t i) { return row.lists[i].size; });
    if (lists && way == Way::attempt) return {.verdict = Verdict::missing};
    if (lists) return refused(calculation, std::string{calculation.name} + ": " + pairing_words(*lists, snake_case));
    const host::Evaluation made = calls::evaluate(shared_host(), calculation, arguments_of(calculation, row));
    return outcome_of(calculation, made, row, way);
}

}  // namespace

Outcome call(const Calculation& calculation, const Row& row, Way way) noexcept {
    return guarded([&] { return call_with_lists(calculation, row, way); });
}

// The position of the first number that is not meant; 0: all are.
int unmeant_number(const Calculation& calculation, const Row& row) {
    for (std::size_t i = 0; i < row.count; ++i) {
        if (!row.is_text(i) && !calls::is_meant(calculation.parameters[i].kind, row.numbers[i])) {
            return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

// A server's process is one thread, and a call asks for no other. Rows of a query lie at one address.
struct PreparedCall {
    const Calculation& calculation;
    host::PreparedCall call{calculation.name};

    host::Evaluation make(const Row& row) {
        if (const int unmeant = unmeant_number(calculation, row)) return calls::refused_at(unmeant);
        call.lay_out(row.count, row.texts_given, row.numbers);
        for (std::uint32_t texts = row.texts_given; texts != 0; texts &= texts - 1) {
            const auto i = static_cast<std::size_t>(std::countr_zero(texts));
            call.set_text(i, {row.texts[i].first, row.texts[i].size});
        }
        return call.make(shared_host());
    }
};

PreparedCall* prepared_call(const Calculation& calculation) noexcept {
    try {
        static std::vector<std::unique_ptr<PreparedCall>> prepared(catalogue::calculations().size());
        auto& call = prepared[static_cast<std::size_t>(&calculation - catalogue::calculations().data())];
        if (!call) call = std::make_unique<PreparedCall>(PreparedCall{calculation});
        return call.get();
    } catch (...) {
        return nullptr;
    }
}

Outcome call(PreparedCall& prepared, const Row& row, Way way) noexcept {
    return guarded([&] { return outcome_of(prepared.calculation, prepared.make(row), row, way); });
}

}  // namespace finance::adapters::postgresql
