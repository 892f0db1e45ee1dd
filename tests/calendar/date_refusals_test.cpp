// What the twelve date calculations refuse: each argument absent, missing, out of rule; the order of the checks.
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "module/financial_list.hpp"
#include "tests/calendar/dates.hpp"
#include "tests/support/tables.hpp"

namespace finance::test {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double two_to_53 = 9007199254740992.0;
constexpr double early = host_date(2008, 2, 15);
constexpr double late = host_date(2017, 11, 15);

constexpr Status invalid = STATUS_INVALID_ARGUMENT;
constexpr Status incomplete = STATUS_MISSING_RESULT;

const std::vector<const char*> coupon_questions{"COUPDAYBS", "COUPDAYS", "COUPDAYSNC", "COUPNCD", "COUPNUM", "COUPPCD"};
const std::vector<const char*> discount_securities{"DISC", "INTRATE", "PRICEDISC", "RECEIVED", "YIELDDISC"};

// ---- Each argument

const std::vector<Arg> not_a_date{0.5, -0.5, 17000.25, two_to_53 + 2, 1e16, 1e300, inf, -1e300, -9.3e18};
const std::vector<Arg> not_a_frequency{0,    -0.0,  -2,  -12,  2.5,    0.5,  2.000001, two_to_53 + 2,
                                       1e16, 1e300, inf, -inf, -1e300, -1e16};
const std::vector<Arg> not_an_amount{0, -0.0, -1, -1e-300, -inf};
const std::vector<Arg> not_a_basis{5,
                                   -1,
                                   6,
                                   5.5,
                                   1e300,
                                   4294967296.0,
                                   4294967297.0,
                                   inf,
                                   -inf,
                                   "",
                                   " ",
                                   "nonsense",
                                   "30/361",
                                   "ACTUA",
                                   "ACTUALS",
                                   "1",
                                   std::string(250, ' ') + "ACTUAL",
                                   absent_text,
                                   no_descriptor,
                                   other_type};

TEST(DateRefusals, EveryArgumentAbsentMissingOutOfRule) {
    const ArgumentRules date{true, not_a_date};
    const ArgumentRules frequency{true, not_a_frequency};
    const ArgumentRules amount{true, not_an_amount};
    const ArgumentRules basis{false, not_a_basis};
    int calls = check_argument_rules("YEARFRAC", {early, late, 1}, {date, date, basis});
    for (const char* name : coupon_questions) {
        calls += check_argument_rules(name, {early, late, 2, 1}, {date, date, frequency, basis});
    }
    for (const char* name : discount_securities) {
        calls += check_argument_rules(name, {early, late, 97, 0.05, 1}, {date, date, amount, amount, basis});
    }
    EXPECT_EQ(calls, (22 + 20) + 6 * (22 + 16 + 20) + 5 * (22 + 14 + 20));
}

// ---- The order of the dates

TEST(DateRefusals, SettlementAfterMaturity) {
    std::vector<RefusalCase> cases;
    const auto refuse = [&](const std::string& name, const char* what, const std::vector<Arg>& arguments, int flagged) {
        cases.push_back({name + '/' + what, name, arguments, invalid, {flagged}});
    };
    for (const std::string name : coupon_questions) {
        const int flagged = name == "COUPDAYBS" ? 3 : 2;
        refuse(name, "out of order", {late, early, 2, 1}, flagged);
        refuse(name, "out of order, frequency absent", {late, early, absent, 1}, flagged);
        refuse(name, "out of order, frequency missing", {late, early, missing, 1}, flagged);
        refuse(name, "out of order, frequency 0", {late, early, 0, 1}, flagged);
        refuse(name, "out of order, basis 5", {late, early, 2, 5}, flagged);
        refuse(name, "by one day", {early + 1, early, 2}, flagged);
        if (name == "COUPDAYBS" || name == "COUPNCD" || name == "COUPPCD") {
            refuse(name, "equal dates", {early, early, 2}, flagged);
            refuse(name, "equal dates, frequency missing", {early, early, missing}, flagged);
            refuse(name, "equal dates, basis 5", {early, early, 2, 5}, flagged);
        } else {
            refuse(name, "equal dates, frequency 0", {early, early, 0}, 3);
            refuse(name, "equal dates, basis 5", {early, early, 2, 5}, 4);
        }
    }
    for (const std::string name : discount_securities) {
        refuse(name, "out of order", {late, early, 97, 0.05, 1}, 2);
        refuse(name, "out of order, all else bad", {late, early, missing, absent, 5}, 2);
        refuse(name, "by one day", {early + 1, early, 97, 0.05}, 2);
    }
    refuse("YEARFRAC", "out of order", {late, early, 1}, 2);
    refuse("YEARFRAC", "out of order, basis 5", {late, early, 5}, 2);
    refuse("YEARFRAC", "by one day", {early + 1, early}, 2);
    check_refusals(cases);
    EXPECT_EQ(cases.size(), 6U * 6 + 3 * 3 + 3 * 2 + 5 * 3 + 3);
}

// ---- Two faults at once: the first argument is named

TEST(DateRefusals, FirstFaultEndsTheCall) {
    std::vector<RefusalCase> cases;
    const auto refuse = [&](const std::string& name, const std::vector<Arg>& arguments, Status status, int flagged) {
        const std::string id = name + " row " + std::to_string(cases.size());
        cases.push_back({id, name, arguments, status, {flagged}});
    };
    for (const char* name : coupon_questions) {
        refuse(name, {missing, late, 0, 5}, incomplete, 1);
        refuse(name, {missing, 0.5, 2, 1}, incomplete, 1);
        refuse(name, {0.5, missing, 2, 1}, invalid, 1);
        refuse(name, {absent, absent, 2, 1}, invalid, 1);
        refuse(name, {early, missing, 0, 1}, incomplete, 2);
        refuse(name, {early, 1e16, missing, 5}, invalid, 2);
        refuse(name, {late, missing, 2, 1}, incomplete, 2);
        refuse(name, {early, late, missing, 5}, incomplete, 3);
        refuse(name, {early, late, 0, 5}, invalid, 3);
        refuse(name, {early, late, absent, "nonsense"}, invalid, 3);
    }
    for (const char* name : discount_securities) {
        refuse(name, {missing, 0.5, 97, 0.05}, incomplete, 1);
        refuse(name, {0.5, missing, 97, 0.05}, invalid, 1);
        refuse(name, {early, absent, missing, 0.05}, invalid, 2);
        refuse(name, {early, missing, 0, 0.05}, incomplete, 2);
        refuse(name, {early, late, missing, 0}, incomplete, 3);
        refuse(name, {early, late, 0, missing}, invalid, 3);
        refuse(name, {early, late, absent, absent, 5}, invalid, 3);
        refuse(name, {early, late, 97, missing, 5}, incomplete, 4);
        refuse(name, {early, late, 97, -1, "nonsense"}, invalid, 4);
    }
    refuse("YEARFRAC", {missing, missing, 5}, incomplete, 1);
    refuse("YEARFRAC", {0.5, missing, 5}, invalid, 1);
    refuse("YEARFRAC", {early, missing, 5}, incomplete, 2);
    refuse("YEARFRAC", {early, absent, 5}, invalid, 2);
    check_refusals(cases);
    EXPECT_EQ(cases.size(), 6U * 10 + 5 * 9 + 4);
}

// A null result pointer: the flag and the status are all that is left to say.
TEST(DateRefusals, FailuresNeedNoResult) {
    for (const char* name : coupon_questions) {
        Call call{name, {missing, late, 2}};
        EXPECT_EQ(
            FinancialList[static_cast<std::size_t>(row_of(name))].handler(call.context(), nullptr, call.count(), 0),
            STATUS_MISSING_RESULT)
            << name;
    }
    for (const char* name : discount_securities) {
        Call call{name, {early, late, 97, -1}};
        EXPECT_EQ(
            FinancialList[static_cast<std::size_t>(row_of(name))].handler(call.context(), nullptr, call.count(), 0),
            STATUS_INVALID_ARGUMENT)
            << name;
    }
}

}  // namespace
}  // namespace finance::test
