#include "cashflow/newton.hpp"

#include <algorithm>
#include <cmath>

#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"

namespace finance {

namespace {

constexpr double longest_step = 354.891356446692;  // half of what overflows
constexpr double lowest_rate = -0.9999999;
constexpr double residual_tolerance = 1.110223024625157e-15;

// x moved by `step` in ln(1 + x): (1 + x) e^step - 1. What is not a number becomes the lowest rate.
double moved(double x, double step) {
    const double m = zexpm1(step);
    const double rate = x * m + (m + x);
    return rate > lowest_rate ? rate : lowest_rate;
}

bool negligible(double rate) { return std::abs(rate) < smallest_that_counts; }

int outcome(const NewtonProblem& problem, std::int32_t iteration) {
    if (iteration < problem.maxIterations) return 0;
    return std::abs(problem.value) < residual_tolerance * problem.residualScale ? 0 : 1;
}

}  // namespace

int CallSpecialNewton(NewtonProblem* problem) {
    std::int32_t iteration = 0;
    problem->x = problem->start;
    while (true) {
        count_step();
        if (problem->objective(problem) != 0) return 1;
        const double x = problem->x;
        const double step = (0.0 - problem->value) / ((x + 1.0) * problem->derivative);
        if (step > longest_step) return 1;
        const double next = moved(x, step);
        if (negligible(x) && negligible(next)) {
            problem->x = 0.0;
            return outcome(*problem, iteration);
        }
        problem->x = next;
        const bool settled = !(std::abs(x - next) > problem->tolerance * std::max(std::abs(next), 1.0));
        if (settled) return outcome(*problem, iteration);
        if (iteration++ >= problem->maxIterations) return outcome(*problem, iteration);
    }
}

bool find_rate(NewtonProblem::Objective objective, void* record, double start, double* rate, double residual_scale) {
    NewtonProblem problem{};
    problem.tolerance = 1e-12;
    problem.maxIterations = 100;
    problem.objective = objective;
    problem.userData = record;
    problem.start = start;
    problem.residualScale = residual_scale;
    if (CallSpecialNewton(&problem) != 0) return false;
    *rate = problem.x;
    return true;
}

}  // namespace finance
