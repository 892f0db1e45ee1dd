// exp, log and pow of lanes: side by side where the processor multiplies and adds at once and no lane is a special case,
// else one lane after the other, as a single call.
#pragma once

#include <cstdint>

#include "elementary/functions.hpp"
#include "elementary/logarithm.hpp"
#include "elementary/long_logarithm.hpp"
#include "elementary/power.hpp"
#include "lanes/lanes.hpp"

namespace finance::elementary {

namespace lanes {

template <typename Set>
typename Set::Words words(std::uint64_t word) {
    return typename Set::Words{} + word;
}

// True where first <= field < end of all lanes' exponent fields.
template <typename Set>
bool all_fields_between(Lanes<Set> x, std::uint64_t first, std::uint64_t end) {
    using Truth = LaneTruth<Set>;
    const typename Set::Words field = x.bits() >> 52 & words<Set>(0x7FF);
    return all(Truth{typename Set::Words(field >= words<Set>(first))} &
               Truth{typename Set::Words(field < words<Set>(end))});
}

// By comparisons of doubles: of positive ones the bits ascend with them.
template <typename Set>
LaneTruth<Set> is_near_1(Lanes<Set> x) {
    return (x >= Lanes<Set>{std::bit_cast<double>(near_1)}) & (x < Lanes<Set>{std::bit_cast<double>(near_1_end)});
}

template <typename Set>
bool all_normal_positive(Lanes<Set> x) {
    return all((x >= Lanes<Set>{0x1p-1022}) & (x < Lanes<Set>{infinity}));
}

// One lane after the other, as a single call.
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> exp_of_each(Lanes<Set> x) {
    return each([](double lane) { return exp(lane); }, x);
}
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> log_of_each(Lanes<Set> x) {
    return each([](double lane) { return log(lane); }, x);
}
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> pow_of_each(Lanes<Set> x, Lanes<Set> y) {
    return each([](double base, double exponent) { return pow(base, exponent); }, x, y);
}

}  // namespace lanes

template <typename Set>
Lanes<Set> exp(Lanes<Set> x) {
    if constexpr (!Set::has_fused) {
        return each([](double lane) { return exp(lane); }, x);
    } else {
        if (lanes::all_fields_between(x, exponent_field(0x1p-54), exponent_field(512.0))) [[likely]]
            return scaled(exponential(reduced(x)));
        return lanes::exp_of_each(x);
    }
}

template <typename Set>
Lanes<Set> log(Lanes<Set> x) {
    if constexpr (!Set::has_fused) {
        return each([](double lane) { return log(lane); }, x);
    } else {
        if (!lanes::all_normal_positive(x)) [[unlikely]]
            return lanes::log_of_each(x);
        return choose(
            lanes::is_near_1(x), [&] { return log_near_1(x); },
            [&] { return log_of_parts(parted<Lanes<Set>>(x.bits(), first_part)); });
    }
}

template <typename Set>
Lanes<Set> pow(Lanes<Set> x, Lanes<Set> y) {
    using N = Lanes<Set>;
    if constexpr (!Set::has_fused) {
        return each([](double base, double exponent) { return pow(base, exponent); }, x, y);
    } else {
        const bool usual = lanes::all_normal_positive(x) &&
                           lanes::all_fields_between(y, exponent_field(0x1p-65), exponent_field(0x1p63));
        if (!usual) [[unlikely]]
            return lanes::pow_of_each(x, y);
        const Long<N> l = long_log<N>(x.bits());
        const N high = y * l.high;
        if (!lanes::all_fields_between(high, exponent_field(0x1p-54), exponent_field(512.0))) [[unlikely]]
            return lanes::pow_of_each(x, y);
        const N low = fused(y, l.low, fused(y, l.high, N{0.0} - high));
        Reduced<N> to = reduced(high);
        to.r = to.r + low;
        return scaled(exponential(to));
    }
}

}  // namespace finance::elementary
