// Days that are hard on a calendar: any that a double holds, above all those around which a 32-bit or 64-bit quantity of
// a calendar wraps. All are whole, and days since 1960-01-01.
#pragma once

#include <vector>

#include "hostile/random.hpp"

namespace finance::hostile {

// A day on either side of today, from yesterday to beyond 64 bits.
double day(Random& random);

// One in our time, or beside a year at which years or months of 32 bits wrap: between two of these calendars count longest.
double corner(Random& random);

// Days from one date to another, either sign: next to nothing, up to `longest` periods of so many a year, or what makes
// counts of years, months or periods wrap.
double distance(Random& random, double periods_a_year, double longest);

// The first two of these alone.
double near_distance(Random& random, double periods_a_year, double longest);

// `size` days: equal, regular, in no order, or each of its own.
std::vector<double> days(Random& random, std::size_t size);

}  // namespace finance::hostile
