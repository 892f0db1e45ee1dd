// exp, log and pow of lanes: side by side where the processor multiplies and adds at once and no lane is a special case,
// else one lane after the other, as a single call. Lanes of SSE2 ask for the former at run time.
#pragma once

#include <bit>
#include <cstddef>
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

// Lanes in memory, for functions of four: two lanes stand there twice.
template <typename Set>
class Fours {
public:
    explicit Fours(Lanes<Set> x) {
        for (std::size_t lane = 0; lane < places; lane += width) x.store(at_ + lane);
    }
    template <typename F>
    void each(F of_four) {
        for (std::size_t lane = 0; lane < places; lane += 4) of_four(at_ + lane);
    }
    // The four of these that stand where those do among theirs.
    [[nodiscard]] const double* beside(const Fours& others, const double* four) const {
        return at_ + (four - others.at_);
    }
    [[nodiscard]] Lanes<Set> lanes() const { return Lanes<Set>::load(at_); }

private:
    static constexpr std::size_t width = Set::width;
    static constexpr std::size_t places = width < 4 ? 4 : width;
    static_assert(places % width == 0 && places % 4 == 0);

    double at_[places];
};

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
        lanes::Fours<Set> fours{x};
        fours.each([](double* four) { fused_lanes::exp(four, four); });
        return fours.lanes();
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
        lanes::Fours<Set> fours{x};
        fours.each([](double* four) { fused_lanes::log(four, four); });
        return fours.lanes();
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

    [[nodiscard, gnu::always_inline]] N to(N y) const {
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
        lanes::Fours<Set> bases{x};
        const lanes::Fours<Set> exponents{y};
        bases.each([&](double* four) { fused_lanes::pow(four, exponents.beside(bases, four), four); });
        return bases.lanes();
    }
}

}  // namespace finance::elementary
