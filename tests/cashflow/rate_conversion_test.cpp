// EFFECT, NOMINAL and FVSCHEDULE: values, refusals, round trips.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr const char* digits_60 = "60 digits, tests/reference/cash_flows.py";
constexpr const char* by_hand = "by hand";

const std::vector<ValueCase> values{
    {"EFFECT/monthly", "EFFECT", {0.12, 12}, 0.12682503013196972, digits_60, 16},
    {"EFFECT/tiny rate keeps its digits", "EFFECT", {1e-10, 365}, 1.000000000049863e-10, digits_60, 4},
    {"EFFECT/negative", "EFFECT", {-0.5, 4}, -0.413818359375, "(7/8)^4 - 1", 8},
    {"EFFECT/0", "EFFECT", {0, 4}, 0.0, by_hand},
    {"EFFECT/once a year", "EFFECT", {0.5, 1}, 0.5, by_hand, 2},
    {"EFFECT/doubles twice", "EFFECT", {2, 2}, 3.0, by_hand, 4},
    {"EFFECT/all is lost", "EFFECT", {-2, 2}, -1.0, "1 + rate/m is 0"},
    {"EFFECT/more than all is lost", "EFFECT", {-5, 2}, nan, "the logarithm of -1.5"},
    {"EFFECT/overflow", "EFFECT", {1e300, 1000}, inf, "1e297^1000"},
    {"EFFECT/infinite rate", "EFFECT", {inf, 3}, inf, by_hand},
    {"EFFECT/12 within 1e-12", "EFFECT", {0.12, 12.000000000001}, 0.12682503013196972, digits_60, 16},
    {"EFFECT/2^32 + 12 counts as 12", "EFFECT", {0.12, two_to_32 + 12}, 0.12682503013196972, digits_60, 16},
    {"EFFECT/1 - 2^32 counts as 1", "EFFECT", {0.5, 1 - two_to_32}, 0.5, by_hand, 2},

    {"NOMINAL/monthly", "NOMINAL", {0.0835, 12}, 0.08046511852009869, digits_60, 16},
    {"NOMINAL/tiny rate keeps its digits", "NOMINAL", {1e-10, 365}, 9.999999999501371e-11, digits_60, 4},
    {"NOMINAL/negative", "NOMINAL", {-0.5, 4}, -0.6364143389851419, digits_60, 8},
    {"NOMINAL/0", "NOMINAL", {0, 4}, 0.0, by_hand},
    {"NOMINAL/once a year", "NOMINAL", {0.1, 1}, 0.1, by_hand, 8},
    {"NOMINAL/fourfold in two periods", "NOMINAL", {3, 2}, 2.0, by_hand, 4},
    {"NOMINAL/2^32 is kept", "NOMINAL", {0.05, two_to_32}, 0.04879016416970913, digits_60, 8},
    {"NOMINAL/2^53 periods", "NOMINAL", {std::exp(1.0) - 1.0, two_to_53}, 1.0, "ln of 1 + rate", 4},
    {"NOMINAL/all is lost", "NOMINAL", {-1, 3}, -3.0, "e to minus infinity, less 1, three times"},
    {"NOMINAL/more than all is lost", "NOMINAL", {-1.5, 3}, nan, "the logarithm of -0.5"},
    {"NOMINAL/infinite rate", "NOMINAL", {inf, 3}, inf, by_hand},

    {"FVSCHEDULE/principal alone", "FVSCHEDULE", {100}, 100.0, by_hand},
    {"FVSCHEDULE/two rates", "FVSCHEDULE", {100, 0.5, -0.25}, 112.5, by_hand},
    {"FVSCHEDULE/three rates", "FVSCHEDULE", {250, 0.03, -0.02, 0.045}, 263.70575, digits_60, 4},
    {"FVSCHEDULE/rate -1", "FVSCHEDULE", {100, -1, 0.5}, 0.0, by_hand},
    {"FVSCHEDULE/rate below -1", "FVSCHEDULE", {100, -3}, -200.0, by_hand},
    {"FVSCHEDULE/negative zero", "FVSCHEDULE", {-0.0, 0.5}, -0.0, by_hand},
    {"FVSCHEDULE/overflow", "FVSCHEDULE", {1e308, 9}, inf, by_hand},
    {"FVSCHEDULE/0 times infinity", "FVSCHEDULE", {0, inf}, nan, by_hand},
};

TEST(RateConversion, Values) { check_values(values); }

const std::vector<RefusalCase> refusals{
    {"FVSCHEDULE/second of three rates missing", "FVSCHEDULE", {100, 0.1, missing, 0.2}, STATUS_MISSING_RESULT, {3}},
    {"FVSCHEDULE/principal missing alone", "FVSCHEDULE", {missing}, STATUS_MISSING_RESULT, {1}},

    // two faults at once: the first argument is named
    {"EFFECT/rate missing, periods bad", "EFFECT", {missing, 0}, STATUS_MISSING_RESULT, {1}},
    {"EFFECT/rate absent, periods missing", "EFFECT", {absent, missing}, STATUS_INVALID_ARGUMENT, {1}},
    {"NOMINAL/rate missing, periods absent", "NOMINAL", {missing, absent}, STATUS_MISSING_RESULT, {1}},
    {"NOMINAL/rate absent, periods bad", "NOMINAL", {absent, 2.5}, STATUS_INVALID_ARGUMENT, {1}},
    {"FVSCHEDULE/principal absent, rate missing", "FVSCHEDULE", {absent, missing}, STATUS_INVALID_ARGUMENT, {1}},
    {"FVSCHEDULE/missing, then absent", "FVSCHEDULE", {1, 0.1, missing, absent}, STATUS_MISSING_RESULT, {3}},
    {"FVSCHEDULE/absent, then missing", "FVSCHEDULE", {1, 0.1, absent, missing}, STATUS_INVALID_ARGUMENT, {3}},
};

TEST(RateConversion, Refusals) { check_refusals(refusals); }

TEST(RateConversion, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules number{true, {}};
    // EFFECT keeps 32 bits, NOMINAL 64
    const ArgumentRules periods_32{
        true, {0, -0.0, -4, 0.5, 2.5, 12.0000001, two_to_31, two_to_32, two_to_53 + 2, 1e300, inf, -inf}};
    const ArgumentRules periods_64{
        true, {0, -0.0, -4, 0.5, 2.5, 12.0000001, 1 - two_to_32, two_to_53 + 2, 1e300, inf, -inf, -1e300}};
    EXPECT_EQ(check_argument_rules("EFFECT", {0.12, 12}, {number, periods_32}), 16);
    EXPECT_EQ(check_argument_rules("NOMINAL", {0.12, 12}, {number, periods_64}), 16);
    EXPECT_EQ(check_argument_rules("FVSCHEDULE", {100, 0.1, 0.2, 0.3}, {number, number, number, number}), 8);
}

double value_of(const char* name, std::vector<Arg> arguments) {
    const Outcome got = Call{name, std::move(arguments)}.through_dispatcher();
    RC_ASSERT(got.status == STATUS_SUCCESS);
    return got.value;
}

RC_GTEST_PROP(RateConversionIdentities, NominalOfEffect, ()) {
    const double rate = *rc::gen::inRange(-5000, 20000) / 10000.0;
    const int m = *rc::gen::inRange(1, 1000);
    const double effective = value_of("EFFECT", {rate, m});
    RC_ASSERT(std::abs(value_of("NOMINAL", {effective, m}) - rate) <= 1e-12 * (1.0 + std::abs(rate)));
}

// The same rate in each of m periods is EFFECT's year.
RC_GTEST_PROP(RateConversionIdentities, ScheduleOfOneRateIsEffect, ()) {
    const int m = *rc::gen::inRange(1, 60);
    const double rate = *rc::gen::inRange(-5000, 20000) / 10000.0;
    std::vector<Arg> schedule(static_cast<std::size_t>(m) + 1, rate / m);
    schedule.front() = 1.0;
    const double grown = value_of("FVSCHEDULE", schedule);
    RC_ASSERT(std::abs(value_of("EFFECT", {rate, m}) - (grown - 1.0)) <= 1e-13 * (1.0 + grown));
}

}  // namespace
}  // namespace finance::test
