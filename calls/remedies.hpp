// What to call instead, where a search has no answer or one that does not solve.
//
//  (1) RATE: the amounts with their signs put right; the flows of the plan, one by one, through IRR.
//  (2) IRR: the same flows through XIRR, one each 365 days, from other guesses.
//  (3) XIRR: the flows by date, the earliest first; then from other guesses.
//  (4) A call is only proposed once it has been made, and its answer solves.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

struct Remedy {
    const catalogue::Calculation* calculation;
    std::vector<host::Argument> arguments;

    // As it is typed: "IRR flows=-100,60,60"
    [[nodiscard]] std::string text() const;
};

// Nothing where none is known, or the flows are too many to be typed.
std::optional<Remedy> remedy_for(const host::Evaluator& host, const catalogue::Calculation& calculation,
                                 Arguments arguments);

}  // namespace finance::calls
