// Sums over coupons.
//
//  (1) A sum is formed term by term, as its formula has it, for up to ten million terms.
//  (2) It ends early where nothing can change a bit any more. Whether it may is looked at between blocks of terms.
//  (3) Beyond, and where the searches of one call have added a hundred million terms, its closed form takes over.
#pragma once

#include <algorithm>
#include <cstdint>

#include "abi/conversions.hpp"

namespace finance {

inline constexpr double longest_literal_sum = 1e7;
inline constexpr double longest_literal_search = 1e8;
inline constexpr std::int64_t block_of_terms = 64;
static_assert(static_cast<std::int64_t>(longest_literal_sum) % block_of_terms == 0);

// Where the block ends that begins after k terms, of N or at most `limit`. All are whole, and k is below both others.
inline double end_of_block(double k, double N, double limit = longest_literal_sum) {
    const std::int64_t next = (static_cast<std::int64_t>(k) / block_of_terms + 1) * block_of_terms;
    return std::min({static_cast<double>(next), N, limit});
}

// Calls add once for each term after k up to end.
template <typename Add>
inline void add_terms(double k, double end, Add add) {
    for (auto left = static_cast<std::int32_t>(end - k); left > 0; --left) add();
}

// Calls sum with the division by the coupons of a year: for 1, 2 and 4 the product with the inverse, which is exact.
template <typename Sum>
inline void with_division_by(double f, Sum sum) {
    if (f == 1.0 || f == 2.0 || f == 4.0) {
        sum([inverse = 1.0 / f](double x) { return x * inverse; });
    } else {
        sum([f](double x) { return x / f; });
    }
}

// The closed forms, for v > 0 and whole n >= 1.
// Error  relative, 9e-14 for n up to 1e10 and |n ln v| <= 600, against 200 bits
double sum_of_powers(double v, double n);           // 1 + v + .. + v^(n-1)
double sum_of_weighted_powers(double v, double n);  // 0 + v + 2 v^2 + .. + (n-1) v^(n-1)

}  // namespace finance
