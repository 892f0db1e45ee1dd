// Sums over the periods of a loan, walked period by period.
//
//  (1) A step leads from a larger balance to none that is smaller, rounded as it is: balances rise or fall all the way.
//      One that a step leaves as it was has come to rest; none alternates.
//  (2) From there on all steps add the same amount, in jumps that keep every bit (calendar/repeated_sum.hpp).
//  (3) A walk that does not come to rest within a hundred million steps is replaced by its closed form; within ten
//      million where the rate or the interest is near the denormal numbers.
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

// What the steps add to each, of a payment that is not rounded, in closed form (loan_spans.cpp).
double closed_interest(const LoanWalk& walk);
double closed_principal(const LoanWalk& walk);

}  // namespace finance
