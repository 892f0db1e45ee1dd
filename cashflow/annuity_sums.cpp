#include "cashflow/annuity_sums.hpp"

#include <algorithm>

#include "abi/conversions.hpp"
#include "cashflow/numeric_kernels.hpp"

namespace finance {

namespace {

constexpr std::int64_t longest_literal_walk = 10'000'000;

struct Running {
    double balance;
    double sum;
};

// Walks j = 1 .. last; false where the literal walk is too long.
template <typename Step>
bool walk_periods(const LoanWalk& walk, Running& now, Step step) {
    std::int64_t steps = 0;
    for (std::int64_t j = 1; j <= walk.last; ++j) {
        if (++steps > longest_literal_walk) return false;
        const Running before = now;
        step(now, j >= walk.first);
        if (!same_bits(now.balance, before.balance)) continue;
        if (j < walk.first) {
            j = walk.first - 1;  // until the range begins each step repeats this one
        } else if (same_bits(now.sum, before.sum)) {
            break;
        }
    }
    return true;
}

// (1 + r)^periods - 1
double growth(const LoanWalk& walk, double periods) { return zexpm1(periods * zln1px(walk.rate)); }

// (1 + r)^m - 1 - m r, the interest on interest of m periods.
//   m r < 1: sum of C(m, k) r^k from k = 2, until a term no longer counts; at most 20 terms, each below m r / k of the
//   one before
double interest_on_interest(const LoanWalk& walk, double m) {
    const double r = walk.rate;
    if (m * r >= 1.0) return growth(walk, m) - m * r;
    double term = m * r;
    double sum = 0.0;
    for (double k = 2.0; k <= 24.0; k += 1.0) {
        term = term * (m - k + 1.0) / k * r;
        sum += term;
    }
    return sum;
}

// The closed forms. With q = 1 + r, m steps from f on, s = 1 for payments at the start, the balance before step j is
//   P (q^n - q^(j-1+s)) / (q^s (q^n - 1))
// and so over the range
//   sum of r b      = P q^(f-1) [r m (q^(n-s-f+1) - 1) - (q^m - 1 - r m)] / (q^n - 1)
//   sum of principal = -P q^(f-1) (q^m - 1) / (q^n - 1)
struct Span {
    double first;
    double steps;
};

Span span_of(const LoanWalk& walk) {
    const std::int64_t first = std::max<std::int64_t>(walk.first, 1);
    return {static_cast<double>(first), static_cast<double>(std::max<std::int64_t>(walk.last - first + 1, 0))};
}

double closed_sum_of_interest(const LoanWalk& walk) {
    const auto [f, m] = span_of(walk);
    const double remaining = static_cast<double>(walk.nper) - (walk.at_start ? 1.0 : 0.0) - f + 1.0;
    const double bracket = walk.rate * m * growth(walk, remaining) - interest_on_interest(walk, m);
    return walk.presentValue * (1.0 + growth(walk, f - 1.0)) * bracket / growth(walk, walk.nper);
}

double closed_sum_of_principal(const LoanWalk& walk) {
    const auto [f, m] = span_of(walk);
    return (0.0 - walk.presentValue) * (1.0 + growth(walk, f - 1.0)) * growth(walk, m) / growth(walk, walk.nper);
}

}  // namespace

double sum_of_interest(const LoanWalk& walk) {
    Running now{walk.balance, walk.sum};
    const auto step = [&walk](Running& at, bool counted) {
        const double interest = walk.rate * at.balance;
        at.balance = at.balance + walk.payment + interest;
        if (counted) at.sum = at.sum - interest;
    };
    if (walk_periods(walk, now, step)) return now.sum;
    return walk.sum - closed_sum_of_interest(walk);
}

double sum_of_principal(const LoanWalk& walk) {
    Running now{walk.balance, walk.sum};
    const auto step = [&walk](Running& at, bool counted) {
        const double principal = walk.rate * at.balance + walk.payment;
        at.balance = at.balance + principal;
        if (counted) at.sum = at.sum + principal;
    };
    if (walk_periods(walk, now, step)) return now.sum;
    return walk.sum + closed_sum_of_principal(walk);
}

}  // namespace finance
