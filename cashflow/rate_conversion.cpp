// EFFECT, NOMINAL, FVSCHEDULE: one rate compounded, and many.
//
//  (1) Rates are not bounded. Below -1 the logarithm answers with a NaN, at -1 with an infinity; both are answers.
//  (2) EFFECT keeps the periods per year in 32 bits, NOMINAL in 64.
#include "abi/arguments.hpp"
#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"

namespace finance {

// (1 + rate/m)^m - 1
FINANCE_HANDLER(EFFECT) {
    Arguments in{context, result, count};
    double rate;
    std::int32_t periods_per_year;
    if (!in.number(1, rate) || !in.count(2, periods_per_year)) return in.status();
    const double m = periods_per_year;
    return in.answer(zexpm1(m * zln1px(rate / m)));
}

// m ((1 + rate)^(1/m) - 1)
FINANCE_HANDLER(NOMINAL) {
    Arguments in{context, result, count};
    double rate;
    std::int64_t periods_per_year;
    if (!in.number(1, rate) || !in.whole_from_1(2, periods_per_year)) return in.status();
    const auto m = static_cast<double>(periods_per_year);
    return in.answer(m * zexpm1(zln1px(rate) / m));
}

// principal (1 + rate 1) (1 + rate 2) ..
FINANCE_HANDLER(FVSCHEDULE) {
    Arguments in{context, result, count};
    double v;
    if (!in.number(1, v)) return in.status();
    for (int i = 2; in.given(i); ++i) {
        count_step();
        double rate;
        if (!in.number(i, rate)) return in.status();
        v = v * (1.0 + rate);
    }
    return in.answer(v);
}

}  // namespace finance
