// Sums over spans of a loan: closed forms against 2400 bits, which no rate is too small for, and the bits of the loop up to
// where they take over.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include "cashflow/annuity_sums.hpp"
#include "cashflow/kernels.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/cashflow/literal_loans.hpp"
#include "tests/support/call.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {
namespace {

using Wide = PreciseOf<2400>;
constexpr double accuracy = 1e-12;
constexpr int draws = drawn(1000);
constexpr double longest_exponent = 709.782712893384;

// n periods at rate r, P = 1; payments at the start for s = 1. Steps f .. f + m - 1, at 2400 bits.
struct WideLoan {
    double r;
    double n;
    double s;

    // ((1 + r)^k - 1) / r
    [[nodiscard]] Wide grown(double k) const { return exponential_less_1(logarithm_of_1_and(Wide{r}) * k) / r; }
    [[nodiscard]] Wide power_of_growth(double k) const { return grown(k) * r + 1.0; }
    // ((1 + r)^m - 1 - m r) / r^2
    [[nodiscard]] Wide interest(double f, double m) const {
        const Wide twice = (grown(m) - m) / r;
        return power_of_growth(f - 1.0) * r * (grown(n - s - f + 1.0) * m - twice) / grown(n);
    }
    [[nodiscard]] Wide principal(double f, double m) const { return power_of_growth(f - 1.0) * grown(m) / grown(n); }
    // Steps until the balance would be below 0.
    [[nodiscard]] double steps_of_loan(double f, double m) const {
        return n < 0.0 ? m : std::min(std::max(n - s - f + 1.0, 0.0), m);
    }
    [[nodiscard]] Wide size_of_interest(double f, double m) const {
        const double inside = steps_of_loan(f, m);
        return magnitude(interest(f, inside)) + magnitude(interest(f + inside, m - inside));
    }
};

// The formulas above are the recurrence.
TEST(LoanSpans, FormulaAt2400BitsIsTheRecurrence) {
    Draws draw{21};
    Worst worst;
    for (int i = 0; i < 100; ++i) {
        const double r = i % 10 == 0 ? 5e-324 : draw.log_between(1e-300, 0.5);
        const auto n = static_cast<double>(draw.whole(1, 60)) * (i % 4 == 0 ? -1.0 : 1.0);
        const WideLoan loan{r, n, static_cast<double>(i % 2)};
        const auto first = draw.whole(1, 70);
        const auto last = draw.whole(first, 75);
        const Wide growth = Wide{r} + 1.0;
        const Wide at_end = Wide{0.0} - Wide{r} * power(growth, Wide{n}) / (power(growth, Wide{n}) - 1.0);
        const Wide payment = loan.s == 0.0 ? at_end : at_end / growth;
        Wide balance = loan.s == 0.0 ? Wide{1.0} : payment + 1.0;
        Wide interest;
        Wide principal;
        Wide size;
        for (std::int64_t j = 1; j <= last; ++j) {
            const Wide added = balance * r;
            if (j >= first) {
                interest = interest + added;
                principal = principal - added - payment;
                size = size + magnitude(added);
            }
            balance = balance + added + payment;
        }
        const auto f = static_cast<double>(first);
        const auto m = static_cast<double>(last - first + 1);
        worst.add((magnitude(loan.interest(f, m) - interest) / size).rounded());
        worst.add(magnitude(loan.principal(f, m) / principal - 1.0).rounded());
        worst.add(magnitude(loan.size_of_interest(f, m) / size - 1.0).rounded());
    }
    EXPECT_EQ(worst.count(), 300);
    EXPECT_LE(worst.error(), 1e-60);
}

struct DrawnSpan {
    LoanWalk walk;
    double f;
    double m;
};

// All that reaches the closed forms, and more: rates from the smallest to 1e-4 of which the growth does not overflow,
// spans inside the loan, across its end and beyond it.
DrawnSpan draw_span(Draws& draw) {
    constexpr double most = 2147483647.0;
    const double n_drawn = std::floor(draw.log_between(1.0, most));
    const double highest = std::min(1e-4, 0.999 * longest_exponent / n_drawn);
    double r = 5e-324;
    switch (draw.whole(0, 4)) {
        case 0:
            r = highest * draw.between(0.0, 1.0);
            break;
        case 1:
            r = std::min(highest, draw.log_between(0.01, 100.0) / n_drawn);
            break;
        case 2:
            r = draw.log_between(1e-323, highest);
            break;
        case 3:
            r = draw.log_between(1e-20, highest);
            break;
        default:
            break;
    }
    const auto n = static_cast<std::int32_t>(draw.whole(0, 5) == 0 ? 0.0 - n_drawn : n_drawn);
    const auto reach = draw.whole(0, 2) == 0 ? static_cast<std::int64_t>(most) : static_cast<std::int64_t>(n_drawn);
    const std::int64_t first = draw.whole(0, 3) == 0 ? draw.whole(-5, 3) : draw.whole(1, reach);
    const std::int64_t from = std::max<std::int64_t>(first, 1);
    const std::int64_t last =
        draw.whole(0, 3) == 0 ? std::min(from + draw.whole(0, 1000), reach) : draw.whole(std::min(from, reach), reach);
    const double P = draw.whole(0, 2) == 0 ? draw.log_between(1e-300, 1e300) : draw.log_between(1.0, 1e9);
    return {{.rate = r,
             .payment = 0.0,
             .presentValue = P,
             .balance = 0.0,
             .sum = 0.0,
             .nper = n,
             .first = first,
             .last = std::max(last, from),
             .at_start = draw.whole(0, 1) == 1},
            static_cast<double>(from),
            static_cast<double>(std::max(last, from) - from + 1)};
}

// Of `size`; amounts beyond the largest number are infinite, those among the denormals are right to their last bit but one.
double error_of(double got, const Wide& exact, const Wide& size) {
    constexpr double largest = std::numeric_limits<double>::max();
    const double rounded = exact.rounded();
    if (std::isinf(rounded) || std::isinf(got)) {
        const bool beyond = magnitude(exact / largest).rounded() > 1.0 - accuracy;
        return beyond && (got == rounded || std::abs(got) > largest * (1.0 - accuracy)) ? 0.0 : 1.0;
    }
    if (std::abs(rounded) < 1e-290) return std::abs(got - rounded) <= 2e-323 + accuracy * std::abs(rounded) ? 0.0 : 1.0;
    return (magnitude(exact - got) / size).rounded();
}

TEST(LoanSpans, ClosedFormsAgainst2400Bits) {
    Draws draw{22};
    Worst interest;
    Worst interest_of_loan;
    Worst principal;
    for (int i = 0; i < draws; ++i) {
        const auto [walk, f, m] = draw_span(draw);
        const WideLoan loan{walk.rate, static_cast<double>(walk.nper), walk.at_start ? 1.0 : 0.0};
        const Wide exact = loan.interest(f, m) * walk.presentValue;
        const Wide size = loan.size_of_interest(f, m) * walk.presentValue;
        const double error = error_of(closed_interest(walk), exact, size);
        (loan.steps_of_loan(f, m) == m ? interest_of_loan : interest).add(error);
        const Wide repaid = loan.principal(f, m) * walk.presentValue;
        principal.add(error_of(closed_principal(walk), repaid, magnitude(repaid)));
        ASSERT_LE(std::max(interest.error(), interest_of_loan.error()), accuracy)
            << walk.rate << ' ' << walk.nper << ' ' << walk.presentValue << ' ' << f << ' ' << m << ' ' << walk.at_start
            << ": " << closed_interest(walk) << ", " << exact.rounded();
        ASSERT_LE(principal.error(), accuracy) << walk.rate << ' ' << walk.nper << ' ' << walk.presentValue << ' ' << f
                                               << ' ' << m << ": " << closed_principal(walk);
    }
    EXPECT_GT(interest.count(), draws / 10);
    EXPECT_GT(interest_of_loan.count(), draws / 3);
    std::printf("    interest %.2g within the loan, %.2g beyond it, principal %.2g, worst of %d draws\n",
                interest_of_loan.error(), interest.error(), principal.error(), principal.count());
}

// ---- Through the calculations

AnnuityRecord loan_of(double r, std::int32_t n, double P, std::int32_t first, std::int32_t last,
                      std::int32_t type = 0) {
    AnnuityRecord a{};
    a.rate = r;
    a.nper = n;
    a.presentValue = P;
    a.startPeriod = first;
    a.endPeriod = last;
    a.type = type;
    return a;
}

void expect_bits_of_the_loop(AnnuityRecord a) {
    ASSERT_EQ(zComputeCUMIPMT(&a), 0);
    const double walked = literal_interest(a.rate, a.pmt, a.presentValue, a.startPeriod, a.endPeriod);
    EXPECT_TRUE(same_value(a.cumulative, walked))
        << a.rate << ' ' << a.nper << ' ' << a.endPeriod << ": " << a.cumulative << ", " << walked;
    ASSERT_EQ(zComputeCUMPRINC(&a), 0);
    const double repaid = literal_principal(a.rate, a.pmt, a.presentValue, a.startPeriod, a.endPeriod);
    EXPECT_TRUE(same_value(a.cumulative, repaid))
        << a.rate << ' ' << a.nper << ' ' << a.endPeriod << ": " << a.cumulative << ", " << repaid;
}

void expect_exact_sums(AnnuityRecord a) {
    const WideLoan loan{a.rate, static_cast<double>(a.nper), a.type == 1 ? 1.0 : 0.0};
    const double f = a.startPeriod - loan.s;
    const double m = a.endPeriod - loan.s - f + 1.0;
    ASSERT_EQ(zComputeCUMIPMT(&a), 0);
    const Wide interest = Wide{0.0} - loan.interest(f, m) * a.presentValue;
    EXPECT_LE(error_of(a.cumulative, interest, loan.size_of_interest(f, m) * a.presentValue), accuracy)
        << a.rate << ' ' << a.nper << ' ' << a.endPeriod << ": " << a.cumulative << ", " << interest.rounded();
    ASSERT_EQ(zComputeCUMPRINC(&a), 0);
    const Wide principal = Wide{0.0} - loan.principal(f, m) * a.presentValue;
    EXPECT_LE(error_of(a.cumulative, principal, magnitude(principal)), accuracy)
        << a.rate << ' ' << a.nper << ' ' << a.endPeriod << ": " << a.cumulative << ", " << principal.rounded();
}

// The loop's bits up to the limit, the exact sum beyond it.
TEST(LoanSpans, OnBothSidesOfTheLimit) {
    constexpr std::int32_t longest_of_denormals = 10'000'000;
    for (const double P : {1e-305, 1e-290}) {
        expect_bits_of_the_loop(loan_of(1e-9, 2147483647, P, 1, longest_of_denormals - 1));
        expect_bits_of_the_loop(loan_of(1e-8, longest_of_denormals, P, 7, longest_of_denormals));
    }
    constexpr std::int32_t past = longest_of_denormals + 1;
    expect_exact_sums(loan_of(1e-300, 20'000'000, 1e9, 1, past));
    expect_exact_sums(loan_of(1e-9, 2147483647, 1e-290, 2, past + 1, 1));
    expect_exact_sums(loan_of(3e-7, 15'000'000, 1e-290, past - 1000, past));
    expect_exact_sums(loan_of(5e-324, 20'000'000, 1e300, 1, 20'000'000));
    expect_exact_sums(loan_of(3e-7, 15'000'000, 1e-290, 14'000'000, 20'000'000, 1));
    if (drawn(40) < 40) return;  // the others take other builds than a release half a minute
    constexpr std::int32_t longest = 100'000'000;
    expect_bits_of_the_loop(loan_of(3e-8, longest, 1e6, 7, longest));
    expect_exact_sums(loan_of(1e-9, 2147483647, 1e6, 1, longest + 1));
    expect_exact_sums(loan_of(3e-8, longest, 1e6, longest, 2 * longest, 1));
}

// Balances that have come to rest add the same in each step: where interest is the payment, where the payment repays less
// than half of the balance's last bit, at infinity.
TEST(LoanSpans, BalancesAtRestKeepTheBits) {
    const AnnuityRecord tenth = loan_of(0.01, 5000, 1000.0, 1, 10'000'001);
    for (const std::int32_t last : {10'000'000, 10'000'001, 2147483647}) {
        AnnuityRecord a = tenth;
        a.endPeriod = last;
        ASSERT_EQ(zComputeCUMIPMT(&a), 0);
        EXPECT_EQ(a.cumulative, -10.0 * last);  // 1000 * 0.01 in each period, all sums of which are whole
        a.endPeriod = last;
        ASSERT_EQ(zComputeCUMPRINC(&a), 0);
        EXPECT_EQ(a.cumulative, 0.0);
    }
    Draws draw{23};
    int moved = 0;
    for (int i = 0; i < drawn(40); ++i) {
        const double r = draw.log_between(1e-5, 1.0);
        const auto n = static_cast<std::int32_t>(draw.between(0.03, 0.99) * longest_exponent / std::log1p(r));
        const double P = draw.log_between(1.0, 1e6);
        const auto last = static_cast<std::int32_t>(draw.whole(1'000'000, 4'000'000));
        const auto first = draw.whole(0, 2) == 0 ? static_cast<std::int32_t>(draw.whole(1, last)) : 1;
        const AnnuityRecord a = loan_of(r, n, P, first, last);
        expect_bits_of_the_loop(a);
        AnnuityRecord same = a;
        ASSERT_EQ(zComputePMT(&same), 0);
        if (P * r + same.pmt != 0.0) ++moved;
    }
    EXPECT_GT(moved, drawn(40) / 8);
    expect_bits_of_the_loop(loan_of(1e-8, 2147483647, 1e6, 5, 30'000'000));
}

}  // namespace
}  // namespace finance::test
