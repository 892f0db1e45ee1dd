#include "hostile/flows.hpp"

#include <algorithm>
#include <functional>
#include <limits>

#include "hostile/scalars.hpp"

namespace finance::hostile {

namespace {

using Values = std::vector<double>;

Values made(std::size_t size, const std::function<double(std::size_t)>& value) {
    Values values;
    values.reserve(size);
    for (std::size_t i = 0; i < size; ++i) values.push_back(value(i));
    return values;
}

// An outlay, then what comes back: much, enough, or next to nothing of it.
Values outlay(Random& random, std::size_t size) {
    const double paid = random.log_uniform(1.0, 1e6);
    const double back = random.chance(0.5) ? 2.0 * paid / static_cast<double>(size) : random.log_uniform(1e-12, 1e12);
    Values values = made(size, [&](std::size_t) { return back * random.uniform(0.5, 1.5); });
    if (!values.empty()) values.front() = 0.0 - paid;
    return values;
}

// Of one sign, the last perhaps of the other.
Values one_sign(Random& random, std::size_t size) {
    const double scale = random.sign() * random.log_uniform(1e-9, 1e9);
    Values values = made(size, [&](std::size_t) { return scale * random.uniform(); });
    if (!values.empty() && random.chance(0.5)) values.back() = 0.0 - values.back() * random.log_uniform(1e-3, 1e9);
    return values;
}

// c q^k, the sign turned after each so many: what a discount factor of 1 / q makes equal.
Values geometric(Random& random, std::size_t size) {
    const double q = 1.0 + random.sign() * random.log_uniform(1e-9, 0.9);
    const std::size_t turned_after = 1 + random.below(std::max<std::size_t>(size, 1));
    double value = random.log_uniform(1e-3, 1e6);
    return made(size, [&](std::size_t i) {
        value *= q;
        return i / turned_after % 2 == 0 ? value : 0.0 - value;
    });
}

// Nearly all 0.
Values sparse(Random& random, std::size_t size) {
    const double share = random.uniform(1.0, 8.0) / static_cast<double>(std::max<std::size_t>(size, 1));
    return made(
        size, [&](std::size_t) { return random.chance(share) ? random.sign() * random.log_uniform(1e-3, 1e6) : 0.0; });
}

Values any_size(Random& random, std::size_t size) {
    const double largest = random.log_uniform(1e-8, 1e300);
    const double smallest = random.log_uniform(1e-320, largest);
    return made(size, [&](std::size_t) { return random.sign() * random.log_uniform(smallest, largest); });
}

Values alternating(Random& random, std::size_t size) {
    const double unevenness = random.log_uniform(1e-16, 1.0);
    return made(size, [&](std::size_t i) { return (i % 2 == 0 ? 1.0 : -1.0) + unevenness * random.uniform(); });
}

Values random_signs(Random& random, std::size_t size) {
    return made(size, [&](std::size_t) { return std::round(random.uniform(-1e4, 1e4)) / 100.0; });
}

void put_something_odd(Random& random, Values& values) {
    constexpr std::array odd{0.0, 5e-324, 1e-308, -1e-9, 1e300, -1e302, std::numeric_limits<double>::infinity()};
    if (!values.empty()) values[random.below(values.size())] = random.pick(odd);
}

}  // namespace

std::vector<double> flows(Random& random, std::size_t size) {
    constexpr std::array shapes{outlay, one_sign, geometric, sparse, any_size, alternating, random_signs};
    Values values = random.pick(shapes)(random, size);
    if (random.chance(0.1)) put_something_odd(random, values);
    return values;
}

std::vector<double> rates(Random& random, std::size_t size) {
    const double base = random.chance(0.5) ? rate(random) : -1.0 + random.log_uniform(1e-16, 2.0);
    if (random.chance(0.3)) return made(size, [&](std::size_t) { return rate(random); });
    return made(size, [&](std::size_t) { return base * random.uniform(0.5, 1.5); });
}

void change(Random& random, std::vector<double>& values) {
    if (values.empty()) return;
    const std::size_t first = random.below(values.size());
    const std::size_t last = first + random.below(values.size() - first) + 1;
    const auto begin = values.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = values.begin() + static_cast<std::ptrdiff_t>(last);
    switch (random.below(5)) {
        case 0:
            values[first] = beside(random, values[first]);
            break;
        case 1:
            std::transform(begin, end, begin, std::negate{});
            break;
        case 2:
            std::transform(begin, end, begin, [scale = random.log_uniform(1e-9, 1e9)](double x) { return scale * x; });
            break;
        case 3:
            std::reverse(begin, end);
            break;
        default:
            put_something_odd(random, values);
            break;
    }
}

}  // namespace finance::hostile
