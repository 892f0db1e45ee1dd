// Whether a searched answer solves its equation, and the sentence where it does not.
//
//  (1) It solves where the direct calculation comes to its target to within 1e-10 of the sizes of its terms,
//  (2) or where it passes from one side of the target to the other within 1e-9 of the rate, or of 1 where that is
//      larger: then it is the rate's own last places that keep it off. At a rate of exactly 0, which stands for all
//      rates that are too small to count, within 2^-26 on either side.
//  (3) The lowest rate that searches try is where they end when they are thrown off: there only (2) counts.
//  (4) Where the direct calculation has no answer at the rate, (2) alone decides.
//  (5) A rule's answer (equal dates, one coupon left) has nothing to solve.
#pragma once

#include <string>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

inline constexpr double lowest_rate = -0.9999999;  // of the searches for RATE, XIRR and the yields

// answer: a finite one of that call. True for calculations that do not search.
bool solves(const host::Evaluator& host, const catalogue::Calculation& calculation, Arguments arguments, double answer);

// Whether it is an answer at all: finite, and one that solves.
bool holds(const host::Evaluator& host, const catalogue::Calculation& calculation, Arguments arguments, double answer);

// "XNPV at this rate is 100, not 0"
std::string unsolved_words(const host::Evaluator& host, const catalogue::Calculation& calculation, Arguments arguments,
                           double answer);

}  // namespace finance::calls
