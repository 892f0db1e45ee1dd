// The solver's ways to end, each with an objective made for it.
#include "cashflow/newton.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "cashflow/numeric_kernels.hpp"

namespace finance::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

// An objective from a function of the rate, with a note of every rate that it was asked for.
struct Search {
    std::function<bool(double x, NewtonProblem&)> objective;  // false: refused
    std::vector<double> rates;
    NewtonProblem problem{};

    int run(double start, std::int32_t limit, double scale = 0.0, double tolerance = 1e-12) {
        problem.tolerance = tolerance;
        problem.maxIterations = limit;
        problem.start = start;
        problem.residualScale = scale;
        problem.userData = this;
        problem.objective = [](NewtonProblem* p) -> std::uint32_t {
            auto* search = static_cast<Search*>(p->userData);
            search->rates.push_back(p->x);
            return search->objective(p->x, *p) ? 0U : 7U;
        };
        return CallSpecialNewton(&problem);
    }
    [[nodiscard]] std::size_t calls() const { return rates.size(); }
};

// f = u - root in u = ln(1 + x): one step arrives, the next one does not move.
bool linear_in_u(double x, NewtonProblem& p, double root) {
    p.value = std::log1p(x) - root;
    p.derivative = 1.0 / (1.0 + x);
    return true;
}

// Every step is `step` long, whatever the rate.
std::function<bool(double, NewtonProblem&)> steps_of(double step, double value = 1.0) {
    return [=](double x, NewtonProblem& p) {
        p.value = value;
        p.derivative = -value / (step * (x + 1.0));
        return true;
    };
}

TEST(CallSpecialNewton, Converges) {
    Search search{[](double x, NewtonProblem& p) { return linear_in_u(x, p, 0.25); }, {}};
    ASSERT_EQ(search.run(0.1, 100), 0);
    EXPECT_NEAR(search.problem.x, std::expm1(0.25), 1e-14);
    EXPECT_LE(search.calls(), 3U);
    EXPECT_EQ(search.rates.front(), 0.1);
}

TEST(CallSpecialNewton, ConvergesOnASquareRoot) {
    Search search{[](double x, NewtonProblem& p) {
                      p.value = x * x - 2.0;
                      p.derivative = 2.0 * x;
                      return true;
                  },
                  {}};
    ASSERT_EQ(search.run(5.0, 100), 0);
    EXPECT_NEAR(search.problem.x, std::sqrt(2.0), 1e-15);
}

// The step is Newton's in u and is taken as x m + (m + x) with m = e^step - 1.
TEST(CallSpecialNewton, FirstStepBitForBit) {
    Search search{[](double x, NewtonProblem& p) {
                      p.value = 0.3 - x;
                      p.derivative = -0.7;
                      return x == 0.1;
                  },
                  {}};
    EXPECT_EQ(search.run(0.1, 100), 1);  // the second rate is refused
    ASSERT_EQ(search.calls(), 2U);
    const double m = zexpm1((0.0 - (0.3 - 0.1)) / ((0.1 + 1.0) * -0.7));
    EXPECT_EQ(search.rates[1], 0.1 * m + (m + 0.1));
}

TEST(CallSpecialNewton, SnapsToZero) {
    // from 1e-9 to 5e-9: both negligible, and further apart than the tolerance
    Search search{[](double x, NewtonProblem& p) { return linear_in_u(x, p, 5e-9); }, {}};
    ASSERT_EQ(search.run(1e-9, 100, 0.0, 1e-30), 0);
    EXPECT_EQ(search.problem.x, 0.0);
    EXPECT_FALSE(std::signbit(search.problem.x));
    EXPECT_EQ(search.calls(), 1U);
}

TEST(CallSpecialNewton, OneNegligibleRateIsNotEnough) {
    Search search{[](double x, NewtonProblem& p) { return linear_in_u(x, p, 5e-9); }, {}};
    ASSERT_EQ(search.run(0.1, 100, 0.0, 1e-30), 0);
    EXPECT_EQ(search.problem.x, 0.0);
    EXPECT_EQ(search.calls(), 2U);  // 0.1, about 5e-9; the step from there snaps
    Search above{[](double x, NewtonProblem& p) { return linear_in_u(x, p, 1.1e-8); }, {}};
    ASSERT_EQ(above.run(0.1, 100), 0);
    EXPECT_NEAR(above.problem.x, 1.1e-8, 1e-15);
}

// The snap counts no iteration, so that with a limit of 0 it stands at the limit all the same.
TEST(CallSpecialNewton, SnapAtTheLimitIsTestedByItsResidual) {
    const auto objective = [](double x, NewtonProblem& p) { return linear_in_u(x, p, 5e-9); };
    Search fails{objective, {}};
    EXPECT_EQ(fails.run(1e-9, 0, 0.0, 1e-30), 1);
    Search passes{objective, {}};
    EXPECT_EQ(passes.run(1e-9, 0, 1e9, 1e-30), 0);
    EXPECT_EQ(passes.problem.x, 0.0);
    Search counted{objective, {}};
    EXPECT_EQ(counted.run(1e-9, 1, 0.0, 1e-30), 0);
}

TEST(CallSpecialNewton, RefusedByTheObjective) {
    Search at_once{[](double, NewtonProblem&) { return false; }, {}};
    EXPECT_EQ(at_once.run(0.1, 100), 1);
    EXPECT_EQ(at_once.calls(), 1U);
    EXPECT_EQ(at_once.problem.x, 0.1);
    Search later{[n = 0](double, NewtonProblem& p) mutable {
                     p.value = -1.0;
                     p.derivative = 1.0;
                     return ++n < 4;
                 },
                 {}};
    EXPECT_EQ(later.run(0.1, 100), 1);
    EXPECT_EQ(later.calls(), 4U);
}

TEST(CallSpecialNewton, LongestStep) {
    Search too_long{steps_of(354.8913564467), {}};
    EXPECT_EQ(too_long.run(0.0, 100), 1);
    EXPECT_EQ(too_long.calls(), 1U);
    EXPECT_EQ(too_long.problem.x, 0.0);
    // from 0, e^354.8913 - 1 is a rate; the objective is asked there
    Search long_enough{steps_of(354.8913), {}};
    EXPECT_EQ(long_enough.run(0.0, 1), 1);
    EXPECT_EQ(long_enough.calls(), 2U);
    EXPECT_NEAR(std::log(long_enough.rates[1]), 354.8913, 1e-9);
    Search endless{steps_of(inf), {}};
    EXPECT_EQ(endless.run(0.5, 100), 1);
    EXPECT_EQ(endless.calls(), 1U);
}

// No number of a step goes to the lowest rate; from there it rests.
TEST(CallSpecialNewton, StepThatIsNoNumber) {
    Search search{[](double, NewtonProblem& p) {
                      p.value = nan;
                      p.derivative = 1.0;
                      return true;
                  },
                  {}};
    EXPECT_EQ(search.run(0.1, 100), 0);
    EXPECT_EQ(search.problem.x, -0.9999999);
    EXPECT_EQ(search.calls(), 2U);
    // a start that is no number: so is the difference, and that counts as settled
    Search from_nan{[](double, NewtonProblem& p) {
                        p.value = 1.0;
                        p.derivative = 1.0;
                        return true;
                    },
                    {}};
    EXPECT_EQ(from_nan.run(nan, 100), 0);
    EXPECT_EQ(from_nan.problem.x, -0.9999999);
    EXPECT_EQ(from_nan.calls(), 1U);
}

TEST(CallSpecialNewton, RatesStayAboveMinusOne) {
    Search search{steps_of(-40.0), {}};
    EXPECT_EQ(search.run(0.1, 100), 0);
    EXPECT_EQ(search.problem.x, -0.9999999);
    for (const double rate : search.rates) EXPECT_GE(rate, -0.9999999);
}

// ---- The limit

TEST(CallSpecialNewton, LimitReached) {
    for (const int limit : {0, 1, 2, 7, 100}) {
        Search large{steps_of(0.5), {}};
        EXPECT_EQ(large.run(0.1, limit, 1e14), 1) << limit;  // 1 is not below 0.111
        EXPECT_EQ(large.calls(), static_cast<std::size_t>(limit) + 1);
        Search small{steps_of(0.5), {}};
        EXPECT_EQ(small.run(0.1, limit, 1e15), 0) << limit;  // 1 is below 1.11
        EXPECT_EQ(small.calls(), static_cast<std::size_t>(limit) + 1);
        EXPECT_NE(small.problem.x, small.rates.back());  // the last step is taken
        Search no_scale{steps_of(0.5, 1e-300), {}};
        EXPECT_EQ(no_scale.run(0.1, limit, 0.0), 1) << limit;
    }
}

TEST(CallSpecialNewton, ResidualAtTheLimitMustBeBelowItsBound) {
    const double bound = 1.110223024625157e-15;
    Search equal{steps_of(0.5, bound), {}};
    EXPECT_EQ(equal.run(0.1, 3, 1.0), 1);
    Search below{steps_of(0.5, std::nextafter(bound, 0.0)), {}};
    EXPECT_EQ(below.run(0.1, 3, 1.0), 0);
    Search negative{steps_of(0.5, -std::nextafter(bound, 0.0)), {}};
    EXPECT_EQ(negative.run(0.1, 3, 1.0), 0);
    Search no_number{[](double, NewtonProblem& p) {
                         p.value = nan;
                         p.derivative = 1.0;
                         return true;
                     },
                     {}};
    EXPECT_EQ(no_number.run(0.1, 1, inf), 1);
}

// Steps of 1 for `moves` calls, then none: convergence on the call after them.
std::function<bool(double, NewtonProblem&)> settles_after(int moves, double value) {
    return [=, n = 0](double x, NewtonProblem& p) mutable {
        p.value = value;
        p.derivative = -value / ((n < moves ? 1.0 : 1e-14) * (x + 1.0));
        ++n;
        return true;
    };
}

TEST(CallSpecialNewton, ConvergenceOnTheStepThatEqualsTheLimit) {
    Search before{settles_after(4, 1.0), {}};
    EXPECT_EQ(before.run(0.1, 5), 0);  // four moves counted: below the limit
    EXPECT_EQ(before.calls(), 5U);
    Search at_limit{settles_after(5, 1.0), {}};
    EXPECT_EQ(at_limit.run(0.1, 5), 1);  // converged, yet the limit is reached and the residual is large
    EXPECT_EQ(at_limit.calls(), 6U);
    Search at_limit_small{settles_after(5, 1.0), {}};
    EXPECT_EQ(at_limit_small.run(0.1, 5, 1e15), 0);
    Search beyond{settles_after(6, 1.0), {}};
    EXPECT_EQ(beyond.run(0.1, 5), 1);
    EXPECT_EQ(beyond.calls(), 6U);
}

// The difference may be as large as the tolerance, of the new rate where that is above 1 in size.
TEST(CallSpecialNewton, ToleranceIsRelativeAboveOne) {
    Search near_0{steps_of(1e-6), {}};
    EXPECT_EQ(near_0.run(0.1, 50, 0.0, 1.2e-6), 0);  // moves by 1.1e-6
    EXPECT_EQ(near_0.calls(), 1U);
    Search too_far{steps_of(1e-6), {}};
    EXPECT_EQ(too_far.run(0.1, 50, 0.0, 1.05e-6), 1);
    Search large{steps_of(1e-6), {}};
    EXPECT_EQ(large.run(1e6, 50, 0.0, 1.2e-6), 0);  // moves by 1
    EXPECT_EQ(large.calls(), 1U);
}

}  // namespace
}  // namespace finance::test
