// Sums over coupons.
//
//  (1) A sum is formed term by term, as its formula has it, for up to two hundred million terms; in a search for up to
//      ten million, and as long as the search has added no more than two hundred million. Terms near the denormal
//      numbers, which some processors are slow with, are allowed a twentieth of that.
//  (2) It ends early where no bit of the result can change any more: v <= 1 lets no later power be larger than the last
//      one, and a sum that a term leaves as it was is left so by every smaller one, since rounding keeps the order; or
//      the power is infinite or no number, and stays so. Whether it may end is looked at between blocks of terms.
//  (3) Beyond (1) its closed form takes over.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "abi/conversions.hpp"
#include "abi/limits.hpp"
#include "lanes/lanes.hpp"

namespace finance {

inline constexpr double longest_literal_sum = 2e8 / static_cast<double>(walks_shortened);
inline constexpr double longest_literal_search = 2e8 / static_cast<double>(walks_shortened);
inline constexpr double cost_of_denormals = 20.0;  // of a term, in usual terms
inline constexpr std::int64_t block_of_terms = 64;
static_assert(static_cast<std::int64_t>(longest_literal_sum) % block_of_terms == 0);

// Of a term of the size of `amount`, or down from it to where (2) ends the sum.
inline double cost_of_term(double amount) { return std::abs(amount) < near_denormals ? cost_of_denormals : 1.0; }

// Terms of this cost that a search may form literally which has added so many.
inline double literal_terms_of_search(double added, double cost) {
    const double left = std::min(double{longest_literal_loop}, longest_literal_search - added);
    return cost == 1.0 ? left : static_cast<double>(truncate_to_int64(left / cost));
}

// Where the block ends that begins after k terms, of N or at most `limit`. All are whole, and k is below both others.
inline double end_of_block(double k, double N, double limit) {
    const std::int64_t next = (static_cast<std::int64_t>(k) / block_of_terms + 1) * block_of_terms;
    return std::min({static_cast<double>(next), N, limit});
}

// Adds the terms after k up to end by step(sums), and answers where it ended: at end; where at_rest(sums, terms left)
// says that it may (2); or at limit, from where closed() gives the sums (3). The first two ask between blocks.
template <typename Sums, typename Step, typename AtRest, typename Closed>
inline double walk_terms(Sums& sums, double k, double end, double limit, Step step, AtRest at_rest, Closed closed) {
    while (end > k) {
        if (k >= limit) {
            sums = closed();
            break;
        }
        const double stop = end_of_block(k, end, limit);
        count_steps(static_cast<std::int64_t>(stop - k));
        for (auto left = static_cast<std::int32_t>(stop - k); left > 0; --left) step(sums);
        k = stop;
        if (end > k && at_rest(sums, end - k)) break;
    }
    return k;
}

// Calls sum with the division by the coupons of a year: for 1, 2 and 4 the product with the inverse, which is exact.
template <typename Sum>
inline void with_division_by(double f, Sum sum) {
    if (f == 1.0 || f == 2.0 || f == 4.0) {
        sum([inverse = 1.0 / f](auto x) { return x * inverse; });
    } else {
        sum([f](auto x) { return x / f; });
    }
}

// True where a sum has no bits left for an amount of this size, added or taken.
inline bool hides(double sum, double amount) { return sum + amount == sum && sum - amount == sum; }

// ---- Closed forms, for v > 0 and whole n >= 1

// Sums of powers of u, which is v, or 1 / v where that is below 1.
// Error  relative, 9e-16 worst of 2e5 draws, n to 3e10, |n ln v| to 760 and v down to 1e-12, against 200 bits
struct PowerSums {
    double plain;     // 1 + u + .. + u^(n-1)
    double weighted;  // 0 + u + 2 u^2 + .. + (n-1) u^(n-1)
};
PowerSums sums_from_largest(double v, double n);

// 1 + v + .. + v^(n-1)
double sum_of_powers(double v, double n);

// Discounted coupons of 1 at v = 1 / (1 + x/f), paid e, e + 1, .. periods from now.
// Error  relative, 8e-14 worst of 2e5 such draws, e to 1e10: the last exponent is rounded to a double
template <typename N>
struct DiscountSumsOf {
    N S;  // sum of v^e
    N t;  // the last v^e
    N D;  // sum of its derivatives by x, -e v^(e+1) / f
    N g;  // the last derivative

    // The next term, at e; over_f divides by f.
    template <typename OverF>
    void step(N v, N e, OverF over_f) {
        t = t * v;
        S = S + t;
        g = over_f(-(v * e) * t);
        D = D + g;
    }
    friend DiscountSumsOf select(TruthOf<N> truth, const DiscountSumsOf& yes, const DiscountSumsOf& no) {
        return {select(truth, yes.S, no.S), select(truth, yes.t, no.t), select(truth, yes.D, no.D),
                select(truth, yes.g, no.g)};
    }
};
using DiscountSums = DiscountSumsOf<double>;
DiscountSums closed_discount_sums(double v, double f, double e, double n);

}  // namespace finance
