// Comparisons of what the module forms at once with what a literal walk forms, at drawn places and lengths.
#pragma once

#include <string>

#include "host/embedded_host.hpp"
#include "hostile/random.hpp"

namespace finance::closed {

// One comparison: of bits (any error is a fault) or within a bound.
struct Compared {
    bool agrees = true;
    double error = 0.0;     // relative, where bits are not promised
    std::string text = {};  // of a comparison that does not agree: its arguments and both answers
};

// How long walks are, in steps, and the module as it is shipped.
struct Setting {
    hostile::Random& random;
    double longest;
    const host::EmbeddedHost& shipped;
};

using Compare = Compared (*)(const Setting& setting);

// ---- Walks over periods, in bits (walks.cpp)
Compared sums_of_proportions(const Setting& setting);
Compared coupon_lists(const Setting& setting);
Compared repeated_sums(const Setting& setting);

// ---- The shipped module's sums, in bits up to where its closed forms take over (sums.cpp)
Compared loans(const Setting& setting);
Compared depreciations(const Setting& setting);
Compared bonds(const Setting& setting);

// ---- Closed forms that take over early (abi/steps.hpp), within a bound of the shipped module's loops (early_forms.cpp)
Compared early_forms(const Setting& setting);

inline bool same_bits_or_nan(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

}  // namespace finance::closed
