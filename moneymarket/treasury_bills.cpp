// TBILLEQ, TBILLPRICE, TBILLYIELD: discount bills, quoted on 360 days.
//
//  (1) Dates are plain day numbers above 0; they need not be whole, and the term is not bounded.
//  (2) Maturity after settlement: TBILLEQ looks at it after its rate, TBILLYIELD before its price, TBILLPRICE never.
//  (3) D is the term in days.
#include <cmath>

#include "abi/arguments.hpp"

namespace finance {

namespace {

// A term above half a year: the yield that a coupon after half a year would make equivalent. False where the root has
// none.
bool long_bill_yield(double r, double D, double& yield) {
    const double t = D / 365.0;
    const double q = r * D / (r * D - 360.0);
    const double discriminant = t * t - (2.0 * t - 1.0) * q;
    if (discriminant < 0.0) return false;
    yield = (std::sqrt(discriminant) - t) / (t - 0.5);
    return true;
}

}  // namespace

// 365 r / (360 - r D) for up to 182 days. Without a root the result is left as the caller had it.
FINANCE_HANDLER(TBILLEQ) {
    constexpr double longest_short_bill = 182.0;
    Arguments in{context, result, count};
    double settlement;
    double maturity;
    double r;
    if (!in.positive(1, settlement) || !in.positive(2, maturity) || !in.positive(3, r)) return in.status();
    if (settlement >= maturity) return in.invalid(2);
    const double D = maturity - settlement;
    if (D <= longest_short_bill) return in.answer(365.0 * r / (360.0 - r * D));
    double yield;
    return long_bill_yield(r, D, yield) ? in.answer(yield) : STATUS_INVALID_ARGUMENT;
}

// (1 - r D / 360) 100
FINANCE_HANDLER(TBILLPRICE) {
    Arguments in{context, result, count};
    double settlement;
    double maturity;
    double r;
    if (!in.positive(1, settlement) || !in.positive(2, maturity) || !in.positive(3, r)) return in.status();
    const double D = maturity - settlement;
    return in.answer((1.0 - r * D / 360.0) * 100.0);
}

// (100 - p) / p 360 / D
FINANCE_HANDLER(TBILLYIELD) {
    Arguments in{context, result, count};
    double settlement;
    double maturity;
    double p;
    if (!in.positive(1, settlement) || !in.positive(2, maturity)) return in.status();
    if (settlement >= maturity) return in.invalid(2);
    if (!in.positive(3, p)) return in.status();
    const double D = maturity - settlement;
    return in.answer((100.0 - p) / p * 360.0 / D);
}

}  // namespace finance
