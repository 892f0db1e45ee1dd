// Sums over coupons.
//
//  (1) A sum is formed term by term, as its formula has it, for up to ten million terms.
//  (2) It ends early where nothing can change a bit any more.
//  (3) Beyond, and where the searches of one call have added a hundred million terms, its closed form takes over.
#pragma once

#include "abi/conversions.hpp"

namespace finance {

inline constexpr double longest_literal_sum = 1e7;
inline constexpr double longest_literal_search = 1e8;

// The closed forms, for v > 0 and whole n >= 1.
// Error  relative, 9e-14 for n up to 1e10 and |n ln v| <= 600, against 200 bits
double sum_of_powers(double v, double n);           // 1 + v + .. + v^(n-1)
double sum_of_weighted_powers(double v, double n);  // 0 + v + 2 v^2 + .. + (n-1) v^(n-1)

}  // namespace finance
