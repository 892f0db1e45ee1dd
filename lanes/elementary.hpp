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

// ---- With fused multiply-add: side by side. One lane after the other, where one is a special case: not by the inline
// functions, which the linker might share with other files.

template <typename Set, bool has_fused>
struct Functions {
    using N = Lanes<Set>;

    [[gnu::always_inline]] static N exp(N x) {
        if (!all_sizes_between(x, 0x1p-54, 512.0)) [[unlikely]]
            return exp_of_each(x);
        return scaled(exponential(reduced(x)));
    }
    [[gnu::always_inline]] static N log(N x) {
        if (!all_normal_positive(x)) [[unlikely]]
            return log_of_each(x);
        return choose(
            is_near_1(x), [&] { return log_near_1(x).sum(); },
            [&] { return log_of_parts(parted<N>(x.bits(), first_part)).sum(); });
    }

    // Powers of one base in each lane, whose logarithm is formed once.
    class Powers {
    public:
        [[gnu::always_inline]] explicit Powers(N base) : base_{base}, is_usual_{all_normal_positive(base)} {
            if (is_usual_) logarithm_ = long_log<N>(base.bits());
        }
        [[nodiscard, gnu::always_inline]] N to(N y) const {
            if (!is_usual_ || !all_sizes_between(y, 0x1p-65, 0x1p63)) [[unlikely]]
                return pow_of_each(base_, y);
            const Long<N> power = multiplied(y, logarithm_);
            if (!all_sizes_between(power.high, 0x1p-54, 512.0)) [[unlikely]]
                return pow_of_each(base_, y);
            return exp_of_plain_long(power);
        }

    private:
        N base_;
        bool is_usual_;
        Long<N> logarithm_;
    };

private:
    [[gnu::cold, gnu::noinline]] static N exp_of_each(N x) { return each(by_instruction::exp, x); }
    [[gnu::cold, gnu::noinline]] static N log_of_each(N x) { return each(by_instruction::log, x); }
    [[gnu::cold, gnu::noinline]] static N pow_of_each(N x, N y) { return each(by_instruction::pow, x, y); }
};

// ---- Without it: those of four by the processor that has it nonetheless, else one lane after the other.

template <typename Set>
struct Functions<Set, false> {
    using N = Lanes<Set>;

    static N exp(N x) {
        if (!has_fused_multiply_add) return exp_of_each(x);
        Fours<Set> fours{x};
        fours.each([](double* four) { fused_lanes::exp(four, four); });
        return fours.lanes();
    }
    static N log(N x) {
        if (!has_fused_multiply_add) return log_of_each(x);
        Fours<Set> fours{x};
        fours.each([](double* four) { fused_lanes::log(four, four); });
        return fours.lanes();
    }

    class Powers {
    public:
        explicit Powers(N base) : base_{base} {}
        [[nodiscard]] N to(N y) const {
            if (!has_fused_multiply_add) return pow_of_each(base_, y);
            Fours<Set> bases{base_};
            const Fours<Set> exponents{y};
            bases.each([&](double* four) { fused_lanes::pow(four, exponents.beside(bases, four), four); });
            return bases.lanes();
        }

    private:
        N base_;
    };

private:
    [[gnu::cold, gnu::noinline]] static N exp_of_each(N x) { return each(without_instruction::exp, x); }
    [[gnu::cold, gnu::noinline]] static N log_of_each(N x) { return each(without_instruction::log, x); }
    [[gnu::cold, gnu::noinline]] static N pow_of_each(N x, N y) { return each(without_instruction::pow, x, y); }
};

template <typename Set>
using FunctionsOf = Functions<Set, Set::has_fused>;

}  // namespace lanes

template <typename Set>
using LanePowers = typename lanes::FunctionsOf<Set>::Powers;

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> exp(Lanes<Set> x) {
    return lanes::FunctionsOf<Set>::exp(x);
}

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> log(Lanes<Set> x) {
    return lanes::FunctionsOf<Set>::log(x);
}

template <typename Set>
[[gnu::always_inline]] inline Lanes<Set> pow(Lanes<Set> x, Lanes<Set> y) {
    return LanePowers<Set>{x}.to(y);
}

}  // namespace finance::elementary
