// Searches side by side: each ends as it does by itself, whatever its neighbour does.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <limits>

#include "cashflow/newton_search.hpp"
#include "lanes/elementary.hpp"
#include "lanes/instruction_set.hpp"

namespace finance::test {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct Sides {
    bool there;
    double value;
    double derivative;
};

// Each ends in a way of its own, from 0.1, within some steps.
struct Way {
    const char* description;
    Sides (*objective)(double x);
    double scale;
};

Sides steps_of(double step, double x) { return {true, 1.0, -1.0 / (step * (x + 1.0))}; }

constexpr Way ways[] = {
    {"settles",
     [](double x) {
         return Sides{true, x * x - 0.04, 2.0 * x};
     },
     0.0},
    {"settles below 0",
     [](double x) {
         return Sides{true, std::log1p(x) + 3.0, 1.0 / (1.0 + x)};
     },
     0.0},
    {"settles at 0",
     [](double x) {
         return Sides{true, std::log1p(x) - 5e-9, 1.0 / (1.0 + x)};
     },
     0.0},
    {"settles far out",
     [](double x) {
         return Sides{true, std::log1p(x) - 20.0, 1.0 / (1.0 + x)};
     },
     0.0},
    {"falls to the lowest rate", [](double x) { return steps_of(-40.0, x); }, 0.0},
    {"steps that are no number",
     [](double) {
         return Sides{true, nan, 1.0};
     },
     0.0},
    {"steps too far", [](double x) { return x > 1.0 ? steps_of(355.0, x) : steps_of(1.0, x); }, 0.0},
    {"runs out of the numbers", [](double x) { return steps_of(354.0, x); }, 0.0},
    {"finds no value",
     [](double) {
         return Sides{false, nan, nan};
     },
     0.0},
    {"finds none later",
     [](double x) {
         return x > 1.0 ? Sides{false, 0.0, 0.0} : steps_of(1.0, x);
     },
     0.0},
    {"reaches the limit, far from 0", [](double x) { return steps_of(0.5, x); }, 1e14},
    {"reaches the limit, near 0", [](double x) { return steps_of(0.5, x); }, 1e15},
};

constexpr std::int32_t limit = 6;

struct End {
    bool found;
    double x;
};

End by_itself(const Way& way) {
    NewtonProblem problem{};
    problem.tolerance = 1e-12;
    problem.maxIterations = limit;
    problem.start = 0.1;
    problem.residualScale = way.scale;
    problem.userData = const_cast<Way*>(&way);
    problem.objective = [](NewtonProblem* p) -> std::uint32_t {
        const Sides sides = record_of<const Way>(p).objective(p->x);
        p->value = sides.value;
        p->derivative = sides.derivative;
        return sides.there ? 0U : 1U;
    };
    const bool found = CallSpecialNewton(&problem) == 0;
    return {found, problem.x};
}

using Number = Lanes<InstructionSet>;
using Truth = LaneTruth<InstructionSet>;

struct Pair {
    unsigned found;
    Number x;
    int passes;
};

Number lanes_of(double first, double second) {
    const std::array<double, std::size_t{InstructionSet::width}> values{first, second};
    return Number::load(values.data());
}

Pair side_by_side(const Way& first, const Way& second, unsigned wanted) {
    NewtonProblemOf<Number> problem{};
    problem.maxIterations = limit;
    problem.start = 0.1;
    problem.residualScale = lanes_of(first.scale, second.scale);
    Pair pair{};
    const auto objective = [&](NewtonProblemOf<Number>& at, Truth searching) {
        EXPECT_NE(searching.lanes(), 0U);
        ++pair.passes;
        const Sides of_first = first.objective(at.x[0]);
        const Sides of_second = second.objective(at.x[1]);
        at.value = lanes_of(of_first.value, of_second.value);
        at.derivative = lanes_of(of_first.derivative, of_second.derivative);
        return Truth::of_lanes((of_first.there ? 1U : 0U) | (of_second.there ? 2U : 0U));
    };
    pair.found = newton_search<Number>(problem, Truth::of_lanes(wanted), objective).lanes();
    pair.x = problem.x;
    return pair;
}

void expect_same(const End& alone, const Pair& pair, int lane, const char* description) {
    EXPECT_EQ(pair.found >> lane & 1U, alone.found ? 1U : 0U) << description;
    if (alone.found) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(pair.x[lane]), std::bit_cast<std::uint64_t>(alone.x)) << description;
    }
}

TEST(SearchesSideBySide, EndAsByThemselves) {
    int found = 0;
    for (const Way& first : ways) {
        found += by_itself(first).found ? 1 : 0;
        for (const Way& second : ways) {
            const Pair pair = side_by_side(first, second, 3);
            EXPECT_LE(pair.passes, limit + 1);
            expect_same(by_itself(first), pair, 0, first.description);
            expect_same(by_itself(second), pair, 1, second.description);
        }
    }
    EXPECT_EQ(found, 7);  // the six that settle or fall, and the one that ends near 0
}

TEST(SearchesSideBySide, AreMadeWhereTheyAreWanted) {
    const Way& way = ways[0];
    const Pair pair = side_by_side(way, way, 2);
    EXPECT_EQ(pair.found, 2U);
    expect_same(by_itself(way), pair, 1, way.description);
    EXPECT_EQ(pair.x[0], 0.1);
}

}  // namespace
}  // namespace finance::test
