// How many lists of flows IRR and XIRR answer, and how many of the answers solve them: the figures of docs/solvers.md.
//
//     irr_survey [lists of each kind and number of sign changes]
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "cashflow/irr.hpp"
#include "cashflow/kernels.hpp"
#include "tests/cashflow/flow_lists.hpp"

namespace finance::test {
namespace {

constexpr double largest_worth = 1e-10;  // beside the largest discounted flow, beyond what rounds the rate

struct Tally {
    int lists = 0;
    int answered = 0;
    int below_minus_one = 0;  // of those
    int unsolving = 0;        // of those: the worth is no 0
    int far_off = 0;          // of those: by more than a hundredth of the largest discounted flow
    int refused_by_rate[3] = {0, 0, 0};
    int unsolving_by_rate[3] = {0, 0, 0};
    int lists_by_rate[3] = {0, 0, 0};
    double worst = 0.0;  // worth of the answers that solve

    void add(double known_rate, bool is_answered, double rate, const Worth& worth) {
        const int band = known_rate < -0.5 ? 0 : known_rate < 0.0 ? 1 : 2;
        ++lists;
        ++lists_by_rate[band];
        if (!is_answered) {
            ++refused_by_rate[band];
            return;
        }
        ++answered;
        if (rate < -1.0) ++below_minus_one;
        const double error = worth.relative - worth.of_rounding;
        if (!(error <= largest_worth)) {
            ++unsolving;
            ++unsolving_by_rate[band];
            if (!(error <= 0.01)) ++far_off;
        } else if (error > worst) {
            worst = error;
        }
    }
    void print(const char* name, const char* changes) const {
        std::printf("%-30s %-5s %6d %7.2f %% %6.2f %% %5d %6d %8.1e", name, changes, lists, 100.0 * answered / lists,
                    100.0 * unsolving / answered, unsolving, below_minus_one, worst);
        for (int band = 0; band < 3; ++band) {
            std::printf("   %5d %5d %5d", lists_by_rate[band], refused_by_rate[band], unsolving_by_rate[band]);
        }
        std::printf("\n");
    }
};

constexpr const char* heading =
    "                               signs                   do not solve   below  worst of   lists with a known rate, "
    "refused, not solved\n"
    "flows                          change  lists answered     of these       -1 the others   below -50 %         "
    "below 0             above\n";

constexpr Changes all_changes[] = {Changes::one, Changes::two, Changes::many};
constexpr const char* changes_name[] = {"once", "twice", "often"};

void survey_irr(int lists) {
    std::printf("IRR\n%s", heading);
    Tally all;
    for (const Changes changes : all_changes) {
        for (const Population& population : populations) {
            Draws draw{20};
            Tally tally;
            for (int i = 0; i < lists; ++i) {
                const FlowList list = draw_flows(draw, population, changes);
                const Answer answer = solve_periodic(list.flows);
                tally.add(list.rate, answer.code == 0, answer.rate, worth_at(list.flows, answer.rate));
            }
            tally.print(population.name, changes_name[static_cast<int>(changes)]);
            all.lists += tally.lists;
            all.answered += tally.answered;
            all.unsolving += tally.unsolving;
            all.far_off += tally.far_off;
        }
    }
    std::printf("%d lists, %d answers, %d do not solve, %d of these by more than 1 %% of the largest discounted flow\n",
                all.lists, all.answered, all.unsolving, all.far_off);
}

// One change of sign, 2 to 8 flows anywhere in 360 periods, logarithmic sizes from 1/largest to largest: how each ends.
void survey_far_sizes(int lists, double largest) {
    Draws draw{22};
    int solved = 0;
    int overflows = 0;
    int no_rate = 0;
    for (int i = 0; i < lists; ++i) {
        std::vector<double> flows(static_cast<std::size_t>(draw.whole(2, 360)), 0.0);
        const auto periods = static_cast<std::int64_t>(flows.size());
        const auto change = draw.whole(1, periods - 1);
        for (auto pairs = draw.whole(1, 4); pairs > 0; --pairs) {
            flows[static_cast<std::size_t>(draw.whole(0, change - 1))] = -draw.log_between(1.0 / largest, largest);
            flows[static_cast<std::size_t>(draw.whole(change, periods - 1))] = draw.log_between(1.0 / largest, largest);
        }
        const std::int32_t code = solve_periodic(flows).code;
        if (code == IRR_SOLVED) ++solved;
        if (code == IRR_NOT_SETTLED) ++overflows;
        if (code == IRR_NO_RATE) ++no_rate;
    }
    std::printf("IRR, one change, sizes %.0e to %.0e: %d of %d solved, %d not settled, %d without a rate\n",
                1.0 / largest, largest, solved, lists, overflows, no_rate);
}

void survey_xirr(int lists) {
    std::printf("\nXIRR\n%s", heading);
    constexpr const char* dates_name[] = {"dates in order", "dates in order, repeated", "dates in no order"};
    for (const Changes changes : all_changes) {
        for (const Dates dates : {Dates::ascending, Dates::repeated, Dates::unsorted}) {
            Draws draw{21};
            Tally tally;
            for (int i = 0; i < lists; ++i) {
                DatedList list = draw_dated(draw, dates, changes);
                DatedCashFlows flows{};
                flows.count = static_cast<std::int32_t>(list.values.size());
                flows.values = list.values.data();
                flows.dates = list.days.data();
                const bool solved = zComputeXIRR(&flows) == XIRR_SOLVED;
                tally.add(list.rate, solved, flows.rate, worth_at(list, flows.rate));
            }
            tally.print(dates_name[static_cast<int>(dates)], changes_name[static_cast<int>(changes)]);
        }
    }
}

}  // namespace
}  // namespace finance::test

int main(int argc, char** argv) {
    const int lists = argc > 1 ? std::atoi(argv[1]) : 10000;
    if (lists < 1) {
        std::fprintf(stderr, "usage: irr_survey [lists of each kind, at least 1]\n");
        return 1;
    }
    finance::test::survey_irr(lists);
    finance::test::survey_far_sizes(lists, 1e100);
    finance::test::survey_far_sizes(lists, 1e300);
    finance::test::survey_xirr(lists);
}
