#include "hostile/scalars.hpp"

#include <limits>

namespace finance::hostile {

namespace {

constexpr double least = std::numeric_limits<double>::denorm_min();
constexpr double most = std::numeric_limits<double>::max();
constexpr double infinite = std::numeric_limits<double>::infinity();

double neighbour_of_a_power_of_2(Random& random, int exponents) {
    const double power = std::ldexp(1.0, static_cast<int>(random.below(static_cast<std::size_t>(exponents))));
    const double side = random.chance(0.5) ? infinite : 0.0;
    return random.chance(0.3) ? power : std::nextafter(power, side);
}

// Lengths at which literal loops have their limits, and widths theirs; months of 32 bits are 12 times years.
double count_at_a_limit(Random& random) {
    constexpr std::array limits{1e6, 1e7, 1e8, 1e9, 0x1p31 / 12.0, 0x1p31, 0x1p31, 0x1p32, 0x1p32 / 12.0, 0x1p53};
    return std::floor(random.pick(limits)) + std::floor(random.uniform(-3.0, 4.0));
}

}  // namespace

double count(Random& random, double longest) {
    if (random.chance(0.05)) return 0.0 - std::floor(random.log_uniform(1.0, longest));
    if (longest >= 0x1p31 && random.chance(0.2)) return count_at_a_limit(random);
    return std::floor(random.log_uniform(1.0, longest));
}

double frequency(Random& random, bool any) {
    constexpr std::array with_months{1.0, 2.0, 4.0, 6.0, 12.0};
    constexpr std::array few{3.0, 5.0, 7.0, 8.0, 24.0, 365.0};
    constexpr std::array without{3.0, 24.0, 365.0, 1e6, 0x1p30, 0x1p31 - 2.0, 0x1p31 - 1.0, 0x1p32 + 12.0};
    if (random.chance(0.8)) return random.pick(with_months);
    if (!any) return random.pick(few);
    return random.chance(0.7) ? random.pick(without) : std::floor(random.log_uniform(1.0, 0x1p31));
}

double rate(Random& random) {
    constexpr std::array telling{0.0,  least, 1e-308, 1e-300, 1e-170, 1e-17, 1e-12, 1e-9, 1e-8,
                                 1e-7, 0.1,   1.0,    2.0,    1e5,    1e17,  1e300, most, infinite};
    const double choice = random.uniform();
    if (choice < 0.25) return std::round(random.uniform(1.0, 3000.0)) / 1e4;
    if (choice < 0.55) return random.log_uniform(least, 1.0);
    if (choice < 0.62) return random.log_uniform(1e-12, 1e-3);
    if (choice < 0.70) return random.log_uniform(1.0, 1e300);
    if (choice < 0.80) return random.pick(telling);
    if (choice < 0.92) return 1.0 / neighbour_of_a_power_of_2(random, 64);
    return 0.0 - (random.chance(0.5) ? random.uniform() : random.log_uniform(1e-17, 20.0));
}

double amount(Random& random) {
    constexpr std::array telling{0.0, least, 1e-308, 1e-300, 1e-8, 1e17, 1e18, 1e300, most, infinite};
    constexpr std::array everyday{100.0, 1000.0, 2e5};
    const double sign = random.chance(0.25) ? -1.0 : 1.0;
    const double choice = random.uniform();
    if (choice < 0.30) return sign * random.pick(everyday);
    if (choice < 0.45) return sign * 100.0 * (1.0 + random.sign() * random.log_uniform(1e-16, 0.5));
    if (choice < 0.70) return sign * random.log_uniform(1e-4, 1e8);
    if (choice < 0.85) return sign * random.log_uniform(least, 1e300);
    if (choice < 0.90) return sign * random.pick(telling);
    return sign * neighbour_of_a_power_of_2(random, 80);
}

double factor(Random& random) {
    constexpr std::array telling{0.0, least, 1e-9, 1.0, 1.5, 2.0, 1e7, 0x1p31, 1e300, infinite};
    if (random.chance(0.4)) return random.pick(telling);
    return random.chance(0.5) ? random.log_uniform(1e-9, 1e9) : random.log_uniform(least, 1.0);
}

double basis(Random& random) {
    return random.chance(0.02) ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(random.below(5));
}

double beside(Random& random, double x) {
    switch (random.below(6)) {
        case 0:
            return std::nextafter(x, infinite);
        case 1:
            return std::nextafter(x, -infinite);
        case 2:
            return x * 2.0;
        case 3:
            return x / 2.0;
        case 4:
            return x * (1.0 + random.sign() * random.log_uniform(1e-15, 0.5));
        default:
            return random.chance(0.2) ? 0.0 - x : x * random.log_uniform(0.1, 10.0);
    }
}

double whole_beside(Random& random, double x) {
    switch (random.below(5)) {
        case 0:
            return x + 1.0;
        case 1:
            return x - 1.0;
        case 2:
            return x * 2.0;
        case 3:
            return std::trunc(x / 2.0);
        default:
            return std::trunc(x * (1.0 + random.sign() * random.log_uniform(1e-6, 0.5)));
    }
}

}  // namespace finance::hostile
