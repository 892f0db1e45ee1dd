// A declining balance after any number of periods.
#pragma once

#include <cmath>
#include <cstdint>

#include "abi/steps.hpp"
#include "depreciation/twofold.hpp"

namespace finance {

// What i periods leave of 1, and what they take, when each takes q = factor / life of the rest. Above q = 1 a period takes
// more than there is, and the sign of what is left alternates.
struct Share {
    Twofold left;   // (1 - q)^i
    Twofold taken;  // 1 - left, which keeps the digits of a small q
};

class Decline {
public:
    Decline(double factor, double life)
        : q_{Twofold{factor, 0.0} / Twofold{life, 0.0}}, one_{Twofold{1.0, 0.0} - q_, q_} {}

    [[nodiscard]] Twofold q() const { return q_; }

    // By squaring. Of i + j periods is left the product, and taken what i take and j of the rest.
    // Error  2^-102 i of both, relative, at the most
    [[nodiscard]] Share after(std::int64_t i) const {
        Share all{{1.0, 0.0}, {0.0, 0.0}};
        for (Share power = one_; i > 0; i /= 2, power = both(power, power)) {
            count_step();
            if (i % 2 != 0) all = both(all, power);
        }
        return all;
    }

private:
    static Share both(const Share& a, const Share& b) {
        const Twofold left = a.left * b.left;
        if (!std::isfinite(left.high)) return {left, {-left.high, 0.0}};
        return {left, a.taken + a.left * b.taken};
    }

    Twofold q_;
    Share one_;
};

}  // namespace finance
