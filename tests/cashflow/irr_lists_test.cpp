// IRR over random lists in great number, each with a known rate: how many are answered, and how many of the answers solve
// their list. Where one stops is compared bit for bit elsewhere (tests/model/model_test.cpp).
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "cashflow/irr.hpp"
#include "tests/cashflow/flow_lists.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr int lists_each = 5000;

struct Share {
    int answered = 0;
    int solved = 0;      // of those: the worth is 0 to within 1e-10 of the largest discounted flow
    double worst = 0.0;  // worth of those, beyond what rounds the rate
    [[nodiscard]] double answered_percent() const { return 100.0 * answered / lists_each; }
    [[nodiscard]] double unsolving_percent() const { return 100.0 * (answered - solved) / answered; }
};

Share solve_many(const Population& population, Changes changes) {
    Draws draw{40};
    Share share;
    for (int i = 0; i < lists_each; ++i) {
        const FlowList list = draw_flows(draw, population, changes);
        const Answer answer = solve_periodic(list.flows);
        if (answer.code != IRR_SOLVED) continue;
        ++share.answered;
        const Worth worth = worth_at(list.flows, answer.rate);
        const double error = worth.relative - worth.of_rounding;
        if (!(error <= 1e-10)) continue;
        ++share.solved;
        share.worst = std::max(share.worst, error);
    }
    return share;
}

// With one change of sign a stop is the root, unless sums leave the range of doubles.
TEST(IrrOfRandomLists, OneChangeIsSolved) {
    for (const Population& population : populations) {
        const Share share = solve_many(population, Changes::one);
        const int lost = population.unit > 1e200 ? 5 : 0;
        EXPECT_GE(share.answered, lists_each - lost) << population.name;
        EXPECT_GE(share.solved, share.answered - lost) << population.name;
        EXPECT_LE(share.worst, 1e-11) << population.name;
    }
}

// Percent; the survey (irr_survey) prints what there is.
struct Bounds {
    double answered_at_least;
    double unsolving_at_most;  // of the answers
};

void check_bounds(const std::array<Bounds, populations.size()>& bounds, Changes changes) {
    for (std::size_t i = 0; i < populations.size(); ++i) {
        const Share share = solve_many(populations[i], changes);
        EXPECT_GE(share.answered_percent(), bounds[i].answered_at_least) << populations[i].name;
        EXPECT_LE(share.unsolving_percent(), bounds[i].unsolving_at_most) << populations[i].name;
    }
}

TEST(IrrOfRandomLists, TwoChangesAreMostlyAnswered) {
    check_bounds({{{99.5, 3}, {97, 9}, {99.5, 3}, {97, 43}, {95, 49}, {95, 34}, {95, 31}}}, Changes::two);
}

TEST(IrrOfRandomLists, ManyChangesAreOftenAnswered) {
    check_bounds({{{99, 0.5}, {96, 0.5}, {74, 1}, {74, 3}, {82, 30}, {74, 11}, {75, 10}}}, Changes::many);
}

// Nothing rounds differently for the other sign.
TEST(IrrOfRandomLists, TurnedRoundTheyHaveTheSameBits) {
    Draws draw{42};
    int solved = 0;
    for (int i = 0; i < 7000; ++i) {
        const std::array kinds{Changes::one, Changes::two, Changes::many};
        std::vector<double> flows =
            draw_flows(draw, populations[static_cast<std::size_t>(i % 7)], kinds[static_cast<std::size_t>(i / 7 % 3)])
                .flows;
        const Answer answer = solve_periodic(flows);
        for (double& flow : flows) flow = -flow;
        const Answer turned = solve_periodic(flows);
        EXPECT_EQ(answer.code, turned.code) << i;
        if (answer.code == 0 && turned.code == 0) {
            EXPECT_EQ(bits(answer.rate), bits(turned.rate)) << i;
            ++solved;
        }
    }
    EXPECT_EQ(solved, 6567);
}

// With one change there is one root: the rate that was drawn.
TEST(IrrOfRandomLists, OneChangeGivesTheRateDrawn) {
    Draws draw{41};
    for (int i = 0; i < 5000; ++i) {
        const FlowList list = draw_flows(draw, populations[0], Changes::one);
        EXPECT_NEAR(solve_periodic(list.flows).rate, list.rate, 1e-12 * (1.0 + list.rate));
    }
}

}  // namespace
}  // namespace finance::test
