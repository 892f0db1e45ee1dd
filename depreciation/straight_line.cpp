// SLN and SYD: equal amounts, and amounts that fall by the sum of the years' digits.
//
//  (1) SLN's life is a number above 0; SYD's life and period are counts of at least 1.
//  (2) SYD does not compare the period with the life: beyond it amounts are zero or negative.
#include "abi/arguments.hpp"

namespace finance {

// (cost - salvage) / life
FINANCE_HANDLER(SLN) {
    Arguments in{context, result, count};
    double cost;
    double salvage;
    double life;
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.positive(3, life)) return in.status();
    return in.answer((cost - salvage) / life);
}

// (cost - salvage) ((L - P) + 1) / (L (1 + L) / 2)
FINANCE_HANDLER(SYD) {
    Arguments in{context, result, count};
    double cost;
    double salvage;
    std::int32_t life;
    std::int32_t period;
    if (!in.number(1, cost) || !in.number(2, salvage) || !in.count(3, life) || !in.count(4, period)) {
        return in.status();
    }
    const double L = life;
    const double P = period;
    return in.answer((cost - salvage) * ((L - P) + 1.0) * 2.0 / L / (1.0 + L));
}

}  // namespace finance
