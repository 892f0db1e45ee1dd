// The payments of a loan. Figures by hand: 100 at 100 % over two periods is repaid by 400/3 each, the first of which is
// 100 interest and 100/3 principal.
#include "calls/loan_schedule.hpp"

#include <gtest/gtest.h>

#include <string>

#include "host/embedded_host.hpp"
#include "tests/support/call.hpp"

namespace finance::test {
namespace {

using calls::LoanArgument;
using calls::LoanRow;
using calls::LoanSchedule;
using host::Argument;

void expect(const LoanRow& row, const LoanRow& expected) {
    EXPECT_EQ(row.period, expected.period);
    EXPECT_NEAR(row.payment, expected.payment, 1e-12);
    EXPECT_NEAR(row.interest, expected.interest, 1e-12);
    EXPECT_NEAR(row.principal, expected.principal, 1e-12);
    EXPECT_NEAR(row.balance, expected.balance, 1e-12);
}

TEST(LoanSchedule, PaymentsAtTheEnd) {
    LoanSchedule loan{linked_host(), "loan", {1, 2, 100}};
    expect(loan.next_payment(), {1, -400.0 / 3, -100.0, -100.0 / 3, 200.0 / 3});
    expect(loan.next_payment(), {2, -400.0 / 3, -200.0 / 3, -200.0 / 3, 0.0});
}

// 100 at 100 %, paid at the start until 30 are owed the other way: x + x / 2 = 100 + 30 / 4.
TEST(LoanSchedule, PaymentsAtTheStartLeaveTheLastInterest) {
    LoanSchedule loan{linked_host(), "loan", {1, 2, 100, 30, 1}};
    const double payment = -(100.0 + 7.5) / 1.5;
    expect(loan.next_payment(), {1, payment, 0.0, payment, 100.0 + payment});
    const double interest = -(100.0 + payment);
    expect(loan.next_payment(), {2, payment, interest, payment - interest, -15.0});
    expect(loan.last_interest(), {3, 0.0, 15.0, -15.0, -30.0});
}

TEST(LoanSchedule, WhatIsLeftOutOrMissingIs0) {
    const LoanSchedule loan{linked_host(), "loan", {1, 2, 100, Argument::missing(), Argument::absent()}};
    EXPECT_EQ(loan.given(LoanArgument::rate), 1.0);
    EXPECT_EQ(loan.given(LoanArgument::pv), 100.0);
    EXPECT_EQ(loan.given(LoanArgument::fv), 0.0);
    EXPECT_EQ(loan.given(LoanArgument::type), 0.0);
    const LoanSchedule shorter{linked_host(), "loan", {1, 2, 100}};
    EXPECT_EQ(shorter.given(LoanArgument::type), 0.0);
}

TEST(LoanSchedule, ARefusalNamesTheSchedule) {
    std::string sentence;
    try {
        const LoanSchedule loan{linked_host(), "my loan", {1, 2.5, 100}};
    } catch (const calls::CallRefused& refusal) {
        sentence = refusal.what();
    }
    EXPECT_EQ(sentence, "my loan: argument 2 (nper): 2.5 is not a whole number");
}

}  // namespace
}  // namespace finance::test
