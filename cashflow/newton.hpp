// The one solver for rates and yields: Newton's method in u = ln(1 + x).
#pragma once

#include <cstdint>

namespace finance {

// A search. The caller fills what it owns, the objective and the solver the rest.
struct NewtonProblem {
    using Objective = std::uint32_t (*)(NewtonProblem* problem);

    double tolerance;            // caller: of a step, relative to the larger of the new rate and 1
    std::int32_t maxIterations;  // caller
    Objective objective;         // caller: value and derivative at x; 0, or non-zero where there are none
    void* userData;              // caller: for the objective
    double derivative;           // objective: f'(x), by the rate itself
    double value;                // objective: f(x)
    double start;                // caller: first rate, above -1
    double x;                    // solver: current rate; the root on success
    double residualScale;        // caller, or the objective: size of f, for the test at the limit
};

// Returns 0 with the root in x, or 1.
//  (1) The step is Newton's for f in u = ln(1 + x), so that a rate never falls to -1 and large steps multiply. A rate
//      is at least -0.9999999. A step above 354.89 in u fails.
//  (2) Two rates in succession below 2^-26.5 in size are a root of exactly 0.
//  (3) A step within the tolerance is the last one; so is one whose difference is not a number.
//  (4) Where the limit is reached, also by a step within the tolerance, only a value below 10 units of 2^-53 of
//      residualScale is success. The objective is called maxIterations + 1 times at the most.
int CallSpecialNewton(NewtonProblem* problem);

inline constexpr double rate_tolerance = 1e-12;
inline constexpr std::int32_t most_rate_steps = 100;

// The search that all calculations make, with the two figures above. False, and *rate as it was, where it finds none.
// What userData is may be asked of record_of.
bool find_rate(NewtonProblem::Objective objective, void* record, double start, double* rate, double residual_scale = 0);

template <typename Record>
Record& record_of(const NewtonProblem* problem) {
    return *static_cast<Record*>(problem->userData);
}

}  // namespace finance
