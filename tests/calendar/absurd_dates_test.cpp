// Dates that no calendar has: every call ends, means the same twice, and refuses exactly what the rules refuse.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_53 = 9007199254740992.0;
constexpr double two_to_63 = 9223372036854775808.0;

// Whole numbers of at most 2^53; below -2^63 nothing truncates to itself, but for -infinity, which differs from its
// truncation by no more than 1e-12 of itself.
const std::vector<double> accepted{-1e16, -two_to_63, -two_to_53, two_to_53, -inf, two_to_53 - 1, -1e15, 1e15,
                                   // years at the ends of 32 bits, and days that recur in them
                                   784351000000.0, 784355000000.0, -784355000000.0, -784359000000.0, 1568700000000.0,
                                   2191455000.0, -2191455000.0, -3000000.0, -715510.0, 0.0};
const std::vector<double> refused{1e16, inf, 1e300, -1e300, two_to_53 + 2, -1e19, two_to_63, 5e-324};

struct Calculation {
    const char* name;
    std::vector<Arg> rest;  // what follows the two dates
};

std::vector<Calculation> calculations() {
    std::vector<Calculation> all;
    for (int basis = 0; basis <= 4; ++basis) {
        all.push_back({"YEARFRAC", {basis}});
        for (const char* name : {"COUPDAYBS", "COUPDAYS", "COUPDAYSNC", "COUPNCD", "COUPNUM", "COUPPCD"}) {
            for (const double frequency :
                 {1.0, 2.0, 12.0, 3.0, 64.0, 65.0, 2147483647.0, 2147483648.0, 4294967295.0, 4294967296.0, two_to_53}) {
                all.push_back({name, {frequency, basis}});
            }
        }
        for (const char* name : {"DISC", "INTRATE", "PRICEDISC", "RECEIVED", "YIELDDISC"}) {
            all.push_back({name, {97, 0.05, basis}});
        }
    }
    return all;
}

Outcome evaluate(const Calculation& of, double first, double second) {
    std::vector<Arg> arguments{first, second};
    arguments.insert(arguments.end(), of.rest.begin(), of.rest.end());
    return Call{of.name, arguments}.through_handler();
}

std::string named(const Calculation& of, double first, double second) {
    std::string text = std::string{of.name} + ' ' + std::to_string(first) + ' ' + std::to_string(second);
    for (const Arg& argument : of.rest) text += ' ' + std::to_string(argument.number());
    return text;
}

// The day that an accepted number stands for.
double day_of(double date) { return date < -two_to_63 ? -two_to_63 : date; }

void expect_the_same_twice(const Calculation& of, double first, double second) {
    const Outcome once = evaluate(of, first, second);
    const Outcome again = evaluate(of, first, second);
    EXPECT_EQ(once.status, again.status) << named(of, first, second);
    EXPECT_EQ(bits(once.value), bits(again.value)) << named(of, first, second);
    EXPECT_EQ(once.flagged, again.flagged) << named(of, first, second);
    EXPECT_TRUE(once.host_bytes_kept) << named(of, first, second);
    EXPECT_TRUE(once.written) << named(of, first, second);
    if (once.status != STATUS_SUCCESS) {
        EXPECT_EQ(once.status, STATUS_INVALID_ARGUMENT) << named(of, first, second);
        EXPECT_EQ(bits(once.value), bits(MISSING_VALUE)) << named(of, first, second);
        // at fault is their order, or no argument
        EXPECT_TRUE(once.flagged.empty() || (day_of(first) >= day_of(second) && once.flagged[0] != 1))
            << named(of, first, second);
    } else {
        EXPECT_LE(day_of(first), day_of(second)) << named(of, first, second);
        EXPECT_TRUE(once.flagged.empty()) << named(of, first, second);
    }
}

TEST(AbsurdDates, AcceptedOnes) {
    int calls = 0;
    for (const Calculation& of : calculations()) {
        for (const double date : accepted) {
            expect_the_same_twice(of, date, host_date(2008, 2, 15));
            expect_the_same_twice(of, host_date(2008, 2, 15), date);
            expect_the_same_twice(of, date, two_to_53);
            expect_the_same_twice(of, -two_to_63, date);
            expect_the_same_twice(of, date - 366, date);
            calls += 5;
        }
    }
    EXPECT_EQ(calls, 5 * (1 + 6 * 11 + 5) * 18 * 5);
}

TEST(AbsurdDates, RefusedOnes) {
    for (const Calculation& of : calculations()) {
        for (const double date : refused) {
            const Outcome first = evaluate(of, date, 0.5);  // the second is bad, too
            EXPECT_EQ(first.status, STATUS_INVALID_ARGUMENT) << named(of, date, 0.5);
            EXPECT_EQ(first.flagged, std::vector<int>{1}) << named(of, date, 0.5);
            const Outcome second = evaluate(of, 17000.0, date);
            EXPECT_EQ(second.status, STATUS_INVALID_ARGUMENT) << named(of, 17000.0, date);
            EXPECT_EQ(second.flagged, std::vector<int>{2}) << named(of, 17000.0, date);
        }
    }
}

// Equal dates are answered, or refused, whatever they are. -infinity is day -2^63.
TEST(AbsurdDates, EqualOnes) {
    for (const auto& [first, second] : {std::pair{-inf, -two_to_63}, {-two_to_63, -inf}, {two_to_53, two_to_53}}) {
        check_values({{"YEARFRAC", "YEARFRAC", {first, second, 9}, 0, "equal dates"},
                      {"DISC", "DISC", {first, second, 0, 0, 9}, 0, "equal dates"},
                      {"RECEIVED", "RECEIVED", {first, second, 0, 0, 9}, 0, "equal dates"}});
        check_refusals({{"COUPDAYBS", "COUPDAYBS", {first, second, 2}, STATUS_INVALID_ARGUMENT, {3}},
                        {"COUPNCD", "COUPNCD", {first, second, 2}, STATUS_INVALID_ARGUMENT, {2}},
                        {"COUPPCD", "COUPPCD", {first, second, 2}, STATUS_INVALID_ARGUMENT, {2}}});
    }
}

// Days and years of the far ends that are known all the same.
TEST(AbsurdDates, KnownAnswers) {
    check_values({
        {"four million years after", "COUPNUM", {0, 1460970000, 2}, 8000000, "10000 times 400 years"},
        {"a coupon date in year 4001960",
         "COUPNCD",
         {1460970000, 1460970000 + 366, 1},
         1460970000 + 366,
         "a leap year: 4001960 is divisible by 4 and not by 100"},
        {"before year 1",
         "COUPPCD",
         {-715510 - 200, -715510, 12},
         -715510 - 214,
         "31 May, 214 days before 31 December"},
        {"found five months before the last of 2^31 steps",
         "COUPDAYBS",
         {784351580595.0, 784351580778.0, 2147483647.0, 3},
         31,
         "the literal search, which takes every step"},
        {"the same with days to the next",
         "COUPDAYSNC",
         {784351580595.0, 784351580778.0, 2147483647.0, 3},
         1503341900886,
         "the same"},
        {"odd steps in the far future",
         "ODDLPRICE",
         {718989255378.0, 718989255398.0, -784352646139.0, 0.03, 1e40, 100, 3, 1},
         -20.999999999994678,
         "the literal walk ends at its 21st step; a yield of 1e40 leaves the accrued coupons"},
        {"months beyond 32 bits",
         "ODDLPRICE",
         {-20000, -19000, -780000000000.0, 0.05, 1e40, 100, 1},
         -5 * 178956971.0,
         "178956970 whole years, and a last one, capped, of 5 each"},
    });
}

}  // namespace
}  // namespace finance::test
