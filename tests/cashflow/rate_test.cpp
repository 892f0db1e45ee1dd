// RATE and NPER: values, refusals, identities, the objective and its slope at 200 bits.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

#include "cashflow/kernels.hpp"
#include "tests/support/precise.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr const char* digits_60 = "60 digits, tests/reference/annuities.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"RATE/reference", "RATE", {48, -200, 8000, 0, 0}, 0.007701472488202044, digits_60, 4096},
    {"RATE/reference", "RATE", {360, -1500, 200000, 0, 1}, 0.006921477602727946, digits_60, 4096},
    {"RATE/reference", "RATE", {10, -100, 500, -900, 0}, 0.22696883457275518, digits_60, 4096},
    {"RATE/reference", "RATE", {24, -50, 800, -500, 1}, 0.058651739961280355, digits_60, 4096},
    {"RATE/reference", "RATE", {5, 100, -350, -20, 0}, 0.11896818298350671, digits_60, 4096},
    {"NPER/reference", "NPER", {0.01, -100, -1000, 10000, 1}, 59.673865674294625, digits_60, 4096},
    {"NPER/reference", "NPER", {0.01, -100, -1000, 10000, 0}, 60.082122853761724, digits_60, 4096},
    {"NPER/reference", "NPER", {0.005, -1200, 200000, 0, 0}, 359.24702887430624, digits_60, 4096},
    {"NPER/reference", "NPER", {0.0001, -10, 1000, 0, 1}, 100.49828311920072, digits_60, 4096},
    {"NPER/reference", "NPER", {0.25, 7, -20, 3, 0}, 5.10628371950539, digits_60, 4096},
    // without payments: amounts of one sign
    {"RATE/no payments", "RATE", {2, 0, 100, 121}, 0.1, by_hand, 16},
    {"RATE/no payments, both negative", "RATE", {2, -0.0, -100, -121}, 0.1, by_hand, 16},
    {"RATE/no payments, nothing gained", "RATE", {5, 0, 100, 100}, 0.0, by_hand},
    {"RATE/no payments, a loss", "RATE", {1, 0, 100, 50}, -0.5, by_hand, 2},

    // roots at 0 are exact
    {"RATE/0", "RATE", {10, -10, 100, 0}, 0.0, by_hand},
    {"RATE/0 at start", "RATE", {10, -10, 100, 0, 1}, 0.0, by_hand},
    {"RATE/0 with a final amount", "RATE", {8, -10, 100, -20}, 0.0, by_hand},

    // one period is simple interest: 110 on 100
    {"RATE/one period", "RATE", {1, -110, 100}, 0.1, by_hand, 64},
    {"RATE/negative", "RATE", {1, -90, 100}, -0.1, by_hand, 64},
    {"RATE/nper 2^32 + 1", "RATE", {two_to_32 + 1, -110, 100}, 0.1, "counts as 1", 64},
    {"RATE/fv and type missing", "RATE", {1, -110, 100, missing, missing}, 0.1, by_hand, 64},
    {"RATE/fv and type absent", "RATE", {1, -110, 100, absent, absent}, 0.1, by_hand, 64},
    {"RATE/type -3", "RATE", {1, -110, 100, 0, -3}, 0.1, by_hand, 64},

    // NPER: 100 doubled is 3 periods of 100 %, 7 of 8 repaid
    {"NPER/three periods", "NPER", {1, -8, 7}, 3.0, "1 - 1/8 is 7/8", 4},
    {"NPER/no payments", "NPER", {1, 0, 10, -80}, 3.0, "10 doubled three times", 4},
    {"NPER/type 2 is 0", "NPER", {1, -8, 7, 0, 2}, 3.0, by_hand, 4},
    {"NPER/type -1 is 0", "NPER", {1, -8, 7, 0, -1}, 3.0, by_hand, 4},
    {"NPER/type 1", "NPER", {1, -4, 7, 0, 1}, 3.0, "4 at the start are 8 at the end", 4},
    {"NPER/type missing", "NPER", {1, -8, 7, 0, missing}, 3.0, by_hand, 4},
    {"NPER/type absent", "NPER", {1, -8, 7, 0, absent}, 3.0, by_hand, 4},
    {"NPER/negative", "NPER", {1, 8, 8}, -1.0, "ln 2 over ln 2", 4},
};

const std::vector<RefusalCase> refusals{
    // no rate, or none found: no argument is at fault
    {"RATE/no payments, opposite signs", "RATE", {2, 0, 100, -121}, STATUS_INVALID_ARGUMENT, {}},
    {"RATE/no payments, fv 0", "RATE", {2, 0, 100, 0}, STATUS_INVALID_ARGUMENT, {}},
    {"RATE/no payments, no fv", "RATE", {2, 0, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"RATE/no payments, pv 0", "RATE", {2, 0, 0, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"RATE/all of one sign", "RATE", {10, 10, 100, 10}, STATUS_INVALID_ARGUMENT, {}},
    {"RATE/pv 0 and payments", "RATE", {10, 10, 0}, STATUS_INVALID_ARGUMENT, {}},
    {"NPER/pmt is fv r", "NPER", {0.5, 50, 10, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"NPER/payments never repay", "NPER", {0.5, -5, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"NPER/payments are the interest", "NPER", {0.5, -50, 100}, STATUS_INVALID_ARGUMENT, {}},
    {"NPER/no number", "NPER", {0.5, inf, -inf}, STATUS_INVALID_ARGUMENT, {}},

    // NPER's final amount is required where the call has it
    {"NPER/fv missing", "NPER", {0.1, -10, 100, missing}, STATUS_MISSING_RESULT, {4}},
    {"NPER/fv absent", "NPER", {0.1, -10, 100, absent, 1}, STATUS_INVALID_ARGUMENT, {4}},

    // two faults at once
    {"RATE/nper bad, pmt missing", "RATE", {0, missing, 100}, STATUS_INVALID_ARGUMENT, {1}},
    {"RATE/pmt missing, pv absent", "RATE", {5, missing, absent}, STATUS_MISSING_RESULT, {2}},
    {"RATE/pv absent, type bad", "RATE", {5, -10, absent, 0, 2}, STATUS_INVALID_ARGUMENT, {3}},
    {"NPER/rate 0, pmt missing", "NPER", {0, missing, 100}, STATUS_INVALID_ARGUMENT, {1}},
    {"NPER/fv missing, type bad", "NPER", {0.1, -10, 100, missing, 0.5}, STATUS_MISSING_RESULT, {4}},
};

TEST(Rate, Values) { check_values(values); }
TEST(Rate, Refusals) { check_refusals(refusals); }

TEST(Rate, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules number{true, {}};
    const ArgumentRules optional{false, {}};
    const ArgumentRules nper{true,
                             {0, -0.0, -3, 2.5, 2147483648.0, two_to_32, two_to_53 + 2, 1e300, inf, -inf, -1e300}};
    int calls = check_argument_rules("RATE", {12, -10, 100, 1, 1},
                                     {nper, number, number, optional, {false, {2, 0.5, 1e300, inf, -inf}}});
    calls += check_argument_rules(
        "NPER", {0.01, -10, 100, 1, 1},
        {{true, {0, -0.0, -0.01, -inf}}, number, number, number, {false, {0.5, 1e300, inf, -inf}}});
    EXPECT_EQ(calls, 38);
}

// ---- Identities

// Below 0 the search does not reach every rate.
RC_GTEST_PROP(RateIdentities, RateOfAPaymentIsItsRate, ()) {
    const double r = *rc::gen::inRange(1, 1500) / 10000.0;
    const int n = *rc::gen::inRange(2, 400);
    const double P = *rc::gen::inRange(1, 1000000) / 7.0;
    const int type = *rc::gen::inRange(0, 2);
    const double v = std::exp(-n * std::log1p(r));
    const double F = -*rc::gen::inRange(0, 300) / 1000.0 * P;
    const double pmt = -(P + F * v) * r / (1.0 - v) / (type == 1 ? 1.0 + r : 1.0);
    const Outcome got = Call{"RATE", {n, pmt, P, F, type}}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    RC_ASSERT(std::abs(got.value - r) < 1e-9);
}

RC_GTEST_PROP(RateIdentities, PeriodsOfAPaymentAreItsPeriods, ()) {
    const double r = *rc::gen::inRange(1, 1500) / 10000.0;
    const int n = *rc::gen::inRange(1, 100);
    const double P = *rc::gen::inRange(1, 1000000) / 7.0;
    const int type = *rc::gen::inRange(0, 2);
    const Outcome pmt = Call{"PMT", {r, n, P, 0, type}}.through_dispatcher();
    RC_ASSERT(pmt.status == STATUS_SUCCESS);
    const Outcome got = Call{"NPER", {r, pmt.value, P, 0, type}}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    const double growth = std::exp(n * std::log1p(r));
    RC_ASSERT(std::abs(got.value - n) < 1e-12 * (n + growth / r));
}

// ---- 200 bits

Precise factor(const Precise& x, double n) { return (Precise{1.0} - power(x + 1.0, -n)) / x; }

// ln of the worth of a payment and the final amount, c of it, over the loan's
Precise exact_objective(const RateRecord& a, const Precise& x) {
    const Precise D = Precise{a.d} - power(x + 1.0, -a.nper) * a.c;
    const Precise f = logarithm(D) - logarithm(factor(x, a.nper));
    return a.type == 1 ? f - logarithm(x + 1.0) : f;
}

TEST(RatePrecision, ObjectiveAndSlope) {
    Draws draw{71};
    Worst value;
    Worst derivative;
    while (value.count() < 10000) {
        RateRecord a{};
        a.nper = static_cast<std::int32_t>(draw.whole(1, 600));
        a.type = static_cast<std::int32_t>(draw.whole(0, 1));
        a.c = draw.between(-3.0, 0.0);
        a.d = draw.log_between(0.1, 600.0);
        const double x = draw.log_between(1e-9, 0.5) * (value.count() % 4 == 0 ? -0.5 : 1.0);
        if (x * a.nper < -20.0) continue;
        NewtonProblem problem{};
        problem.userData = &a;
        problem.x = x;
        ASSERT_EQ(ComputeF_RATE(&problem), 0U);
        const double D = a.d - a.c * std::pow(1.0 + x, -a.nper);
        const double size = std::abs(std::log(D)) + std::abs(std::log(factor(x, a.nper).rounded())) + 1.0;
        value.add(error_in_ulps(problem.value, exact_objective(a, x), size));
        // the slope's parts: n/2 and 1/x where x is small
        const Precise exact = slope([&](const Precise& r) { return exact_objective(a, r); }, x);
        derivative.add(magnitude((exact - problem.derivative) / (Precise{1.0} + a.nper)).rounded());
    }
    std::printf("    F of RATE: %.3g ulp, F': %.3g of n, worst of %d draws\n", value.error(), derivative.error(),
                value.count());
    EXPECT_LE(value.error(), 30.0);
    EXPECT_LE(derivative.error(), 6e-12);
}

TEST(RatePrecision, WorthAtTheRate) {
    Draws draw{72};
    Worst worst;
    while (worst.count() < 10000) {
        RateRecord a{};
        a.nper = static_cast<std::int32_t>(draw.whole(1, 600));
        a.type = static_cast<std::int32_t>(draw.whole(0, 1));
        a.presentValue = draw.log_between(1.0, 1e6);
        a.pmt = -a.presentValue * draw.between(0.8, 3.0) / a.nper;
        a.futureValue = -a.presentValue * draw.between(0.0, 0.5);
        if (zComputeRATE(&a) != 0) continue;
        if (a.rate == 0.0) continue;
        const Precise v = power(Precise{a.rate} + 1.0, -a.nper);
        const Precise paid = factor(a.rate, a.nper) * a.pmt * (a.type == 1 ? 1.0 + a.rate : 1.0);
        worst.add(std::abs((paid + a.presentValue + v * a.futureValue).rounded()) / a.presentValue);
    }
    std::printf("    RATE: worth %.3g of the loan, worst of %d draws\n", worst.error(), worst.count());
    EXPECT_LE(worst.error(), 1.5e-14);
}

TEST(RatePrecision, Nper) {
    Draws draw{73};
    Worst worst;
    while (worst.count() < 10000) {
        const double r = draw.log_between(1e-9, 1.0);
        const double P = draw.log_between(1.0, 1e6);
        const double F = -P * draw.between(0.0, 2.0);
        const double a = -P * r * draw.log_between(0.1, 10.0);
        const int type = static_cast<int>(draw.whole(0, 1));
        const Outcome got = Call{"NPER", {r, a, P, F, type}}.through_handler();
        if (got.status != STATUS_SUCCESS) continue;
        const Precise pmt = type == 1 ? (Precise{1.0} + r) * a : Precise{a};
        const Precise top = Precise{P} * r + pmt;
        const Precise bottom = pmt - Precise{F} * r;
        const Precise growth = logarithm(Precise{r} + 1.0);
        const Precise exact = Precise{0.0} - logarithm(top / bottom) / growth;
        // the quotient's own error: what cancels in its parts
        const double cancelled = (std::abs(P * r) + std::abs(a)) / std::abs(top.rounded()) +
                                 (std::abs(a) + std::abs(F * r)) / std::abs(bottom.rounded());
        const double size = std::abs(exact.rounded()) + cancelled / growth.rounded();
        worst.add(error_in_ulps(got.value, exact, size));
    }
    std::printf("    NPER: %.3g ulp worst of %d draws\n", worst.error(), worst.count());
    EXPECT_LE(worst.error(), 6.0);
}

}  // namespace
}  // namespace finance::test
