#include "calls/solution.hpp"

#include <algorithm>
#include <cmath>

#include "abi/floating_point_mode.hpp"
#include "calls/equations.hpp"
#include "catalogue/text.hpp"

namespace finance::calls {

using catalogue::Calculation;

namespace {

constexpr double near = 1e-10;  // of the terms
constexpr double near_rate = 1e-9;
constexpr double rates_that_are_0 = 0x1p-26;  // searches take two rates in succession below 2^-26.5 for 0

// Stays on the rate's side of -1.
double resolution(double rate) {
    if (rate == 0.0) return rates_that_are_0;
    return std::min(near_rate * std::max(1.0, std::abs(rate)), std::abs(1.0 + rate) / 2.0);
}

bool crosses_target(const Equation& equation, double rate) {
    const double step = resolution(rate);
    const double below = equation.at(rate - step).miss();
    const double above = equation.at(rate + step).miss();
    return (below < 0.0 && above > 0.0) || (below > 0.0 && above < 0.0);
}

// Terms that are all 0 prove nothing.
bool is_little(double miss, double terms) { return terms > 0.0 && std::isfinite(terms) && miss <= near * terms; }

bool comes_near(const Equation& equation, double rate) {
    const Equation::Trial trial = equation.at(rate);
    const double miss = std::abs(trial.miss());
    if (!std::isfinite(miss)) return false;
    return is_little(miss, equation.known_terms(trial)) || is_little(miss, equation.all_terms(rate));
}

bool solves_in_this_mode(const host::Evaluator& host, const Calculation& calculation, Arguments arguments,
                         double answer) {
    const auto equation = equation_of(host, calculation, arguments);
    if (!equation) return true;
    if (answer != lowest_rate && comes_near(*equation, answer)) return true;
    return crosses_target(*equation, answer) || equation->is_rule(answer);
}

}  // namespace

// Flows may be denormal numbers, and a side of the target the last bit.
bool solves(const host::Evaluator& host, const Calculation& calculation, Arguments arguments, double answer) {
    return in_usual_mode(solves_in_this_mode, host, calculation, arguments, answer);
}

bool holds(const host::Evaluator& host, const Calculation& calculation, Arguments arguments, double answer) {
    return std::isfinite(answer) && solves(host, calculation, arguments, answer);
}

std::string unsolved_words(const host::Evaluator& host, const Calculation& calculation, Arguments arguments,
                           double answer) {
    const auto equation = equation_of(host, calculation, arguments);
    if (!equation) return {};
    const auto [value, target, name] = equation->at(answer);
    const auto text = [&](double amount) { return catalogue::plain_text(equation->amount(amount)); };
    std::string words;
    if (answer == lowest_rate) words = "the search ended at the lowest rate that it tries; ";
    words += name;
    if (!std::isfinite(equation->amount(value))) return words + " has no answer, or one too large";
    if (value == target) return words + " is " + text(value) + ", as at any other";
    return words + " is " + text(value) + ", not " + text(target);
}

}  // namespace finance::calls
