// The payments of a loan as they are made: in whole cents, or with something extra each time.
//
//  (1) Interest of a period is rate * balance, and none at the start of the first one.
//  (2) With decimals every amount is rounded to them (command/number_form.hpp), so that columns add up: balance =
//      balance before + principal, payment = interest + principal.
//  (3) The last payment carries the rest: the balance ends at -fv, with payments at the start once the interest of the
//      last period is added.
//  (4) What is extra is paid with each payment, beside it. The payment that would take the balance beyond its end is
//      the last one.
#pragma once

#include <cstdint>
#include <optional>

#include "calls/loan_schedule.hpp"

namespace finance::command {

struct LoanAmounts {
    double rate = 0.0;
    std::int64_t periods = 0;
    double present = 0.0;
    double future = 0.0;
    bool at_start = false;
    double payment = 0.0;  // PMT
    double extra = 0.0;    // above 0 where anything is
};

class LoanLedger {
public:
    LoanLedger(const LoanAmounts& loan, const std::optional<int>& decimals);

    // Nothing after the last one.
    std::optional<calls::LoanRow> next();

private:
    [[nodiscard]] double money(double amount) const;
    calls::LoanRow next_payment();
    calls::LoanRow last_interest();

    LoanAmounts loan_;
    std::optional<int> decimals_;
    double paid_;    // each time but the last
    double target_;  // of the balance after the last payment
    double balance_;
    std::int64_t period_ = 0;
    bool repaid_ = false;
    bool interest_to_come_;
};

}  // namespace finance::command
