// Counts, rates and amounts that are hard on loops and searches.
#pragma once

#include "hostile/random.hpp"

namespace finance::hostile {

// Whole: up to `longest` each power of ten equally likely; where that reaches 32 bits, also the limits of loops and widths.
double count(Random& random, double longest);

// Coupons a year: those that have months, some others; where `any`, up to 32 bits.
double frequency(Random& random, bool any);

// A fraction: everyday ones, any above 0, those that rounding or a search meets with, a few below 0.
double rate(Random& random);

// Money: everyday ones, near par, any size, either sign.
double amount(Random& random);

// How many times the straight-line rate.
double factor(Random& random);

// A day-count basis by its code, or the missing value.
double basis(Random& random);

// Next to x: another last digit, double, half, a part of a hundredth, the other sign.
double beside(Random& random, double x);
// The same for whole numbers.
double whole_beside(Random& random, double x);

}  // namespace finance::hostile
