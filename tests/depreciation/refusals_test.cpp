// What the seven depreciation calculations refuse, and which argument they name.
#include <gtest/gtest.h>

#include <limits>

#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_31 = 2147483648.0;
constexpr double two_to_32 = 4294967296.0;
constexpr double two_to_53 = 9007199254740992.0;
constexpr double two_to_63 = 9223372036854775808.0;

const double purchase = host_date(2008, 8, 19);
const double end = host_date(2008, 12, 31);

const ArgumentRules amount{true, {}};
const ArgumentRules optional{false, {}};
const ArgumentRules positive{true, {0, -0.0, -1e-300, -1, -inf}};

// Kept as 32 bits, at least 1; and as 64 bits, at least 1, where 2^31 and 2^32 are what they are.
const ArgumentRules count{
    true, {0, -3, 2.5, 0.5, two_to_31, two_to_32, two_to_53 + 2, 1e16, 1e300, inf, -inf, -1e300, -two_to_63}};
const ArgumentRules long_count{true, {0, -3, 2.5, 0.5, two_to_53 + 2, 1e16, 1e300, inf, -inf, -1e300, -two_to_63}};

TEST(DepreciationRefusals, EveryArgumentAbsentMissingOutOfRule) {
    int calls = 0;
    calls += check_argument_rules("SLN", {1000, 100, 5}, {amount, amount, positive});
    calls += check_argument_rules("SYD", {1000, 100, 5, 2}, {amount, amount, count, count});
    calls += check_argument_rules("DB", {1000, 100, 5, 2, 7}, {amount, amount, long_count, long_count, count});
    calls += check_argument_rules("DDB", {1000, 100, 5, 2, 2}, {amount, amount, positive, count, optional});
    const ArgumentRules start{true, {-1, -0.5, 0.5, 6, two_to_31, -two_to_32 - 1, two_to_53 + 2, 1e300, inf, -1e300}};
    const ArgumentRules flag{false, {2, 3, -1, 0.5, 1.0000000000001, two_to_32, 1e300, inf, -inf}};
    calls += check_argument_rules("VDB", {1000, 100, 5, 1, 3, 2, 0},
                                  {amount, amount, positive, start, count, positive, flag});
    calls += check_argument_rules("VDB", {1000, 100, 5, 1, 3, 2, 0},
                                  {amount, amount, positive, start, {true, {6}}, positive, flag});
    EXPECT_EQ(calls, 212);
}

TEST(DepreciationRefusals, EveryProratedArgumentAbsentMissingOutOfRule) {
    const ArgumentRules date{true, {0.5, -2.5, two_to_53 + 2, 1e300, inf, -1e300}};
    const ArgumentRules period{true, {-1, 0.5, -0.5, two_to_53 + 2, 1e300, inf, -inf, -1e300}};
    const ArgumentRules basis{
        false,
        {absent_text, no_descriptor, other_type, 2, 2.9, 5, 6, -1, inf, 1e300, "ACT/360", " act / 360 ", "", "ACTUA"}};
    const std::vector<Arg> good{1000, purchase, end, 100, 2, 0.2, 3};
    int calls = 0;
    calls += check_argument_rules(
        "AMORLINC", good, {positive, date, date, {true, {-1, -1e-300, -inf, 1000.1, inf}}, period, positive, basis});
    calls += check_argument_rules("AMORDEGRC", good,
                                  {positive, date, date, {true, {-1, -1e-300, -inf}}, period, positive, basis});
    EXPECT_EQ(calls, 120);
}

const std::vector<RefusalCase> crossed{
    // DB's period is compared with the life after the month was read
    {"DB/period beyond life + 1", "DB", {1000, 100, 5, 7}, STATUS_INVALID_ARGUMENT, {4}},
    {"DB/period beyond life + 1, good month", "DB", {1000, 100, 5, 7, 3}, STATUS_INVALID_ARGUMENT, {4}},
    {"DB/period beyond life + 1, month missing", "DB", {1000, 100, 5, 7, missing}, STATUS_MISSING_RESULT, {5}},
    {"DB/period beyond life + 1, month 0", "DB", {1000, 100, 5, 7, 0}, STATUS_INVALID_ARGUMENT, {5}},
    {"DB/period 2^53 of life 2^32", "DB", {1000, 100, two_to_32, two_to_53}, STATUS_INVALID_ARGUMENT, {4}},
    // DDB's before the factor, which never fails
    {"DDB/period beyond life", "DDB", {1000, 100, 5, 6, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"DDB/period beyond a life with a fraction", "DDB", {1000, 100, 2.5, 3}, STATUS_INVALID_ARGUMENT, {4}},
    {"DDB/life below 1", "DDB", {1000, 100, 0.5, 1}, STATUS_INVALID_ARGUMENT, {4}},
    // VDB: start against life, then end against life; factor before flag
    {"VDB/start beyond life, end missing", "VDB", {1000, 100, 5, 6, missing}, STATUS_INVALID_ARGUMENT, {4}},
    {"VDB/end beyond life, factor missing", "VDB", {1000, 100, 5, 1, 6, missing}, STATUS_INVALID_ARGUMENT, {5}},
    {"VDB/end beyond a life with a fraction", "VDB", {1000, 100, 2.5, 1, 3}, STATUS_INVALID_ARGUMENT, {5}},
    {"VDB/factor absent, flag bad", "VDB", {1000, 100, 5, 1, 3, absent, 2}, STATUS_INVALID_ARGUMENT, {6}},
    {"VDB/factor missing, flag bad", "VDB", {1000, 100, 5, 1, 3, missing, 2}, STATUS_MISSING_RESULT, {6}},
    {"VDB/factor alone missing", "VDB", {1000, 100, 5, 1, 3, missing}, STATUS_MISSING_RESULT, {6}},
    {"VDB/the whole life does not excuse a flag", "VDB", {1000, 100, 5, 0, 5, 2, 2}, STATUS_INVALID_ARGUMENT, {7}},
    {"VDB/end before start does not excuse a factor", "VDB", {1000, 100, 5, 3, 2, 0}, STATUS_INVALID_ARGUMENT, {6}},
    // AMORLINC and AMORDEGRC differ in the salvage
    {"AMORLINC/salvage above cost", "AMORLINC", {100, purchase, end, 150, 0, 0.25}, STATUS_INVALID_ARGUMENT, {4}},
    {"AMORLINC/salvage above cost, period missing",
     "AMORLINC",
     {100, purchase, end, 150, missing, 0.25},
     STATUS_INVALID_ARGUMENT,
     {4}},
    {"AMORLINC/ACT/360", "AMORLINC", {100, purchase, end, 50, 0, 0.25, "ACT/360"}, STATUS_INVALID_ARGUMENT, {7}},
    {"AMORDEGRC/ACT/360", "AMORDEGRC", {100, purchase, end, 50, 0, 0.25, "ACT/360"}, STATUS_INVALID_ARGUMENT, {7}},
    {"AMORDEGRC/ACT/360 where the answer were 0",
     "AMORDEGRC",
     {100, purchase, end, 50, 9, 0.4, 2},
     STATUS_INVALID_ARGUMENT,
     {7}},
    {"AMORLINC/rate before basis", "AMORLINC", {100, purchase, end, 50, 0, 0, 2}, STATUS_INVALID_ARGUMENT, {6}},
    {"AMORDEGRC/rate missing before basis",
     "AMORDEGRC",
     {100, purchase, end, 50, 0, missing, 2},
     STATUS_MISSING_RESULT,
     {6}},

    // two faults at once: the first argument is named
    {"SLN/cost missing, life bad", "SLN", {missing, 100, 0}, STATUS_MISSING_RESULT, {1}},
    {"SLN/salvage absent, life missing", "SLN", {1, absent, missing}, STATUS_INVALID_ARGUMENT, {2}},
    {"SYD/life bad, period missing", "SYD", {1, 1, 0.5, missing}, STATUS_INVALID_ARGUMENT, {3}},
    {"SYD/period 0", "SYD", {1, 1, 5, 0}, STATUS_INVALID_ARGUMENT, {4}},
    {"DB/life missing, period bad", "DB", {1, 1, missing, 0}, STATUS_MISSING_RESULT, {3}},
    {"DDB/life bad, period absent", "DDB", {1, 1, 0, absent}, STATUS_INVALID_ARGUMENT, {3}},
    {"VDB/start bad, end absent", "VDB", {1, 1, 5, -1, absent}, STATUS_INVALID_ARGUMENT, {4}},
    {"AMORLINC/cost bad, purchase missing", "AMORLINC", {0, missing, end, 0, 0, 0.2}, STATUS_INVALID_ARGUMENT, {1}},
    {"AMORDEGRC/end missing, salvage bad", "AMORDEGRC", {1, purchase, missing, -1, 0, 0.2}, STATUS_MISSING_RESULT, {3}},
};

TEST(DepreciationRefusals, OrderOfChecks) { check_refusals(crossed); }

}  // namespace
}  // namespace finance::test
