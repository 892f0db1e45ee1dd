// NPV and MIRR: flows at the ends of equal periods.
//
//  (1) Flows are read from the last to the first: of several faulty ones the last is named.
//  (2) NPV refuses a rate of 0 and below. Without flows it is 0.
//  (3) MIRR has its rates at the end, finance rate then reinvestment rate. The reinvestment rate is examined first.
#include <cmath>

#include "abi/arguments.hpp"
#include "abi/steps.hpp"
#include "cashflow/numeric_kernels.hpp"
#include "elementary/functions.hpp"

namespace finance {

// rate, flow 1, flow 2, ..: sum of v_i d^i, i from 1, with d = 1 / (1 + rate), by Horner's rule
FINANCE_HANDLER(NPV) {
    Arguments in{context, result, count};
    double rate;
    if (!in.positive(1, rate)) return in.status();
    const double d = 1.0 / (rate + 1.0);
    double s = 0.0;
    for (auto i = static_cast<int>(count) - 1; i >= 2; --i) {
        count_step();
        double v;
        if (!in.number(i, v)) return in.status();
        s = s * d + v;
    }
    return in.answer(d * s);
}

namespace {

// The flows of one sign, discounted to the first of them.
struct SignedWorth {
    double P;  // of flows >= 0, at the reinvestment rate
    double N;  // of flows < 0, at the finance rate
    int negatives;
};

bool read_signed_worth(Arguments& in, int m, double dR, double dF, SignedWorth& worth) {
    for (int i = m; i >= 1; --i) {
        count_step();
        double v;
        if (!in.number(i, v)) return false;
        worth.P = worth.P * dR;
        worth.N = worth.N * dF;
        if (v >= 0.0) {
            worth.P = worth.P + v;
        } else {
            worth.N = worth.N + v;
            ++worth.negatives;
        }
    }
    return true;
}

}  // namespace

// flow 1, .., flow m, finance rate F, reinvestment rate R:
//   (-dR P (1+R)^m / (dF N (1+F)))^(1/(m-1)) - 1
// Without a finance rate, the call being the reinvestment rate alone, there is no answer.
FINANCE_HANDLER(MIRR) {
    Arguments in{context, result, count};
    const auto last = static_cast<int>(count) - 1;
    const int m = last - 2;
    double R;
    double F;
    if (!in.positive(last, R)) return in.status();
    if (m < 0) return in.fail();
    if (!in.positive(last - 1, F)) return in.status();
    const double dR = 1.0 / (1.0 + R);
    const double dF = 1.0 / (1.0 + F);
    SignedWorth worth{};
    if (!read_signed_worth(in, m, dR, dF, worth)) return in.status();
    if (worth.negatives == 0 || dF * worth.N == 0.0) return in.fail();
    const double q = (0.0 - dR * worth.P) / (dF * worth.N);
    if (q <= 0.0) return in.fail();
    const double g = zexpm1(zln1px(R) * m);
    return in.answer(zexpm1(elementary::log(q * (1.0 + g) / (1.0 + F)) / (static_cast<double>(m) - 1.0)));
}

}  // namespace finance
