#include "command/schedules/loan_ledger.hpp"

#include "command/number_form.hpp"

namespace finance::command {

LoanLedger::LoanLedger(const LoanAmounts& loan, const std::optional<int>& decimals)
    : loan_{loan},
      decimals_{decimals},
      paid_{money(money(loan.payment) + (loan.payment < 0.0 ? -loan.extra : loan.extra))},
      target_{0.0 - loan.future},
      balance_{loan.present},
      interest_to_come_{loan.at_start && loan.future != 0.0} {
    if (interest_to_come_) target_ = money(target_ / (1.0 + loan.rate));
}

double LoanLedger::money(double amount) const { return decimals_ ? rounded(amount, *decimals_) : amount; }

calls::LoanRow LoanLedger::next_payment() {
    ++period_;
    const bool without_interest = loan_.at_start && period_ == 1;
    const double interest = without_interest ? 0.0 : money(0.0 - balance_ * loan_.rate);
    const double rest = money(target_ - balance_);
    double principal = money(paid_ - interest);
    const bool beyond = (rest < 0.0 && principal <= rest) || (rest > 0.0 && principal >= rest);
    repaid_ = beyond || period_ == loan_.periods;
    if (repaid_) principal = rest;
    balance_ = repaid_ ? target_ : money(balance_ + principal);
    return {period_, repaid_ ? money(interest + principal) : paid_, interest, principal, balance_};
}

calls::LoanRow LoanLedger::last_interest() {
    interest_to_come_ = false;
    const double interest = money(target_ + loan_.future);
    return {period_ + 1, 0.0, interest, 0.0 - interest, 0.0 - loan_.future};
}

std::optional<calls::LoanRow> LoanLedger::next() {
    if (!repaid_) return next_payment();
    if (interest_to_come_) return last_interest();
    return {};
}

}  // namespace finance::command
