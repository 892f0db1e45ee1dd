// XNPV and XIRR: values, refusals, the searches' ends, random lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "cashflow/kernels.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/cashflow/flow_lists.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_to_53 = 9007199254740992.0;
constexpr double lowest_rate = -0.9999999;
constexpr Status odd_count = 1;
constexpr const char* digits_60 = "60 digits, tests/reference/cash_flows.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"XNPV/irregular",
     "XNPV",
     {0.06, -830, 125, 310, 95, 480, host_date(2006, 7, 19), host_date(2006, 10, 26), host_date(2007, 6, 2),
      host_date(2007, 6, 3), host_date(2008, 9, 2)},
     102.0512314720806,
     digits_60,
     64},
    {"XNPV/the last date first",
     "XNPV",
     {0.06, 480, 95, 310, 125, -830, host_date(2008, 9, 2), host_date(2007, 6, 3), host_date(2007, 6, 2),
      host_date(2006, 10, 26), host_date(2006, 7, 19)},
     115.50990127396845,
     digits_60,
     64},
    {"XNPV/negative rate",
     "XNPV",
     {-0.25, -830, 125, 310, 95, 480, host_date(2006, 7, 19), host_date(2006, 10, 26), host_date(2007, 6, 2),
      host_date(2007, 6, 3), host_date(2008, 9, 2)},
     710.4420139842086,
     digits_60,
     16},
    {"XNPV/one flow", "XNPV", {0.06, 123.25, host_date(2006, 7, 19)}, 123.25, by_hand},
    {"XNPV/no flows", "XNPV", {0.06}, 0.0, by_hand},
    {"XNPV/whole years", "XNPV", {1, 10, 20, 40, 0, 365, 730}, 30.0, "10 + 20/2 + 40/4"},
    {"XNPV/an earlier flow grows", "XNPV", {1, 10, 20, 365, 0}, 50.0, "10 + 20 2"},
    {"XNPV/one date", "XNPV", {0.3, 10, 20, -5, 77, 77, 77}, 25.0, by_hand},
    {"XNPV/rate 0", "XNPV", {0, 10, 20, -5, 3, 77, 9000}, 25.0, by_hand},
    {"XNPV/days before 1960", "XNPV", {1, 10, 20, -365, 0}, 20.0, by_hand},
    {"XNPV/date within 1e-12 of whole", "XNPV", {1, 10, 20, 0, 365.0000000003}, 20.0, by_hand},

    // the rate is not bounded
    {"XNPV/rate -1", "XNPV", {-1, 10, 20, 0, 365}, inf, "1/0"},
    {"XNPV/rate -1, both signs", "XNPV", {-1, 10, 20, -20, 0, 365, 730}, nan, "infinity less infinity"},
    {"XNPV/rate -2, whole years", "XNPV", {-2, 10, 20, 5, 0, 365, 730}, -5.0, "10 - 20 + 5"},
    {"XNPV/rate -2, part of a year", "XNPV", {-2, 10, 20, 0, 100}, nan, "a root of -1"},
    {"XNPV/infinite rate", "XNPV", {inf, 10, 20, 0, 100}, 10.0, by_hand},

    {"XIRR/one year", "XIRR", {-100, 110, host_date(2006, 7, 19), host_date(2007, 7, 19)}, 0.1, by_hand, 64},
    {"XIRR/one year, the later flow first",
     "XIRR",
     {110, -100, host_date(2007, 7, 19), host_date(2006, 7, 19)},
     0.1,
     by_hand,
     64},
    {"XIRR/two years", "XIRR", {-100, 225, 0, 730}, 0.5, by_hand, 64},
    {"XIRR/half is lost", "XIRR", {-100, 50, 0, 365}, -0.5, by_hand, 64},
    {"XIRR/nothing gained", "XIRR", {-100, 60, 40, 0, 100, 200}, 0.0, by_hand},
    {"XIRR/irregular",
     "XIRR",
     {-830, 125, 310, 95, 480, host_date(2006, 7, 19), host_date(2006, 10, 26), host_date(2007, 6, 2),
      host_date(2007, 6, 3), host_date(2008, 9, 2)},
     0.15577053723564765,
     digits_60,
     1024},
    {"XIRR/the last date first",
     "XIRR",
     {480, 95, 310, 125, -830, host_date(2008, 9, 2), host_date(2007, 6, 3), host_date(2007, 6, 2),
      host_date(2006, 10, 26), host_date(2006, 7, 19)},
     0.15577053723564765,
     digits_60,
     1024},
    {"XIRR/a loss", "XIRR", {-100, 20, 30, 40, 100, 131, 700, 1201}, -0.052793624758273865, digits_60, 1024},
    {"XIRR/repeated and unsorted",
     "XIRR",
     {60, -100, -50, 75, 60, 900, 10, 200, 900, 1400},
     0.10325436272733333,
     digits_60,
     1024},
    {"XIRR/amounts that do not count, with a rate", "XIRR", {-1e-9, 1.1e-9, 0, 365}, 0.1, by_hand, 1024},
    {"XIRR/tiny", "XIRR", {-1e-300, 1.1e-300, 0, 365}, 0.1, by_hand, 1024},

    // a guess decides between two rates
    {"XIRR/guess of the lower rate", "XIRR", {-100, 230, -132, 0, 365, 730, 0.05}, 0.1, "10 % or 20 %", 4096},
    {"XIRR/guess of the higher rate", "XIRR", {-100, 230, -132, 0, 365, 730, 0.25}, 0.2, "10 % or 20 %", 4096},
    {"XIRR/guess of the rate", "XIRR", {-100, 110, 0, 365, 0.1}, 0.1, by_hand, 64},

    // the second start, and the third: from 0 and from -0.9 no step leads there
    {"XIRR/100000 % in a day", "XIRR", {-1, 2, 0, 1}, std::pow(2.0, 365.0) - 1.0, "2^365 - 1", 1e6},

    // what is no number ends the search where it stands lowest
    {"XIRR/equal flows of one date", "XIRR", {-100, 100, 50, 50}, lowest_rate, "0/0 steps to the lowest rate"},
    {"XIRR/more gained than paid on one date", "XIRR", {-50, 100, 50, 50}, lowest_rate, "a step of minus infinity"},
    {"XIRR/one positive flow", "XIRR", {100, 50}, lowest_rate, "a step of minus infinity"},
    {"XIRR/thrown past the rate 1.5011", "XIRR", {-4, 1, -6, 1825, 0, 730}, lowest_rate, "a step to the lowest rate"},
    {"XIRR/and found with a guess near it",
     "XIRR",
     {-4, 1, -6, 1825, 0, 730, 1.4},
     1.5011303580163007,
     digits_60,
     1024},
    {"XIRR/zeros", "XIRR", {0, 0, 0, 365}, lowest_rate, "0/0 steps to the lowest rate"},
};

TEST(DatedFlows, Values) { check_values(values); }

// ---- Refusals

const std::vector<RefusalCase> refusals{
    // an odd count is refused before anything is read
    {"XNPV/odd count", "XNPV", {0.1, -100, 110, 0}, odd_count, {}, false},
    {"XNPV/odd count, all absent", "XNPV", {absent, absent}, odd_count, {}, false},
    {"XNPV/odd count, all missing", "XNPV", {missing, missing, missing, missing}, odd_count, {}, false},

    {"XNPV/rate missing alone", "XNPV", {missing}, STATUS_MISSING_RESULT, {1}},
    {"XIRR/guess missing alone", "XIRR", {missing}, STATUS_MISSING_RESULT, {1}},
    {"XIRR/guess absent alone", "XIRR", {absent}, STATUS_INVALID_ARGUMENT, {1}},

    // two faults at once: the first argument is named
    {"XNPV/rate missing, value absent", "XNPV", {missing, absent, 0}, STATUS_MISSING_RESULT, {1}},
    {"XNPV/value missing, date bad", "XNPV", {0.1, 10, missing, 0.5, 3}, STATUS_MISSING_RESULT, {3}},
    {"XNPV/second value absent, first date missing",
     "XNPV",
     {0.1, 10, absent, missing, 3},
     STATUS_INVALID_ARGUMENT,
     {3}},
    {"XNPV/dates bad and missing", "XNPV", {0.1, 10, 20, 0.5, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"XIRR/value absent, guess missing", "XIRR", {-100, absent, 0, 365, missing}, STATUS_INVALID_ARGUMENT, {2}},
    {"XIRR/date missing, guess absent", "XIRR", {-100, 110, 0, missing, absent}, STATUS_MISSING_RESULT, {4}},
    {"XIRR/value missing, date absent", "XIRR", {missing, 110, absent, 365}, STATUS_MISSING_RESULT, {1}},
};

TEST(DatedFlows, Refusals) { check_refusals(refusals); }

TEST(DatedFlows, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules number{true, {}};
    const ArgumentRules date{true, {365.5, -0.5, 365.000001, two_to_53 + 2, 1e300, inf, -1e300}};
    EXPECT_EQ(check_argument_rules("XNPV", {0.1, -100, 60, 0, 365}, {number, number, number, date, date}), 24);
    EXPECT_EQ(check_argument_rules("XIRR", {-100, 110, 0, 365}, {number, number, date, date}), 22);
    EXPECT_EQ(check_argument_rules("XIRR", {-100, 110, 0, 365, 0.1}, {number, number, date, date, number}), 24);
}

TEST(DatedFlows, DatesUpToTheirBounds) {
    // beside 2^53 no other date is near enough to discount by, but it is read
    const Outcome far = Call{"XNPV", {0.1, 10, 20, 0, two_to_53}}.through_handler();
    EXPECT_EQ(far.status, STATUS_SUCCESS);
    EXPECT_EQ(far.value, 10.0);
    const Outcome before = Call{"XNPV", {0.1, 10, 20, 0, -1e16}}.through_handler();
    EXPECT_EQ(before.status, STATUS_SUCCESS);
    EXPECT_EQ(before.value, inf);
}

// ---- The kernels

DatedCashFlows record_of(DatedList& list) {
    DatedCashFlows flows{};
    flows.count = static_cast<std::int32_t>(list.values.size());
    flows.values = list.values.data();
    flows.dates = list.days.data();
    return flows;
}

// Slope and size of the objective, by the sums at 200 bits.
TEST(XirrPrecision, Objective) {
    Draws draw{61};
    Worst value;
    Worst derivative;
    for (int i = 0; i < 500; ++i) {
        DatedList list = draw_dated(draw, Dates::unsorted, Changes::many);
        DatedCashFlows flows = record_of(list);
        NewtonProblem problem{};
        problem.userData = &flows;
        problem.x = draw.between(-0.5, 2.0);
        ASSERT_EQ(ComputeF_XIRR(&problem), 0U);
        Precise sum;
        Precise moment;
        double size = 0.0;
        double steepest = 0.0;
        double largest = 0.0;
        for (std::size_t k = 0; k < list.values.size(); ++k) {
            const Precise years = Precise{static_cast<double>(list.days[k] - list.days[0])} / 365.0;
            const Precise term = power(Precise{problem.x} + 1.0, Precise{0.0} - years) * list.values[k];
            const Precise slope = years * term / (Precise{problem.x} + 1.0);
            sum = sum + term;
            moment = moment - slope;
            const double term_size = magnitude(term).rounded();
            const double exponent = std::abs(years.rounded()) + 1.0;  // the rounding of q counts that often
            size += term_size * exponent;
            steepest += magnitude(slope).rounded() * exponent;
            largest = std::max(largest, term_size);
        }
        value.add(error_in_ulps(problem.value, sum, size));
        derivative.add(error_in_ulps(problem.derivative, moment, steepest));
        EXPECT_NEAR(problem.residualScale, largest, 1e-12 * largest);
    }
    EXPECT_LE(value.error(), 6.0);
    EXPECT_LE(derivative.error(), 6.0);
}

struct Searched {
    int lists = 0;
    int solved = 0;
    int false_answers = 0;
};

// XNPV at XIRR's rate is 0, but for the searches that a step threw to the lowest rate and that ended there.
Searched search(Dates dates, Changes changes) {
    Draws draw{62};
    Searched searched;
    for (int i = 0; i < 2000; ++i) {
        DatedList list = draw_dated(draw, dates, changes);
        DatedCashFlows flows = record_of(list);
        ++searched.lists;
        if (zComputeXIRR(&flows) != XIRR_SOLVED) continue;
        ++searched.solved;
        const Worth worth = worth_at(list, flows.rate);
        if (worth.relative - worth.of_rounding <= 1e-9) {
            EXPECT_EQ(zComputeXNPV(&flows), 0);
            double largest = 0.0;  // discounted to the first flow given
            for (std::size_t k = 0; k < list.values.size(); ++k) {
                const double years = static_cast<double>(list.days[k] - list.days[0]) / 365.0;
                largest = std::max(largest, std::abs(list.values[k]) * std::pow(1.0 + flows.rate, -years));
            }
            EXPECT_LE(std::abs(flows.result), (1e-9 + worth.of_rounding) * largest);
        } else {
            ++searched.false_answers;
            EXPECT_EQ(flows.rate, lowest_rate);
        }
    }
    return searched;
}

TEST(XirrOfRandomLists, XnpvAtTheRateIsZero) {
    for (const Dates dates : {Dates::ascending, Dates::repeated, Dates::unsorted}) {
        for (const Changes changes : {Changes::one, Changes::two, Changes::many}) {
            const Searched searched = search(dates, changes);
            EXPECT_GE(searched.solved, searched.lists * 98 / 100);
            // thrown to the lowest rate: hardly ever where the first flow given is the earliest
            EXPECT_LE(searched.false_answers, searched.lists * (dates == Dates::unsorted ? 50 : 2) / 1000);
        }
    }
}

}  // namespace
}  // namespace finance::test
