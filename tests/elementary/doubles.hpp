// Draws of doubles for functions of one and two.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace finance::test {

inline const std::vector<double> edge_doubles = [] {
    std::vector<double> all;
    for (const double size : {0.0,
                              5e-324,
                              0x1p-1022,
                              0x1.fffffffffffffp-1023,
                              0x1p-65,
                              0x1p-54,
                              0x1p-53,
                              1e-17,
                              0.5,
                              0.9375,
                              std::nextafter(1.0, 0.0),
                              1.0,
                              std::nextafter(1.0, 2.0),
                              1.0645,
                              1.5,
                              2.0,
                              3.0,
                              255.0,
                              511.9,
                              512.0,
                              709.782712893384,
                              709.79,
                              745.133,
                              745.2,
                              1024.0,
                              1075.0,
                              0x1p52,
                              0x1p53 - 1.0,
                              0x1p53,
                              0x1p63,
                              1e300,
                              std::numeric_limits<double>::max(),
                              std::numeric_limits<double>::infinity()}) {
        all.insert(all.end(), {size, -size});
    }
    all.push_back(std::numeric_limits<double>::quiet_NaN());
    return all;
}();

class DoubleDraws {
public:
    explicit DoubleDraws(std::uint64_t seed) : engine_{seed} {}
    double any() { return std::bit_cast<double>(engine_()); }
    double positive() { return std::bit_cast<double>(engine_() >> 1); }
    double subnormal() { return std::bit_cast<double>(engine_() >> 12); }
    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }
    double whole(int low, int high) { return std::floor(between(low, high + 1.0)); }
    std::uint64_t index(std::uint64_t count) { return engine_() % count; }

    // Where the formulas change: all patterns, near 0, near 1, near overflow and underflow
    double exponent() {
        switch (index(6)) {
            case 0:
                return any();
            case 1:
                return between(-750.0, 750.0);
            case 2:
                return between(-1.0, 1.0);
            case 3:
                return between(-0x1p-6, 0x1p-6);
            case 4:
                return between(-745.2, -705.0);
            default:
                return between(700.0, 710.0);
        }
    }
    double number() {
        switch (index(5)) {
            case 0:
                return any();
            case 1:
                return between(0.9, 1.1);
            case 2:
                return between(0.0, 10.0);
            case 3:
                return subnormal();
            default:
                return positive();
        }
    }
    struct Pair {
        double x;
        double y;
    };
    Pair power() {
        switch (index(8)) {
            case 0:
                return {any(), any()};
            case 1:
                return {between(0.0, 2.0), between(-1000.0, 1000.0)};
            case 2:
                return {between(0.9, 1.1), between(-400.0, 400.0)};
            case 3:
                return {between(0.9995, 1.0005), between(-5e5, 5e5)};
            case 4:
                return {subnormal(), between(-1.0, 1.0)};
            case 5:
                return {any(), whole(-50, 50)};
            case 6:
                return {positive(), std::ldexp(between(-0.5, 0.5), static_cast<int>(index(140)) - 70)};
            default:
                return {between(0.0, 1.0), between(0.0, 1080.0)};
        }
    }

private:
    std::mt19937_64 engine_;
};

// NaN is NaN, whatever its digits.
inline bool same_answer(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

}  // namespace finance::test
