// How long a depreciation is walked period by period.
#pragma once

#include "abi/conversions.hpp"
#include "abi/limits.hpp"

namespace finance {

// Short walks are not looked at for what may be passed over.
inline constexpr std::int64_t short_walk = 1000;

// Up to fifty million periods one by one, ten million where amounts are near the denormal numbers. Amounts that have been
// equal for a while are worth a jump (calendar/repeated_sum.hpp), which counts as so many periods as it takes the time of.
class LiteralSteps {
public:
    explicit LiteralSteps(double cost) : left_{longest_literal_walk(50'000'000 / walks_shortened, cost)} {}

    // False where the next period is one too many.
    bool next() {
        count_step();
        return --left_ >= 0;
    }

    // True after each 64 equal amounts in succession.
    bool are_equal(double d) {
        equal_ = same_bits(d, last_) ? equal_ + 1 : 1;
        last_ = d;
        if (equal_ < 64) return false;
        equal_ = 0;
        left_ -= 128;
        return true;
    }

private:
    std::int64_t left_;
    std::int32_t equal_ = 0;
    double last_ = 0.0;
};

}  // namespace finance
