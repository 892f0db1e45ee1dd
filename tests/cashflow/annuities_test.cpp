// The eight level-payment calculations: values, refusals, order of checks, long ranges.
#include <gtest/gtest.h>

#include <limits>

#include "cashflow/kernels.hpp"
#include "tests/cashflow/literal_loans.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr const char* closed_form = "closed form at 60 digits, tests/reference/annuities.py";
constexpr const char* walk = "the loan walked at 60 digits, tests/reference/annuities.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    // ordinary loans and savings, both payment timings
    {"PMT/mortgage", "PMT", {0.005, 360, 200000}, -1199.1010503055047, closed_form, 8},
    {"PMT/future value, at start", "PMT", {0.005, 360, 200000, -1000, 1}, -1192.1448209492312, closed_form, 8},
    {"PMT/tiny rate keeps its digits", "PMT", {1e-12, 600, 1e5}, -166.66666671675, closed_form, 4},
    {"PMT/long, growth near overflow", "PMT", {0.9, 1000, 50}, -45.0, closed_form, 4},
    {"FV/payments only", "FV", {0.01, 12, -100}, 1268.2503013196972, closed_form, 8},
    {"FV/with an initial amount", "FV", {0.01, 12, -100, -1000}, 2395.075331451667, closed_form, 8},
    {"FV/at start", "FV", {0.01, 12, -100, -1000, 1}, 2407.757834464864, closed_form, 8},
    {"PV/payments only", "PV", {0.08 / 12, 240, 500}, -59777.14585118802, closed_form, 8},
    {"PV/negative rate", "PV", {-0.01, 12, 100, 50}, -1338.1898999947962, closed_form, 8},
    {"PV/negative rate, at start", "PV", {-0.01, 12, 100, 50, 1}, -1325.3720900445992, closed_form, 8},
    {"IPMT/first", "IPMT", {0.1 / 12, 1, 36, 8000}, -66.66666666666667, walk, 1},
    {"IPMT/third", "IPMT", {0.1 / 12, 3, 36, 8000}, -63.46218956645472, walk, 16},
    {"IPMT/third, at start", "IPMT", {0.1 / 12, 3, 36, 8000, 0, 1}, -62.93770866094683, walk, 16},
    {"IPMT/future value", "IPMT", {0.1 / 12, 20, 36, 8000, -500}, -36.009506191002345, walk, 16},
    {"PPMT/first", "PPMT", {0.1 / 12, 1, 36, 8000}, -191.47083088403323, walk, 16},
    {"PPMT/first, at start", "PPMT", {0.1 / 12, 1, 36, 8000, 0, 1}, -256.004129802347, walk, 16},
    {"PPMT/third", "PPMT", {0.1 / 12, 3, 36, 8000}, -194.67530798424517, walk, 16},
    {"PPMT/third, at start", "PPMT", {0.1 / 12, 3, 36, 8000, 0, 1}, -193.06642114140018, walk, 16},
    {"PPMT/future value", "PPMT", {0.1 / 12, 20, 36, 8000, -500}, -210.16106442944547, walk, 16},
    {"CUMIPMT/second year", "CUMIPMT", {0.0075, 360, 125000, 13, 24}, -11135.232130750843, walk, 200},
    {"CUMIPMT/second year, at start", "CUMIPMT", {0.0075, 360, 125000, 13, 24, 1}, -11052.339583871804, walk, 200},
    {"CUMIPMT/first period", "CUMIPMT", {0.0075, 360, 125000, 1, 1}, -937.5, by_hand},
    {"CUMPRINC/second year", "CUMPRINC", {0.0075, 360, 125000, 13, 24}, -934.1071234208983, walk, 2000},
    {"CUMPRINC/second year, at start", "CUMPRINC", {0.0075, 360, 125000, 13, 24, 1}, -927.1534723780629, walk, 2000},
    {"CUMPRINC/first period", "CUMPRINC", {0.0075, 360, 125000, 1, 1}, -68.27827118097842, walk, 2000},
    {"CUMPRINC/all is repaid", "CUMPRINC", {0.0075, 360, 125000, 1, 360}, -125000.0, "identity", 1000},
    {"CUMPRINC/all is repaid, at start", "CUMPRINC", {0.0075, 360, 125000, 1, 360, 1}, -125000.0, "identity", 1000},
    {"ISPMT/monthly", "ISPMT", {0.1 / 12, 1, 36, 8000000}, -64814.81481481482, closed_form, 4},
    {"ISPMT/yearly", "ISPMT", {0.1, 2, 3, 8000000}, -266666.6666666667, closed_form, 4},
    {"ISPMT/a period beyond the loan is not refused", "ISPMT", {0.1, 5, 3, 300}, 20.0, by_hand, 2},

    // payment timing: negative whole numbers act as 0, up to the smallest 32-bit one
    {"FV/type -1", "FV", {0.01, 12, -100, -1000, -1}, 2395.075331451667, closed_form, 8},
    {"FV/type -2^31", "FV", {0.01, 12, -100, -1000, -2147483648.0}, 2395.075331451667, closed_form, 8},
    {"PMT/type missing is 0", "PMT", {0.005, 360, 200000, 0, missing}, -1199.1010503055047, closed_form, 8},
    {"PMT/type absent is 0", "PMT", {0.005, 360, 200000, 0, absent}, -1199.1010503055047, closed_form, 8},
    {"PMT/type -0.0", "PMT", {0.005, 360, 200000, 0, -0.0}, -1199.1010503055047, closed_form, 8},

    // optional amounts
    {"PMT/fv missing is 0", "PMT", {0.005, 360, 200000, missing}, -1199.1010503055047, closed_form, 8},
    {"PMT/fv absent is 0", "PMT", {0.005, 360, 200000, absent}, -1199.1010503055047, closed_form, 8},
    {"FV/pv missing is 0", "FV", {0.01, 12, -100, missing}, 1268.2503013196972, closed_form, 8},
    {"FV/pv absent is 0", "FV", {0.01, 12, -100, absent}, 1268.2503013196972, closed_form, 8},
    {"FV/payment missing is 0", "FV", {1.0, 2, missing, -100}, 400.0, "100 doubled twice", 2},
    {"FV/payment absent is 0", "FV", {1.0, 2, absent, -100}, 400.0, "100 doubled twice", 2},
    {"FV/payment missing, no pv", "FV", {0.01, 12, missing}, 0.0, "nothing is paid"},
    {"FV/payment missing, pv absent", "FV", {0.01, 12, missing, absent}, 0.0, "nothing is paid"},

    // a rate of exactly 0 divides zero by zero; the answer is a NaN all the same
    {"PV/rate 0", "PV", {0, 12, 100}, std::numeric_limits<double>::quiet_NaN(), "0/0"},
    {"PV/rate -0", "PV", {-0.0, 12, 100}, std::numeric_limits<double>::quiet_NaN(), "0/0"},

    // counts are kept in 32 bits: 2^32 + 3 is 3
    {"PMT/nper 2^32 + 3", "PMT", {1.0, two_to_32 + 3, 7}, -8.0, "7 r (1+r)^3 / ((1+r)^3 - 1) = 7 * 8/7", 4},
    {"IPMT/per 2^32 + 1", "IPMT", {0.5, two_to_32 + 1, 3, 10}, -5.0, by_hand},
    {"ISPMT/nper 2^32 + 4", "ISPMT", {0.5, 2, two_to_32 + 4, 100}, -25.0, by_hand},
    {"PMT/nper within 1e-12 of 2", "PMT", {1.0, 2.0000000000001, 3}, -4.0, "3 r (1+r)^2 / ((1+r)^2 - 1) = 3 * 4/3", 4},

    // the first period's interest needs no payment and cannot fail
    {"IPMT/per 1 where the payment overflows", "IPMT", {1, 1, 2000, 50}, -50.0, by_hand},
    {"IPMT/per 1 at start where the payment overflows", "IPMT", {1, 1, 2000, 50, 0, 1}, 0.0, by_hand},
    {"IPMT/infinite amount at start", "IPMT", {0.1, 1, 5, inf, 0, 1}, 0.0, by_hand},

    // CUMIPMT compares nothing: it sums the periods 1..last that lie in the range
    {"CUMIPMT/start after end", "CUMIPMT", {0.01, 12, 1000, 6, 5}, 0.0, "no period lies in the range"},
    {"CUMIPMT/range ends before 1", "CUMIPMT", {0.01, 12, 1000, -5, 0}, 0.0, "no period lies in the range"},
    {"CUMIPMT/start below 1", "CUMIPMT", {0.0075, 360, 125000, -7, 1}, -937.5, "only period 1 lies in the range"},
    {"CUMIPMT/end 1 at start", "CUMIPMT", {0.01, 12, 1000, 1, 1, 1}, 0.0, "the first payment holds no interest"},
    {"CUMIPMT/start -2^53 - 2", "CUMIPMT", {0.0075, 360, 125000, -two_to_53, 1}, -937.5, "low 32 bits are 0"},
    {"CUMIPMT/one period beyond the loan", "CUMIPMT", {1.0, 1, 100, 2, 2}, 0.0, "100 - 200 + 100 leaves 0"},
    {"CUMIPMT/two periods beyond", "CUMIPMT", {0.5, 1, 100, 3, 3}, 75.0, "0 - 150 = -150, half of it charged"},

    // CUMPRINC
    {"CUMPRINC/end 1 at start gives the payment", "CUMPRINC", {1.0, 1, 100, 1, 1, 1}, -100.0, "all is paid at once"},
    {"CUMPRINC/negative present value", "CUMPRINC", {1.0, 1, -100, 1, 1}, 100.0, "a loan given, repaid at once"},
    {"CUMPRINC/zero present value", "CUMPRINC", {0.1, 5, 0, 1, 5}, 0.0, "nothing owed"},
};

TEST(Annuities, Values) { check_values(values); }

const std::vector<RefusalCase> refusals{
    // growth exponents n ln(1 + r) of 709.782712893384 and more: no argument is at fault
    {"FV/overflow", "FV", {1, 1024, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"PMT/overflow", "PMT", {1, 1024, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"PV/overflow of a rate near -1", "PV", {-0.999999, 100, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"IPMT/overflow", "IPMT", {1, 2, 1024, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"PPMT/overflow, per 1 too", "PPMT", {1, 1, 1024, 1, 0, 1}, STATUS_INVALID_ARGUMENT, {}},
    {"CUMIPMT/overflow", "CUMIPMT", {1, 1024, 1, 1, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"CUMPRINC/overflow", "CUMPRINC", {1, 1024, 1, 1, 2}, STATUS_INVALID_ARGUMENT, {}},
    {"FV/infinite rate", "FV", {inf, 1, 1}, STATUS_INVALID_ARGUMENT, {}},

    // payment timing
    {"PMT/type 2", "PMT", {0.1, 5, 100, 0, 2}, STATUS_INVALID_ARGUMENT, {5}},
    {"PMT/type 0.5", "PMT", {0.1, 5, 100, 0, 0.5}, STATUS_INVALID_ARGUMENT, {5}},
    {"PMT/type just off 1", "PMT", {0.1, 5, 100, 0, 1.0000000000001}, STATUS_INVALID_ARGUMENT, {5}},
    {"PMT/type -2^31 - 1", "PMT", {0.1, 5, 100, 0, -2147483649.0}, STATUS_INVALID_ARGUMENT, {5}},
    {"PMT/type infinite", "PMT", {0.1, 5, 100, 0, -inf}, STATUS_INVALID_ARGUMENT, {5}},
    {"CUMIPMT/type 2", "CUMIPMT", {0.1, 5, 100, 1, 2, 2}, STATUS_INVALID_ARGUMENT, {6}},
    {"CUMPRINC/type 0.5", "CUMPRINC", {0.1, 5, 100, 1, 2, 0.5}, STATUS_INVALID_ARGUMENT, {6}},

    // FV: one of payment and present value may be missing
    {"FV/both missing", "FV", {0.01, 12, missing, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"FV/payment absent, pv missing", "FV", {0.01, 12, absent, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"FV/both missing before a bad type", "FV", {0.01, 12, missing, missing, 7}, STATUS_INVALID_ARGUMENT, {4}},

    // per beyond nper flags per
    {"IPMT/nper below per", "IPMT", {0.1, 6, 5, 100}, STATUS_INVALID_ARGUMENT, {2}},
    {"PPMT/nper below per", "PPMT", {0.1, 6, 5, 100}, STATUS_INVALID_ARGUMENT, {2}},
    {"IPMT/nper below per, pv missing", "IPMT", {0.1, 6, 5, missing}, STATUS_INVALID_ARGUMENT, {2}},

    // CUMPRINC's cross checks come after all arguments, in their order
    {"CUMPRINC/start beyond nper", "CUMPRINC", {0.1, 5, 100, 6, 7, 2}, STATUS_INVALID_ARGUMENT, {4}},
    {"CUMPRINC/end beyond nper", "CUMPRINC", {0.1, 5, 100, 3, 6, 2}, STATUS_INVALID_ARGUMENT, {5}},
    {"CUMPRINC/start after end", "CUMPRINC", {0.1, 5, 100, 3, 2, 2}, STATUS_INVALID_ARGUMENT, {4}},
    {"CUMPRINC/type 2 comes last", "CUMPRINC", {0.1, 5, 100, 2, 3, 2}, STATUS_INVALID_ARGUMENT, {6}},
    {"CUMPRINC/type not whole comes before them", "CUMPRINC", {0.1, 5, 100, 6, 7, 0.5}, STATUS_INVALID_ARGUMENT, {6}},
    {"CUMPRINC/end 2^32 is above 0, then counts as 0",
     "CUMPRINC",
     {0.1, 5, 100, 1, two_to_32},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"CUMPRINC/nper 0", "CUMPRINC", {0.1, 0, 100, 1, 1}, STATUS_INVALID_ARGUMENT, {4}},

    // two faults at once: the first argument is named
    {"PMT/rate missing, nper bad", "PMT", {missing, 0.5, 100}, STATUS_MISSING_RESULT, {1}},
    {"PMT/rate bad, nper missing", "PMT", {0, missing, 100}, STATUS_INVALID_ARGUMENT, {1}},
    {"PMT/nper bad, pv missing", "PMT", {0.1, 2.5, missing}, STATUS_INVALID_ARGUMENT, {2}},
    {"PV/nper missing, pmt absent", "PV", {0.1, missing, absent}, STATUS_MISSING_RESULT, {2}},
    {"FV/nper bad, type bad", "FV", {0.1, 0, 1, 1, 9}, STATUS_INVALID_ARGUMENT, {2}},
    {"IPMT/per bad, nper missing", "IPMT", {0.1, 0, missing, 100}, STATUS_INVALID_ARGUMENT, {2}},
    {"PPMT/nper absent, pv missing", "PPMT", {0.1, 1, absent, missing}, STATUS_INVALID_ARGUMENT, {3}},
    {"CUMIPMT/pv 0, start missing", "CUMIPMT", {0.1, 5, 0, missing, 2}, STATUS_INVALID_ARGUMENT, {3}},
    {"CUMPRINC/start 0, end missing", "CUMPRINC", {0.1, 5, 100, 0, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"ISPMT/per bad, pv absent", "ISPMT", {0.1, -3, 5, absent}, STATUS_INVALID_ARGUMENT, {2}},
};

TEST(Annuities, Refusals) { check_refusals(refusals); }

// Bad values of the kinds of argument.
const std::vector<Arg> not_a_rate{0, -0.0, -0.01, -inf};
const std::vector<Arg> not_a_count{0,    -3,    2.5, 0.5,  2147483648.0, two_to_32, two_to_53 + 2,
                                   1e16, 1e300, inf, -inf, -1e300};
const std::vector<Arg> not_whole{2.5, -0.5, two_to_53 + 2, 1e300, inf, -1e300};
const std::vector<Arg> not_a_timing{2, 0.5, 1e300, inf, -inf, 2147483647.0};

TEST(Annuities, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules rate{true, not_a_rate};
    const ArgumentRules per_or_nper{true, not_a_count};
    const ArgumentRules whole{true, not_whole};
    const ArgumentRules amount{true, {}};
    const ArgumentRules optional{false, {}};
    const ArgumentRules timing{false, not_a_timing};
    int calls = 0;
    calls += check_argument_rules("FV", {0.1, 5, 100, 50, 1}, {rate, per_or_nper, optional, optional, timing});
    calls += check_argument_rules("PV", {0.1, 5, 100, 50, 1},
                                  {{true, {-1, -1.5, -inf}}, per_or_nper, amount, optional, timing});
    calls += check_argument_rules("PMT", {0.1, 5, 100, 50, 1}, {rate, per_or_nper, amount, optional, timing});
    for (const char* name : {"IPMT", "PPMT"}) {
        calls += check_argument_rules(name, {0.1, 2, 5, 100, 50, 1},
                                      {rate, per_or_nper, per_or_nper, amount, optional, timing});
    }
    calls += check_argument_rules("CUMIPMT", {0.1, 5, 100, 1, 3, 1},
                                  {rate, whole, {true, {0, -0.0, -5, -inf}}, whole, whole, timing});
    calls +=
        check_argument_rules("CUMPRINC", {0.1, 5, 100, 1, 3, 1},
                             {rate, whole, amount, per_or_nper, {true, {0, -3, 2.5, two_to_53 + 2, -inf}}, timing});
    calls += check_argument_rules("ISPMT", {0.1, 2, 5, 100}, {rate, per_or_nper, per_or_nper, amount});
    EXPECT_EQ(calls, 286);
}

// A null result pointer: the flag and the status are all that is left to say.
TEST(Annuities, FailuresNeedNoResult) {
    ensure_host();
    Call call{"PMT", {0.1, 2.5, 100}};
    EXPECT_EQ(fncfin(call.context(), nullptr), STATUS_INVALID_ARGUMENT);
}

// ---- Long ranges: early ends and closed forms

TEST(AnnuitySums, EarlyEndsKeepTheBits) {
    struct Row {
        double rate;
        int nper;
        double pv;
        int first;
        int last;
    };
    // balances that settle, that overflow, that settle before the range begins, that never settle
    const std::vector<Row> rows{
        {0.5, 3, 100, 1, 3000},      {0.5, 3, 100, 2500, 3000},         {0.9, 1000, 50, 1, 4000},
        {0.01, 60000, 1, 1, 60000},  {0.01, 60000, 1, 50000, 60000},    {0.001, 7, 1e300, 1, 900000},
        {1e-9, 10, 1e5, 1, 1000000}, {3.0, 1, 1e-300, 1, 5000},         {0.25, 0, 10, 1, 100},
        {0.25, -4, 10, 1, 100000},   {1e-8, 10000000, 1e5, 1, 10000000}};
    for (const Row& row : rows) {
        AnnuityRecord a{};
        a.rate = row.rate;
        a.nper = row.nper;
        a.presentValue = row.pv;
        a.startPeriod = row.first;
        a.endPeriod = row.last;
        ASSERT_EQ(zComputeCUMIPMT(&a), 0);
        EXPECT_TRUE(same_value(a.cumulative, literal_interest(row.rate, a.pmt, row.pv, row.first, row.last)))
            << row.rate << ' ' << row.nper << ": " << a.cumulative;
        ASSERT_EQ(zComputeCUMPRINC(&a), 0);
        EXPECT_TRUE(same_value(a.cumulative, literal_principal(row.rate, a.pmt, row.pv, row.first, row.last)))
            << row.rate << ' ' << row.nper << ": " << a.cumulative;
    }
}

// No call asks for a period after the last. Its balance at a rate of 1 would have doubled 2^(per - 1) times: a double
// holds 2^1023, and 2^1999 is none.
TEST(Annuities, PeriodsBeyondAllBoundsHaveNoParts) {
    AnnuityRecord a{};
    a.nper = 1;
    a.rate = 1.0;
    a.presentValue = 1.0;
    a.per = 2000;
    EXPECT_EQ(zComputePPMT(&a), 1);
    EXPECT_EQ(zComputeIPMT(&a), 1);
    a.per = 1;
    ASSERT_EQ(zComputePPMT(&a), 0);
    EXPECT_NEAR(a.principalPart, -1.0, 1e-15);  // of a payment of 2 one is interest
}

// Too many steps for a walk: expected values from the identities of the whole loan, and of a range that ends at the loan.
// Of tiny amounts fewer steps are too many.
TEST(AnnuitySums, BillionsOfPeriodsHaveClosedForms) {
    const int n = 2147483647;
    const double r = 1e-9;
    const double P = 1e-290;
    const double pmt = Call{"PMT", {r, n, P}}.through_dispatcher().value;
    const Outcome principal = Call{"CUMPRINC", {r, n, P, 1, n}}.through_dispatcher();
    EXPECT_EQ(principal.status, STATUS_SUCCESS);
    EXPECT_NEAR(principal.value, -P, 1e-12 * P);
    const Outcome interest = Call{"CUMIPMT", {r, n, P, 1, n}}.through_dispatcher();
    EXPECT_EQ(interest.status, STATUS_SUCCESS);
    EXPECT_NEAR(interest.value / (pmt * n + P), 1.0, 1e-12);
    // at start: the same payments less the first period's discount
    const double advance = Call{"PMT", {r, n, P, 0, 1}}.through_dispatcher().value;
    const Outcome at_start = Call{"CUMIPMT", {r, n, P, 1, n, 1}}.through_dispatcher();
    EXPECT_NEAR(at_start.value / (advance * n + P), 1.0, 1e-12);
    // a rate so small that interest is r P (n + 1) / 2 to first order
    const Outcome tiny = Call{"CUMIPMT", {1e-300, n, 1, 1, n}}.through_dispatcher();
    EXPECT_NEAR(tiny.value / -(1e-300 * (n + 1.0) / 2.0), 1.0, 1e-12);
}

}  // namespace
}  // namespace finance::test
