// Many powers of one base, which have its logarithm in common: it is formed once. The bits are those of pow.
#pragma once

#include "elementary/functions.hpp"
#include "elementary/number.hpp"
#include "elementary/special_powers.hpp"

namespace finance::elementary {

// ln x in two doubles (elementary/long_logarithm.hpp)
struct LongLogarithm {
    double high;
    double low;
};

// Of a normal positive x; and x^y for a y that is a plain power.
namespace by_instruction {
LongLogarithm long_log(double x);
double pow_of_log(LongLogarithm l, double y);
}  // namespace by_instruction

namespace without_instruction {
LongLogarithm long_log(double x);
double pow_of_log(LongLogarithm l, double y);
}  // namespace without_instruction

class PowersOf {
public:
    // For few, to form the logarithm first takes longer than to form it in each.
    [[gnu::always_inline]] explicit PowersOf(double base, bool many = true) : base_{base} {
        if (!many || !is_normal_positive(bits_of(base))) return;
        logarithm_ = has_fused_multiply_add ? by_instruction::long_log(base) : without_instruction::long_log(base);
    }

    [[gnu::always_inline]] double operator()(double y) const {
        if (logarithm_.high == infinity || !is_plain_power(y)) [[unlikely]]
            return pow(base_, y);
        return has_fused_multiply_add ? by_instruction::pow_of_log(logarithm_, y)
                                      : without_instruction::pow_of_log(logarithm_, y);
    }

    // Infinite where it is not formed: for few, and where the base is not a normal positive number.
    [[nodiscard, gnu::always_inline]] LongLogarithm logarithm() const { return logarithm_; }

private:
    double base_;
    LongLogarithm logarithm_{infinity, 0.0};
};

}  // namespace finance::elementary
