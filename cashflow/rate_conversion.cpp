// The conversions of rate_conversion.hpp for one call; and FVSCHEDULE, many rates compounded.
#include "cashflow/rate_conversion.hpp"

#include "abi/steps.hpp"

namespace finance {

FINANCE_HANDLER_OF(EFFECT)
FINANCE_HANDLER_OF(NOMINAL)

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
