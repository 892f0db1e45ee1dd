// The walks of the depreciation calculations, period by period and without any short cut, in any kind of number.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "depreciation/declining_spans.hpp"
#include "tests/support/precise.hpp"

namespace finance::test {

inline double whole_units(double x) {
    const double moved = x > 0.0 ? x + 0.5 : x - 0.5;
    const bool fits = moved > -2147483649.0 && moved < 2147483648.0;
    return fits ? std::trunc(moved) + 0.0 : -2147483648.0;
}

// DB from its rate on.
inline double literal_fixed(double cost, double rate, double m, std::int64_t L, std::int64_t p) {
    const double first = cost * m * rate / 12.0;
    double accumulated = first;
    double d = first;
    for (std::int64_t i = 2; i <= std::min(p, L); ++i) {
        d = (cost - accumulated) * rate;
        accumulated += d;
    }
    return p <= L || p == 1 ? d : (12.0 - m) * rate * (cost - accumulated) / 12.0;
}

// DDB; cost, cost - salvage, life and factor of the asset.
template <typename Number>
Number literal_double(double cost, double salvage, double life, double factor, std::int64_t period) {
    if (salvage > cost) return 0;
    Number accumulated = 0;
    Number d = 0;
    for (std::int64_t i = 1; i <= period; ++i) {
        const Number remaining = cost - accumulated;
        d = 0;
        if (!(salvage > remaining)) {
            const Number declining = remaining * factor / life;
            const Number all = Number{cost} - salvage - accumulated;
            d = all < declining ? all : declining;
        }
        accumulated += d;
    }
    return d;
}

// VDB without a switch, and with one.
template <typename Number>
Number literal_declining(const DecliningAsset& a, std::int64_t s, std::int64_t e) {
    Number accumulated = 0;
    Number total = 0;
    for (std::int64_t i = 0; i < e; ++i) {
        const Number d = (a.cost - accumulated) * a.factor / a.life;
        if (accumulated + d > a.depreciable) return i < s ? total : total + (a.depreciable - accumulated);
        if (i >= s) total += d;
        accumulated += d;
    }
    return total;
}

template <typename Number>
Number literal_switching(const DecliningAsset& a, std::int64_t s, std::int64_t e) {
    Number accumulated = 0;
    Number total = 0;
    Number d = 0;
    bool switched = false;
    for (std::int64_t i = 0; i < e; ++i) {
        if (!switched) {
            d = (a.cost - accumulated) * a.factor / a.life;
            const Number straight = (a.depreciable - accumulated) / (a.life - static_cast<double>(i));
            if (d < straight) {
                d = straight;
                switched = true;
            }
        }
        if (accumulated + d > a.depreciable) {
            if (i >= s) total += a.depreciable - accumulated;
            d = 0;
            switched = true;
        } else {
            accumulated += d;
            if (i >= s) total += d;
        }
    }
    return total;
}

// AMORDEGRC after its first amount.
inline double literal_degressive(double remaining, double salvage, double r, std::int32_t n, std::int32_t periods) {
    double d = 0.0;
    for (std::int32_t i = 0; i < periods; ++i) {
        if (i == n - 2) {
            r = 0.5;
        } else if (i == n - 1) {
            r = 1.0;
        }
        d = whole_units(salvage > remaining ? 0.0 : remaining * r);
        remaining = remaining - d;
    }
    return d;
}

// ---- Assets of every shape

inline double either_sign(Draws& draw, double x) { return draw.whole(0, 1) == 0 ? x : 0.0 - x; }

// Costs of both signs and 0; salvages on both sides of 0 and of the cost, and on them.
inline double draw_cost(Draws& draw) {
    return draw.whole(0, 19) == 0 ? 0.0 : either_sign(draw, draw.log_between(0.1, 1e6));
}

inline double draw_salvage(Draws& draw, double cost) {
    switch (draw.whole(0, 6)) {
        case 0:
            return 0.0;
        case 1:
            return cost;
        case 2:
            return cost * draw.between(-3.0, 3.0);
        case 3:
            return cost * draw.log_between(1e-9, 1.0);
        case 4:
            return 0.0 - cost * draw.log_between(1e-6, 1e6);
        case 5:
            return either_sign(draw, draw.log_between(0.1, 1e9));
        default:
            return cost * draw.between(0.0, 1.0);
    }
}

// Factors from a straight line's to beyond the life; q = factor / life = 1 and 2 are its turning points.
inline double draw_factor(Draws& draw, double life) {
    switch (draw.whole(0, 6)) {
        case 0:
            return 2.0;
        case 1:
            return draw.log_between(1e-6, 1e6);
        case 2:
            return life * draw.between(0.0, 3.0) + 1e-9;
        case 3:
            return life;
        case 4:
            return 2.0 * life;
        case 5:
            return life * (2.0 + draw.between(-1e-3, 1e-3));
        default:
            return draw.between(0.5, 5.0);
    }
}

inline double draw_life(Draws& draw, double longest) {
    const double life = draw.log_between(1.0, longest);
    return draw.whole(0, 2) == 0 ? life : std::floor(life);
}

// s anywhere up to the life, also after e.
struct DrawnSpan {
    std::int32_t s;
    std::int32_t e;
};

inline DrawnSpan draw_span(Draws& draw, double life) {
    const auto last = static_cast<std::int64_t>(life);
    const std::int64_t s = draw.whole(0, 2) == 0 ? 0 : draw.whole(0, last);
    const std::int64_t e = draw.whole(0, 3) == 0 ? last : draw.whole(1, last);
    return {static_cast<std::int32_t>(s), static_cast<std::int32_t>(e)};
}

}  // namespace finance::test
