#include "hostile/days.hpp"

#include <algorithm>
#include <limits>

namespace finance::hostile {

namespace {

constexpr double days_a_year = 365.2425;  // of the Gregorian calendar, on average
constexpr double months_a_year = 12.0;
constexpr double julian_day_0 = -2'436'935.0;
constexpr double year_0 = -1960.0 * days_a_year;
constexpr double last_day_of_9999 = 2'936'549.0;

// Where a calendar has its edges: day 0, the years about 0, the Julian day 0, the year -4800 that conversions count from.
constexpr std::array edges{0.0,
                           year_0,
                           year_0 - days_a_year,
                           year_0 + days_a_year,
                           julian_day_0,
                           -(4800.0 + 1960.0) * days_a_year,
                           last_day_of_9999};

// Day numbers that wrap themselves, or the products of a conversion to a date: by 4, by the 1461 days of 4 years, by the
// 146,097 of 400.
constexpr std::array wrapping_days{0x1p31,
                                   0x1p31,
                                   0x1p32,
                                   0x1p32,
                                   0x1p53,
                                   0x1p61,
                                   0x1p62,
                                   0x1p63,
                                   0x1p31 / 1461.0,
                                   0x1p63 / 1461.0,
                                   0x1p63 / 146'097.0};

// What lies `days` off: on the day, beside it, or some lifetimes or calendar cycles away.
double beside(Random& random, double days) {
    switch (random.below(4)) {
        case 0:
            return days;
        case 1:
            return days + random.sign();
        case 2:
            return days + random.sign() * random.log_uniform(1.0, 4e4);
        default:
            return days + random.sign() * random.log_uniform(1.0, 4e6);
    }
}

// Years of 32 bits, or as many as make months, or periods of so many a year, pass 32 bits; half and double of them.
double wrapping_years(Random& random, double periods_a_year) {
    const std::array units{1.0, 1.0, months_a_year, periods_a_year};
    const std::array wraps{0x1p30, 0x1p31, 0x1p31, 0x1p31, 0x1p32};
    return random.pick(wraps) / random.pick(units) * days_a_year;
}

double wrap(Random& random, double periods_a_year) {
    return random.sign() * (random.chance(0.7) ? wrapping_years(random, periods_a_year) : random.pick(wrapping_days));
}

double usual_frequency(Random& random) {
    constexpr std::array usual{1.0, 2.0, 4.0, 6.0, 12.0};
    return random.pick(usual);
}

// Beyond what 64 bits hold exactly, and beyond what a conversion accepts. Of both infinities one is a day.
double far_day(Random& random) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr std::array limits{-0x1p63, -0x1p63 + 1024.0, -1e18,   -1e17,     -1e16,   1e16,
                                0x1p53,  0x1p53 - 1.0,     -0x1p53, -infinite, infinite};
    return random.chance(0.5) ? random.pick(limits) : 0.0 - random.log_uniform(1e13, 9e18);
}

}  // namespace

double usual_day(Random& random) {
    constexpr double a_century = 36'525.0;
    return std::floor(random.uniform(-0.6 * a_century, 1.4 * a_century));
}

double corner(Random& random) {
    constexpr std::array years{0x1p32, 0x1p31, 0x1p31, 0x1p31, 0x1p30};
    if (random.chance(0.3)) return usual_day(random);
    const double months = random.chance(0.25) ? months_a_year : 1.0;
    return std::floor(beside(random, year_0 + random.sign() * random.pick(years) / months * days_a_year));
}

double day(Random& random) {
    const double choice = random.uniform();
    if (choice < 0.30) return usual_day(random);
    if (choice < 0.40) return std::floor(beside(random, random.pick(edges)));
    if (choice < 0.60) return std::floor(random.sign() * random.log_uniform(1.0, 1e16));
    if (choice < 0.95) return std::floor(beside(random, random.pick(edges) + wrap(random, usual_frequency(random))));
    return std::floor(far_day(random));
}

double near_distance(Random& random, double periods_a_year, double longest) {
    if (random.chance(0.35)) return std::floor(random.sign() * random.log_uniform(1.0, 2e4));
    const double period = days_a_year / std::clamp(periods_a_year, 1.0, months_a_year);
    return std::floor(random.sign() * random.log_uniform(1.0, longest) * period + random.uniform(-40.0, 40.0));
}

double distance(Random& random, double periods_a_year, double longest) {
    const double choice = random.uniform();
    if (choice < 0.70) return near_distance(random, periods_a_year, longest);
    if (choice < 0.95) return std::floor(beside(random, wrap(random, periods_a_year)));
    return std::floor(random.sign() * random.log_uniform(1.0, 1e18));
}

std::vector<double> days(Random& random, std::size_t size) {
    enum class Shape : std::uint8_t { equal, ascending, descending, later, any_order, alone };
    constexpr std::array shapes{Shape::equal, Shape::ascending, Shape::descending,
                                Shape::later, Shape::any_order, Shape::alone};
    const Shape shape = random.pick(shapes);
    const double first = day(random);
    const double step = std::floor(random.log_uniform(1.0, 1e5));
    const double reach = random.log_uniform(30.0, random.chance(0.9) ? 1e6 : 1e16);
    const auto days_after_first = [&](double i) {
        if (shape == Shape::ascending) return i * step;
        if (shape == Shape::descending) return 0.0 - i * step;
        if (shape == Shape::later) return random.uniform(0.0, reach);
        return shape == Shape::any_order ? random.uniform(-reach, reach) : 0.0;
    };
    std::vector<double> drawn;
    drawn.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        const double origin = shape == Shape::alone ? day(random) : first;
        drawn.push_back(origin + std::floor(days_after_first(static_cast<double>(i))));
    }
    return drawn;
}

}  // namespace finance::hostile
