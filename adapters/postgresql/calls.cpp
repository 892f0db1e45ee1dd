#include "adapters/postgresql/calls.hpp"

#include <cmath>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/postgresql/prepared_call.hpp"
#include "adapters/postgresql/signatures.hpp"

namespace finance::adapters::postgresql {

using catalogue::Calculation;

const Calculation& calculation_at(std::size_t index) noexcept { return catalogue::calculations()[index]; }

namespace {

template <typename Make>
Outcome guarded(Make make) noexcept {
    try {
        return make();
    } catch (const std::bad_alloc&) {
        return {.verdict = Verdict::no_memory};
    } catch (const std::exception& fault) {
        return {.verdict = Verdict::failed, .sentence = kept(fault.what())};
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
    return unrolled(calculation, scalars, lists);
}

// Missing values are never handed over: without a flag no argument is at fault.
Outcome refused(const Calculation& calculation, std::span<const host::Argument> arguments,
                const host::Evaluation& evaluation) {
    const bool at_fault = evaluation.flagged > 0 || !evaluation.log.empty();
    const std::string sentence = adapters::call(calculation, arguments).refusal;
    if (!at_fault) return {.verdict = Verdict::no_answer, .sentence = kept(sentence)};
    return {.verdict = Verdict::refused, .sentence = kept(sentence), .usage = kept(sql_usage(calculation))};
}

Outcome outcome_of(const Calculation& calculation, const host::Evaluation& evaluation, const Row& row) {
    if (evaluation.answered()) {
        if (std::isnan(evaluation.value)) return {.verdict = Verdict::missing};
        return {.verdict = Verdict::answered, .value = evaluation.value};
    }
    return refused(calculation, arguments_of(calculation, row), evaluation);
}

// Two lists belong together value by value; empty where all do.
std::string unpaired(const Calculation& calculation, const Row& row) {
    for (std::size_t i = 1; i < row.count; ++i) {
        const auto& first = calculation.parameters[i - 1];
        const auto& second = calculation.parameters[i];
        if (!is_list(first.kind) || !is_list(second.kind) || row.lists[i - 1].size == row.lists[i].size) continue;
        return std::string{calculation.name} + ": " + snake_case(first.name) + " and " + snake_case(second.name) +
               " do not pair up: " + std::to_string(row.lists[i - 1].size) + " and " +
               std::to_string(row.lists[i].size) + " values";
    }
    return {};
}

Outcome call_with_lists(const Calculation& calculation, const Row& row) {
    const std::string sentence = unpaired(calculation, row);
    if (!sentence.empty()) {
        return {.verdict = Verdict::refused, .sentence = kept(sentence), .usage = kept(sql_usage(calculation))};
    }
    return outcome_of(calculation, shared_host().evaluate(calculation.name, arguments_of(calculation, row)), row);
}

}  // namespace

Outcome call(const Calculation& calculation, const Row& row) noexcept {
    return guarded([&] { return call_with_lists(calculation, row); });
}

PreparedCall* prepared_call(const Calculation& calculation) noexcept {
    try {
        return &PreparedCall::of(calculation);
    } catch (...) {
        return nullptr;
    }
}

Outcome call(PreparedCall& prepared, const Row& row) noexcept {
    return guarded([&] { return outcome_of(prepared.calculation(), prepared.make(row), row); });
}

}  // namespace finance::adapters::postgresql
