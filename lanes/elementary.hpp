// exp, log and pow of lanes: side by side where the processor multiplies and adds at once and no lane is a special case,
// else one lane after the other, as a single call. Lanes of SSE2 ask for the former at run time.
#pragma once

#include <bit>
#include <cstdint>

#include "elementary/functions.hpp"
#include "elementary/logarithm.hpp"
#include "elementary/long_logarithm.hpp"
#include "elementary/power.hpp"
#include "lanes/fused_lanes.hpp"
#include "lanes/lanes.hpp"

namespace finance::elementary {

namespace lanes {

// True where lowest <= |x| < end in all lanes: of powers of 2, as their exponents' fields say.
template <typename Set>
bool all_sizes_between(Lanes<Set> x, double lowest, double end) {
    const Lanes<Set> size = abs(x);
    return all((size >= lowest) & (size < end));
}

// Of positive doubles the bits ascend with them.
template <typename Set>
LaneTruth<Set> is_near_1(Lanes<Set> x) {
    return (x >= Lanes<Set>{std::bit_cast<double>(near_1)}) & (x < Lanes<Set>{std::bit_cast<double>(near_1_end)});
}

template <typename Set>
bool all_normal_positive(Lanes<Set> x) {
    return all((x >= Lanes<Set>{0x1p-1022}) & (x < Lanes<Set>{infinity}));
}

// One lane after the other, as a single call: not by the inline functions, which the linker might share with other files.
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> exp_of_each(Lanes<Set> x) {
    return each(Set::has_fused ? by_instruction::exp : in_whole_numbers::exp, x);
}
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> log_of_each(Lanes<Set> x) {
    return each(Set::has_fused ? by_instruction::log : in_whole_numbers::log, x);
}
template <typename Set>
[[gnu::cold, gnu::noinline]] Lanes<Set> pow_of_each(Lanes<Set> x, Lanes<Set> y) {
    return each(Set::has_fused ? by_instruction::pow : in_whole_numbers::pow, x, y);
}

}  // namespace lanes

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> exp(Lanes<Set> x) {
    if constexpr (!Set::has_fused) {
        if (!has_fused_multiply_add) return lanes::exp_of_each(x);
        double four[Set::width];
        x.store(four);
        for (int lane = 0; lane < Set::width; lane += 4) fused_lanes::exp(four + lane, four + lane);
        return Lanes<Set>::load(four);
    } else {
        if (lanes::all_sizes_between(x, 0x1p-54, 512.0)) [[likely]]
            return scaled(exponential(reduced(x)));
        return lanes::exp_of_each(x);
    }
}

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> log(Lanes<Set> x) {
    if constexpr (!Set::has_fused) {
        if (!has_fused_multiply_add) return lanes::log_of_each(x);
        double four[Set::width];
        x.store(four);
        for (int lane = 0; lane < Set::width; lane += 4) fused_lanes::log(four + lane, four + lane);
        return Lanes<Set>::load(four);
    } else {
        if (!lanes::all_normal_positive(x)) [[unlikely]]
            return lanes::log_of_each(x);
        return choose(
            lanes::is_near_1(x), [&] { return log_near_1(x); },
            [&] { return log_of_parts(parted<Lanes<Set>>(x.bits(), first_part)); });
    }
}

// Powers of one base in each lane, whose logarithm is formed once.
template <typename Set>
class LanePowers {
public:
    using N = Lanes<Set>;

    [[gnu::always_inline]] explicit LanePowers(N base) : base_{base} {
        if constexpr (Set::has_fused) {
            is_usual_ = lanes::all_normal_positive(base);
            if (is_usual_) logarithm_ = long_log<N>(base.bits());
        }
    }

    [[gnu::always_inline]] N to(N y) const {
        if constexpr (!Set::has_fused) {
            return pow(base_, y);
        } else {
            if (!is_usual_ || !lanes::all_sizes_between(y, 0x1p-65, 0x1p63)) [[unlikely]]
                return lanes::pow_of_each(base_, y);
            const Long<N> power = multiplied(y, logarithm_);
            if (!lanes::all_sizes_between(power.high, 0x1p-54, 512.0)) [[unlikely]]
                return lanes::pow_of_each(base_, y);
            return exp_of_plain_long(power);
        }
    }

private:
    N base_;
    bool is_usual_ = false;
    Long<N> logarithm_;
};

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> pow(Lanes<Set> x, Lanes<Set> y) {
    if constexpr (Set::has_fused) {
        return LanePowers<Set>{x}.to(y);
    } else {
        if (!has_fused_multiply_add) return lanes::pow_of_each(x, y);
        double bases[Set::width];
        double exponents[Set::width];
        x.store(bases);
        y.store(exponents);
        for (int lane = 0; lane < Set::width; lane += 4) {
            fused_lanes::pow(bases + lane, exponents + lane, bases + lane);
        }
        return Lanes<Set>::load(bases);
    }
}

}  // namespace finance::elementary
