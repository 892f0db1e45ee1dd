// The payments of a loan, period by period.
//
//  (1) Payment, interest and principal of each period are PMT, IPMT and PPMT; the balance is pv plus the principal so
//      far.
//  (2) Payments at the end leave a balance of -fv. Payments at the start leave what the last period's interest is still
//      to be added to: a row without payment, at the start of period nper + 1, does so.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calls/answer.hpp"
#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

enum class LoanArgument : std::uint8_t { rate, nper, pv, fv, type };  // PMT's

struct LoanRow {
    std::int64_t period = 0;
    double payment = 0.0;
    double interest = 0.0;
    double principal = 0.0;
    double balance = 0.0;
};

class LoanSchedule {
public:
    // of_pmt: three to five. name: whom a refusal names. CallRefused, here and with each row.
    LoanSchedule(const host::Evaluator& host, std::string_view name, std::vector<host::Argument> of_pmt);

    // What is left out or missing counts as 0.
    [[nodiscard]] double given(LoanArgument argument) const;
    LoanRow next_payment();  // of period 1, 2, ... nper
    LoanRow last_interest();

private:
    [[nodiscard]] double answer(std::string_view name, Arguments arguments) const;

    const host::Evaluator* host_;
    catalogue::Calculation calculation_;          // PMT under the schedule's name, for the sentences
    std::vector<host::Argument> arguments_;       // of PMT
    std::vector<host::Argument> part_arguments_;  // of IPMT and PPMT: the period is the second
    LoanRow row_;
};

}  // namespace finance::calls
