// The search of CallSpecialNewton (newton.hpp has its rules), for one problem or for several side by side.
#pragma once

#include <cstdint>

#include "abi/limits.hpp"
#include "abi/steps.hpp"
#include "cashflow/newton.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "lanes/lanes.hpp"

namespace finance {

// What a search asks of a NewtonProblem, for N.
template <typename N>
struct NewtonProblemOf {
    double tolerance = rate_tolerance;
    std::int32_t maxIterations = most_rate_steps;
    N derivative;  // objective
    N value;       // objective
    N start;       // caller
    N x;           // solver: current rate; the root where there is one
    N residualScale;
};

namespace newton {

constexpr double longest_step = 354.891356446692;  // half of what overflows
constexpr double lowest_rate = -0.9999999;
constexpr double residual_tolerance = 1.110223024625157e-15;
constexpr double idle_step = 0x1p-7;  // of a problem that waits: no special case of zexpm1

// x moved by `step` in ln(1 + x): (1 + x) e^step - 1. What is not a number becomes the lowest rate.
template <typename N>
N moved(N x, N step) {
    const N m = zexpm1(step);
    const N rate = x * m + (m + x);
    return select(rate > lowest_rate, rate, N{lowest_rate});
}

template <typename N>
TruthOf<N> negligible(N rate) {
    return abs(rate) < smallest_that_counts;
}

// The step is no longer than the tolerance allows, or no number.
template <typename N>
TruthOf<N> settled(N x, N next, double tolerance) {
    const N size = abs(next);
    return !(abs(x - next) > tolerance * select(size < 1.0, N{1.0}, size));
}

}  // namespace newton

// Which of the problems that are `searching` have a root; it is in problem.x. One step a pass for all of them: a problem
// that is settled or lost keeps its x and waits. objective(problem, searching) sets value and derivative at x, and the
// residual's scale where it is the objective's; its answer is where there are such. For idle lanes all figures will do.
template <typename N, typename Problem, typename Objective>
TruthOf<N> newton_search(Problem& problem, TruthOf<N> searching, Objective objective) {
    TruthOf<N> found = both(searching, !searching);
    problem.x = problem.start;
    for (std::int32_t iteration = 0;; ++iteration) {
        count_step();
        searching = both(searching, objective(problem, searching));
        if (!any(searching)) return found;
        const N x = problem.x;
        const N step = (0.0 - problem.value) / ((x + 1.0) * problem.derivative);
        searching = both(searching, !(step > newton::longest_step));
        if (!any(searching)) return found;
        const N next = newton::moved(x, select(searching, step, N{newton::idle_step}));
        const auto zero = both(newton::negligible(x), newton::negligible(next));
        problem.x = select(searching, select(zero, N{0.0}, next), x);
        if (iteration >= problem.maxIterations) {
            const auto small = abs(problem.value) < newton::residual_tolerance * problem.residualScale;
            return either(found, both(searching, small));
        }
        const auto done = either(zero, newton::settled(x, next, problem.tolerance));
        found = either(found, both(searching, done));
        searching = both(searching, !done);
        if (!any(searching)) return found;
    }
}

}  // namespace finance
