// The equation that a searched rate must solve: the direct calculation with the call's own arguments and the rate, and
// what it must come to. It is evaluated through the host; nothing here knows a formula.
//
//  (1) RATE: FV at the rate is fv; at rates of 0 and below, which FV does not take, PV is pv. So the growth factor is at
//      least 1 on either side of 0, and no digits of it are lost: PV at a high rate forms (1 + rate)^-nper from a
//      difference to 1, and knows nothing of an fv that is worth less than 1e-16 of itself today. Where the growth
//      leaves the range of doubles, that is nothing, and PV stands in. Without payments RATE asks for the growth from
//      pv to fv; there fv has the other sign in FV and PV.
//  (2) YIELD: PRICE at the yield is the price; ODDFYIELD: so is ODDFPRICE.
//  (3) IRR: NPV of all flows but the first one, and that one added, is 0. NPV takes no rate of 0 and below; there XNPV
//      of the flows stands in, one each 365 days, counted from the last one, so that no power of a negative rate grows
//      beyond all bounds.
//  (4) XIRR: XNPV at the rate is 0.
//  (5) Amounts of RATE and IRR are multiplied by a power of 2, so that sums neither overflow nor vanish.
#pragma once

#include <cmath>
#include <memory>
#include <string_view>

#include "calls/diagnosis.hpp"
#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

class Equation {
public:
    Equation() = default;
    Equation(const Equation&) = delete;
    Equation& operator=(const Equation&) = delete;
    virtual ~Equation() = default;

    // What the direct calculation comes to, and what it must come to.
    struct Trial {
        double value;  // NaN where it is refused
        double target;
        std::string_view name;  // "PV at this rate"
        [[nodiscard]] double miss() const { return value - target; }
    };
    [[nodiscard]] virtual Trial at(double rate) const = 0;
    // The sizes of terms that are known without a call, and those of all terms, added up.
    [[nodiscard]] virtual double known_terms(const Trial& trial) const { return std::abs(trial.target); }
    [[nodiscard]] virtual double all_terms(double rate) const = 0;
    // A figure of the above as an amount of the call.
    [[nodiscard]] virtual double amount(double counted) const { return counted; }
    // Whether an answer comes by a rule and not by a search, so that there is nothing to solve.
    [[nodiscard]] virtual bool is_rule(double answer) const;
};

// Of an answered call; null where the calculation does not search.
std::unique_ptr<const Equation> equation_of(const host::Evaluator& host, const catalogue::Calculation& calculation,
                                            Arguments arguments);

}  // namespace finance::calls
