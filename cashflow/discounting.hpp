// Flows discounted at one rate: powers of one base side by side, added up strictly in the order of the flows.
//
//  (1) Years are the days from the first flow over 365. They are formed anew at every rate, which takes less than to keep
//      them would.
//  (2) Powers that are not plain (a base that is no normal positive number, results near the ends of the doubles) have the
//      bits of pow one by one.
#pragma once

#include <cstdint>

#include "cashflow/newton.hpp"
#include "elementary/functions.hpp"

namespace finance {

// Day: a Julian day, or a whole number below 2^31 in size.
template <typename Day>
struct DatedFlows {
    const double* values;
    const Day* days;
    std::int64_t count;  // at least 1
};

// For one set of instructions. With q = 1 / (1 + rate) and t_i years from the first flow:
struct Discounting {
    // v_0 + sum of v_i q^t_i
    double (*value)(const DatedFlows<std::int64_t>& flows, double q);
    double (*value_of_list)(const DatedFlows<double>& flows, double q);
    // At the rate problem.x: the same, the sum of -t_i q v_i q^t_i, and the largest flow as its size.
    void (*sides)(const DatedFlows<std::int64_t>& flows, NewtonProblem& problem);
    void (*sides_of_list)(const DatedFlows<double>& flows, NewtonProblem& problem);
    // All values are there, and all days whole and below 2^31 in size.
    bool (*is_usual)(const DatedFlows<double>& flows);
};
extern const Discounting discounting_sse2;
extern const Discounting discounting_avx2;

inline const Discounting& best_discounting() {
    return elementary::has_wide_lanes ? discounting_avx2 : discounting_sse2;
}

}  // namespace finance
