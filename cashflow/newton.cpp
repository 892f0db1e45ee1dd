#include "cashflow/newton.hpp"

#include "cashflow/newton_search.hpp"

namespace finance {

int CallSpecialNewton(NewtonProblem* problem) {
    const auto objective = [](NewtonProblem& at, bool) { return at.objective(&at) == 0; };
    return newton_search<double>(*problem, true, objective) ? 0 : 1;
}

bool find_rate(NewtonProblem::Objective objective, void* record, double start, double* rate, double residual_scale) {
    NewtonProblem problem{};
    problem.tolerance = rate_tolerance;
    problem.maxIterations = most_rate_steps;
    problem.objective = objective;
    problem.userData = record;
    problem.start = start;
    problem.residualScale = residual_scale;
    if (CallSpecialNewton(&problem) != 0) return false;
    *rate = problem.x;
    return true;
}

}  // namespace finance
