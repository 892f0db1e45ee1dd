// Roots of the present value of periodic flows, by the number of times that the flows change sign.
#pragma once

#include <cstdint>

#include "cashflow/irr.hpp"

namespace finance {

// The flows of periods 0 .. n - 1, the first and the last not 0.
struct Flows {
    const double* c;
    std::int32_t n;
};

// Both leave the discount factor in *z, or return why there is none. All values of the polynomial are the stored ones of
// EvalPol, without their exponent.

// Exactly one change of sign: with B(z) the flows before it and z^s A(z) those from it on, Newton's method on
//   g(t) = ln|B(e^t)| - ln|A(e^t)| - s t        t = ln z
// from t = 0. g falls strictly, by at least 1 for each 1 of t: there is one root.
IrrStatus root_of_one_change(const Flows& flows, double* z);

// Two changes or more: Newton's method on p from just below 1, kept within (0, 1]; from just above 1, kept above;
// then Laguerre's method from 0.99 and four fixed places. Each stops by its own rules, at a root or elsewhere: beside the
// largest flow the value may be small where it is large beside the discounted ones.
IrrStatus root_of_several_changes(const Flows& flows, double* z);

}  // namespace finance
