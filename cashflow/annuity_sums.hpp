// Sums over the periods of a loan, walked period by period.
//
//  (1) The walk stops early where no further step can change a bit: the balance is a fixed point of the step, and so is
//      the sum.
//  (2) A walk that would go past ten million steps is replaced by its closed form.
#pragma once

#include <cstdint>

namespace finance {

struct LoanWalk {
    double rate;          // r, per period
    double payment;       // level payment, negative for a loan
    double presentValue;  // P
    double balance;       // before step 1
    double sum;           // before step 1
    std::int32_t nper;    // n
    std::int64_t first;   // steps counted: first <= j <= last
    std::int64_t last;
    bool at_start;  // payments at the start: a step is then one payment ahead of its period
};

// sum - (r b): the interest of each step, as money paid.
double sum_of_interest(const LoanWalk& walk);

// sum + (r b + payment): the principal of each step.
double sum_of_principal(const LoanWalk& walk);

}  // namespace finance
