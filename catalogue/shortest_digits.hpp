// The fewest decimal digits that name a double among all doubles.
//
// The method is Raffaello Giulietti's ("The Schubfach way to render doubles", 2020):
//  (1) A double is c 2^q. All numbers between the middles to its neighbours read back to it; the middles themselves do
//      where c is even, since ties go to the even one.
//  (2) 10^k is the largest power of ten that is no wider than that interval: some multiple of it lies within, and of
//      those of 10^(k+1) at most one. That one is shortest where it is there; else the multiple of 10^k that is nearest.
//  (3) Ends and value are scaled by 10^-k, kept to 128 bits and rounded to odd, which is enough to compare them right.
#pragma once

#include <cstdint>

namespace finance::catalogue {

// digits * 10^exponent; the last digit is not 0.
struct ShortestDigits {
    std::uint64_t digits = 0;
    int exponent = 0;
};

// Of a finite value above 0.
ShortestDigits shortest_digits(double value);

}  // namespace finance::catalogue
