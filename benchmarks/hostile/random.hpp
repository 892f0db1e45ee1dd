// Random numbers that are the same everywhere: what a seed draws does not depend on the standard library.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace finance::hostile {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_{seed} {}

    // splitmix64, public domain (Vigna): a counter whose bits are mixed.
    std::uint64_t bits() {
        std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }

    double uniform() { return static_cast<double>(bits() >> 11U) * 0x1p-53; }  // 0 .. 1, without 1
    double uniform(double least, double most) { return least + uniform() * (most - least); }
    bool chance(double p) { return uniform() < p; }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(bits() % n); }

    // Each power of ten equally likely; both limits above 0.
    double log_uniform(double least, double most) { return std::exp(uniform(std::log(least), std::log(most))); }
    double sign() { return chance(0.5) ? 1.0 : -1.0; }

    template <class Value, std::size_t n>
    Value pick(const std::array<Value, n>& values) {
        return values[below(n)];
    }

private:
    std::uint64_t state_;
};

}  // namespace finance::hostile
