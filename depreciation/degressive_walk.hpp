// The later periods of degressive depreciation, in whole units.
#pragma once

#include <cstdint>

namespace finance {

// The amount of the last of `periods` periods (at least 1): each takes r of what is left, rounded half away from zero,
// nothing where salvage is more than what is left. In the last but one of n periods r becomes 0.5, in the last 1.
//
// Runs of equal amounts are passed over at once. Where that leaves more than ten million steps the amount is formed
// from what would be left without rounding, and is within one unit; in the
// periods where salvage is crossed, it is that or 0.
double degressive_amount(double remaining, double salvage, double r, std::int32_t n, std::int32_t periods);

}  // namespace finance
