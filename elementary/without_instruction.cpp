// For processors without a fused multiply-add.
//
//  (1) First roughly, with products and sums that are rounded twice where that shows in a result's last sum alone: by less
//      than 2^-58 of it. The worst of 4e7 draws each is 2^-59.8 in powers, 2^-60.4 in logarithms near 1 and 2^-63 in
//      others; adding up all roundings gives 2^-59.5, 2^-60 and 2^-62.
//  (2) Where so little cannot change what that sum is rounded to, it is the answer. Elsewhere, a few times in a hundred,
//      and in all rare cases, each multiply-add is made exactly.
#include <cmath>
#include <limits>

#include "elementary/error_free.hpp"
#include "elementary/exact_fused.hpp"
#include "elementary/functions.hpp"
#include "elementary/power.hpp"
#include "elementary/powers.hpp"

namespace finance::elementary::without_instruction {

namespace {

struct Exactly {
    static double fused(double a, double b, double c) { return exact_fused(a, b, c); }
    static double residue(double a, double b, double c) { return exact_fused(a, b, c); }
};
using Exact = Number<Exactly>;

struct Roughly {
    static double fused(double a, double b, double c) { return a * b + c; }
    static double residue(double a, double b, double c) {
        const Rounded product = two_product(a, b);
        return product.value + c + product.error;
    }
};
using Rough = Number<Roughly>;

constexpr double uncertain = std::numeric_limits<double>::quiet_NaN();

double rounded_if_certain(Long<Rough> x) {
    constexpr double slack = 0x1p-58;  // of the sum: what its terms may be off together
    const double sum = x.sum().value;
    const double error = x.high.value - sum + x.low.value;
    const double off = sum * slack;
    return sum + (error + off) == sum && sum + (error - off) == sum ? sum : uncertain;
}

double rounded_if_certain(const Exponential<Rough>& e) {
    const Rough scale = Rough::of_bits(e.scale);
    return rounded_if_certain({scale, scale * e.rest});
}

double exp_if_certain(Long<Rough> x) {
    return is_plain_exponent(exponent_field(x.high.value)) ? rounded_if_certain(exponential_of_long(x)) : uncertain;
}

}  // namespace

double exp(double x) {
    const double power = exp_if_certain({{x}, {0.0}});
    return std::isnan(power) ? elementary::exp<Exact>(x) : power;
}

double expm1(double x) { return elementary::expm1<Exact>(x); }
double log1p(double x) { return elementary::log1p<Exact>(x); }

double log(double x) {
    const std::uint64_t bits = bits_of(x);
    double logarithm = uncertain;
    if (bits - near_1 < near_1_end - near_1) {
        logarithm = rounded_if_certain(log_near_1(Rough{x}));
    } else if (is_normal_positive(bits)) {
        logarithm = rounded_if_certain(log_of_parts(parted<Rough>(bits, first_part)));
    }
    return std::isnan(logarithm) ? elementary::log<Exact>(x) : logarithm;
}

double pow(double x, double y) {
    const bool is_plain = is_normal_positive(bits_of(x)) && is_plain_power(y);
    const double power =
        is_plain ? exp_if_certain(multiplied(Rough{y}, elementary::long_log<Rough>(bits_of(x)))) : uncertain;
    return std::isnan(power) ? elementary::pow<Exact>(x, y) : power;
}

LongLogarithm long_log(double x) {
    const Long<Exact> l = elementary::long_log<Exact>(bits_of(x));
    return {l.high.value, l.low.value};
}

double pow_of_log(LongLogarithm l, double y) {
    const double power = exp_if_certain(multiplied(Rough{y}, Long<Rough>{{l.high}, {l.low}}));
    return std::isnan(power) ? elementary::pow_of_log<Exact>({{l.high}, {l.low}}, y) : power;
}

double fused(double a, double b, double c) { return exact_fused(a, b, c); }

}  // namespace finance::elementary::without_instruction
