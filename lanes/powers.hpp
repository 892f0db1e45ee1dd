// Many powers of one base, side by side.
#pragma once

#include "elementary/power.hpp"
#include "elementary/powers.hpp"
#include "lanes/lanes.hpp"

namespace finance {

template <typename Set>
class PowersInLanes {
public:
    using N = Lanes<Set>;

    PowersInLanes(double base, bool many) : single_{base, many} {}

    // Of exponents that are 0 or from 2^-65 to below 2^63 in size: only their product with the logarithm may be beyond
    // what is plain. Down to 0 it is not, the sum with 1 being 1.
    N operator()(N y) const {
        if constexpr (Set::has_fused) {
            const elementary::LongLogarithm l = single_.logarithm();
            if (l.high < elementary::infinity) [[likely]] {
                const elementary::Long<N> power = multiplied(y, elementary::Long<N>{N{l.high}, N{l.low}});
                if (all(abs(power.high) < 512.0)) [[likely]]
                    return exp_of_plain_long(power);
            }
        }
        return of_each(single_, y);
    }

    double operator()(double y) const { return single_(y); }

private:
    // Without fused multiply-add the usual way.
    [[gnu::noinline]] static N of_each(elementary::PowersOf single, N y) {
        return each([&single](double lane) { return single(lane); }, y);
    }

    elementary::PowersOf single_;
};

}  // namespace finance
