#include "calls/remedies.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "calls/causes.hpp"
#include "calls/lists.hpp"
#include "calls/solution.hpp"
#include "catalogue/layout.hpp"
#include "catalogue/text.hpp"

namespace finance::calls {

using catalogue::Calculation;
using host::Argument;
using host::Evaluator;

namespace {

using List = std::vector<Argument>;

constexpr std::size_t most_typed = 1'200;  // a hundred years of months

std::optional<Remedy> if_it_solves(const Evaluator& host, std::string_view name, List arguments) {
    const Calculation& calculation = *catalogue::find(name);
    const host::Evaluation evaluation = host.evaluate(name, arguments);
    if (!evaluation.answered() || !std::isfinite(evaluation.value)) return {};
    if (!solves(host, calculation, arguments, evaluation.value)) return {};
    return Remedy{&calculation, std::move(arguments)};
}

// ---- XIRR

// Far apart first: where the search begins matters most near -1.
constexpr std::array guesses{0.1, -0.5, 0.5, 1.0, -0.8, 2.0, 5.0, -0.95, 20.0, -0.99, 100.0, 1000.0, -0.999, 1e4};

std::optional<Remedy> with_guesses(const Evaluator& host, const List& flows_and_dates) {
    for (const double guess : guesses) {
        List arguments = flows_and_dates;
        arguments.emplace_back(guess);
        if (auto remedy = if_it_solves(host, "XIRR", std::move(arguments))) return remedy;
    }
    return {};
}

std::optional<Remedy> remedy_for_xirr(const Evaluator& host, Arguments arguments) {
    const DatedLists flows{arguments};
    if (flows.values.size() > most_typed || !changes_sign(flows.values)) return {};
    List sorted{flows.values.begin(), flows.values.end()};
    sorted.insert(sorted.end(), flows.dates.begin(), flows.dates.end());
    put_in_order_of_dates(*catalogue::find("XIRR"), sorted);
    if (auto remedy = if_it_solves(host, "XIRR", sorted)) return remedy;
    return with_guesses(host, sorted);
}

// ---- IRR

std::optional<Remedy> remedy_for_irr(const Evaluator& host, Arguments flows) {
    constexpr double first_day = 14610.0;  // 2000-01-01
    if (flows.size() > most_typed || !changes_sign(flows)) return {};
    List dated{flows.begin(), flows.end()};
    for (std::size_t i = 0; i < flows.size(); ++i) dated.emplace_back(first_day + 365.0 * static_cast<double>(i));
    if (auto remedy = if_it_solves(host, "XIRR", dated)) return remedy;
    return with_guesses(host, dated);
}

// ---- RATE

// nper, pmt, pv, fv, type
struct Plan {
    double nper;
    double pmt;
    double pv;
    double fv = 0.0;
    bool at_start = false;
    explicit Plan(Arguments of_rate)
        : nper{of_rate[0].number()},
          pmt{of_rate[1].number()},
          pv{of_rate[2].number()},
          fv{number_or_0(of_rate, 3)},
          at_start{number_or_0(of_rate, 4) == 1.0} {}

    // A count far below 0 may pass for one, of which the low 32 bits are looked at.
    [[nodiscard]] bool can_be_typed() const { return nper >= 1.0 && nper < static_cast<double>(most_typed); }

    [[nodiscard]] List flows() const {
        const auto periods = static_cast<std::size_t>(nper);
        std::vector<double> amounts(periods + 1, 0.0);
        for (std::size_t i = 0; i < periods; ++i) amounts[at_start ? i : i + 1] = pmt;
        amounts.front() += pv;
        amounts.back() += fv;
        return {amounts.begin(), amounts.end()};
    }

    // As short as can be.
    [[nodiscard]] List of_rate() const {
        List arguments{nper, pmt, pv};
        if (fv != 0.0 || at_start) arguments.emplace_back(fv);
        if (at_start) arguments.emplace_back(1.0);
        return arguments;
    }
};

// The payments, or without any the future value, with the other sign.
Plan with_signs_put_right(Plan plan) {
    (plan.pmt != 0.0 ? plan.pmt : plan.fv) *= -1.0;
    return plan;
}

std::optional<Remedy> remedy_for_flows(const Evaluator& host, const Plan& plan) {
    if (plan.pmt == 0.0 || !plan.can_be_typed()) return {};
    const List flows = plan.flows();
    if (auto remedy = if_it_solves(host, "IRR", flows)) return remedy;
    return remedy_for_irr(host, flows);
}

std::optional<Remedy> remedy_for_rate(const Evaluator& host, Arguments arguments) {
    const Plan plan{arguments};
    const bool two_signs = changes_sign(std::array<Argument, 3>{plan.pmt, plan.pv, plan.fv});
    const bool signs_are_right = plan.pmt != 0.0 ? two_signs : !two_signs;
    if (signs_are_right) return remedy_for_flows(host, plan);
    const Plan other = with_signs_put_right(plan);
    if (auto remedy = if_it_solves(host, "RATE", other.of_rate())) return remedy;
    return remedy_for_flows(host, other);
}

// ---- Words

// Texts read back to the same value; dates beyond four-digit years do not.
std::string typed(const catalogue::Parameter& parameter, const Argument& argument) {
    return catalogue::value_text(argument.number(), is_dated(parameter.kind));
}

}  // namespace

std::string Remedy::text() const {
    std::string text{calculation->name};
    std::size_t next = 0;
    const std::vector<std::size_t> shares = catalogue::shares(*calculation, arguments.size());
    for (std::size_t i = 0; i < shares.size(); ++i) {
        const catalogue::Parameter& parameter = calculation->parameters[i];
        for (std::size_t k = 0; k < shares[i]; ++k) {
            if (k == 0) text.append(" ").append(parameter.name);
            text.append(k == 0 ? "=" : ",").append(typed(parameter, arguments[next++]));
        }
    }
    return text;
}

std::optional<Remedy> remedy_for(const Evaluator& host, const Calculation& calculation, Arguments arguments) {
    if (calculation.name == "RATE" && arguments.size() >= 3) return remedy_for_rate(host, arguments);
    if (calculation.name == "IRR") return remedy_for_irr(host, arguments);
    if (calculation.name == "XIRR" && arguments.size() > 1) return remedy_for_xirr(host, arguments);
    return {};
}

}  // namespace finance::calls
