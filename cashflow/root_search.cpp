#include "cashflow/root_search.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"

namespace finance {

namespace {

constexpr std::int32_t most_steps = 40;

constexpr std::array zranuniValues{0.3629244535057, 0.7451947130008, 0.8310586730163, 0.2762771729735, 0.1838237541652,
                                   0.7288826889027, 0.0778925298145, 0.734318205963,  0.7072535379358, 0.7640795124527};

bool opposite(double a, double b) { return (a > 0.0 && b < 0.0) || (a < 0.0 && b > 0.0); }

// Where the flows change sign for the first time; n where they do not.
std::int32_t first_change(const Flows& flows) {
    std::int32_t k = 1;
    while (k < flows.n && !opposite(flows.c[0], flows.c[k])) ++k;
    count_steps(k);
    return k;
}

CashFlowPolynomial block(const double* c, std::int32_t n) {
    CashFlowPolynomial polynomial{};
    polynomial.c = c;
    polynomial.degree = n - 1;
    return polynomial;
}

}  // namespace

// ---- One change of sign

IrrStatus root_of_one_change(const Flows& flows, double* z) {
    constexpr double smallest_step = 1e-10;
    const std::int32_t s = first_change(flows);
    if (s == flows.n) return IRR_NO_SPLIT;
    std::int32_t before = s;  // without the zeros at the end of the first block; the second begins with none
    while (before > 1 && flows.c[before - 1] == 0.0) --before;
    count_steps(s);
    CashFlowPolynomial B = block(flows.c, before);
    CashFlowPolynomial A = block(flows.c + s, flows.n - s);

    double t = 0.0;
    for (std::int32_t step_count = 0; step_count < most_steps; ++step_count) {
        const double e_t = elementary::exp(t);
        EvalPol(e_t, &B);
        EvalPol(e_t, &A);
        const double ln_B = elementary::log(std::abs(B.p)) + B.exponent;
        const double ln_A = elementary::log(std::abs(A.p)) + A.exponent;
        const double g = ln_B - ln_A - s * t;
        const double derivative = e_t * B.p1 / B.p - e_t * A.p1 / A.p - s;
        const double step = g / derivative;
        t = t - step;
        if (std::abs(step) <= smallest_step) {
            *z = elementary::exp(t);
            return IRR_SOLVED;
        }
    }
    return IRR_NOT_SETTLED;
}

// ---- Several changes

namespace {

// Largest absolute flow of the first run of one sign (stride 1 from the first flow), or of the last (stride -1).
double largest_of_run(const double* c, std::int64_t stride, std::int32_t n) {
    double largest = 0.0;
    count_steps(n);
    for (std::int32_t k = 0; k < n && !opposite(c[0], c[k * stride]); ++k) {
        largest = std::max(largest, std::abs(c[k * stride]));
    }
    return largest;
}

struct Polynomial {
    CashFlowPolynomial p;
    double largest;  // absolute coefficient
};

Polynomial whole(const Flows& flows) {
    Polynomial polynomial{block(flows.c, flows.n), zvamx(flows.c, flows.n)};
    polynomial.p.leadingScale = largest_of_run(flows.c, 1, flows.n);
    polynomial.p.trailingScale = largest_of_run(flows.c + (flows.n - 1), -1, flows.n);
    return polynomial;
}

// A side of 1 to search on: where to begin, and what takes the place of a step that leaves it.
struct Side {
    double start;
    double lowest;   // exclusive
    double highest;  // inclusive
    double factor;   // of the old z
    double term;     // added to it
};

constexpr Side below_one{0.999999999999, 0.0, 1.0, 0.5, 0.0};
constexpr Side above_one{1.000000000001, 1.0, HUGE_VAL, 1.0, 1.0};

// The step comes first, then the question whether it was the last, then its replacement where it leaves the side: a stop
// stands wherever it leads. Under the flag, when the first flows no longer count beside the last, a stop is a failure.
// A step that is no number is not replaced, and nothing stops the search then but the number of its steps.
bool newton_on_side(Polynomial& polynomial, const Side& side, double* z) {
    constexpr double tolerance = 1e-10;
    double x = side.start;
    for (std::int32_t step_count = 0; step_count < most_steps; ++step_count) {
        EvalPol(x, &polynomial.p);
        const double step = polynomial.p.p / polynomial.p.p1;
        const double next = x - step;
        if (std::abs(polynomial.p.p) < tolerance * polynomial.largest || std::abs(step) < tolerance) {
            *z = next;
            return !polynomial.p.underflow;
        }
        x = next <= side.lowest || next > side.highest ? side.factor * x + side.term : next;
    }
    return false;
}

// With a = |p|, and the sign that makes the step shorter,
//   z - a / (sgn p'/d +- sqrt((p'^2 (1 - 1/d) - p p'') (1 - 1/d)))
// A negative radicand sends the search to the next place, which counts as a step. What it finds may be above 1, or
// negative. The sign of 0 is +.
bool laguerre(Polynomial& polynomial, double* z) {
    constexpr double tolerance = 1e-12;
    constexpr std::size_t restarts = 4;
    const CashFlowPolynomial& p = polynomial.p;
    const double d = p.degree;
    const double share = 1.0 - 1.0 / d;
    double x = 0.99;
    std::size_t restart = 0;
    for (std::int32_t step_count = 0; step_count < most_steps; ++step_count) {
        EvalPol(x, &polynomial.p);
        const double sgn = p.p < 0.0 ? -1.0 : 1.0;
        const double a = std::abs(p.p);
        if (a < tolerance * polynomial.largest) {
            *z = x;
            return true;
        }
        const double disc = (p.p1 * p.p1 * share - p.p * p.p2) * share;
        if (disc < 0.0) {
            if (restart == restarts) return false;
            x = zranuniValues[restart++];
            continue;
        }
        const double slope = sgn * p.p1 / d;
        const double den = slope < 0.0 ? slope - std::sqrt(disc) : slope + std::sqrt(disc);
        const double step = a / den;
        x = x - step;
        if (std::abs(step) <= tolerance * std::abs(x)) {
            *z = x;
            return true;
        }
    }
    return false;
}

}  // namespace

// Flows whose sizes sum to less than 1e-20 of the largest would have the root 1 at once; there are none, since the largest
// is part of the sum.
IrrStatus root_of_several_changes(const Flows& flows, double* z) {
    Polynomial polynomial = whole(flows);
    if (newton_on_side(polynomial, below_one, z) || newton_on_side(polynomial, above_one, z) ||
        laguerre(polynomial, z)) {
        return IRR_SOLVED;
    }
    return IRR_NO_ROOT;
}

}  // namespace finance
