#include "cashflow/annuity_sums.hpp"

#include <algorithm>
#include <cmath>

#include "abi/conversions.hpp"
#include "abi/limits.hpp"
#include "calendar/repeated_sum.hpp"

namespace finance {

namespace {

constexpr std::int64_t most_steps = 100'000'000 / walks_shortened;

struct Running {
    double balance;
    double sum;
};

// The sum after the steps from j on, of which all are equal.
template <typename Step>
double sum_at_rest(const LoanWalk& walk, Running at, std::int64_t j, Step step) {
    return repeat_sum(at.sum, walk.last - std::max(j, walk.first) + 1, [&](double sum) {
        Running next{at.balance, sum};
        step(next, true);
        return next.sum;
    });
}

// Walks j = 1 .. last; false where the literal walk is too long.
template <typename Step>
bool walk_periods(const LoanWalk& walk, double* sum, Step step) {
    if (walk.first > walk.last) return true;
    const double smallest_factor = walk.rate * std::min(std::abs(walk.presentValue), 1.0);
    const std::int64_t longest = longest_literal_walk(most_steps, smallest_factor);
    Running now{walk.balance, walk.sum};
    for (std::int64_t j = 1; j <= walk.last; ++j) {
        if (j > longest) return false;
        count_step();
        const double before = now.balance;
        step(now, j >= walk.first);
        if (!same_bits(now.balance, before)) continue;
        *sum = sum_at_rest(walk, now, j + 1, step);
        return true;
    }
    *sum = now.sum;
    return true;
}

}  // namespace

double sum_of_interest(const LoanWalk& walk) {
    double sum = walk.sum;
    const auto step = [&walk](Running& at, bool counted) {
        const double interest = walk.rate * at.balance;
        at.balance = at.balance + walk.payment + interest;
        if (counted) at.sum = at.sum - interest;
    };
    if (walk_periods(walk, &sum, step)) return sum;
    return walk.sum - closed_interest(walk);
}

double sum_of_principal(const LoanWalk& walk) {
    double sum = walk.sum;
    const auto step = [&walk](Running& at, bool counted) {
        const double principal = walk.rate * at.balance + walk.payment;
        at.balance = at.balance + principal;
        if (counted) at.sum = at.sum + principal;
    };
    if (walk_periods(walk, &sum, step)) return sum;
    return walk.sum - closed_principal(walk);
}

}  // namespace finance
