// Lists of money and of rates that are hard on sums and searches.
#pragma once

#include <vector>

#include "hostile/random.hpp"

namespace finance::hostile {

// With one rate, with several, or with none: in signs, sizes and zeros.
std::vector<double> flows(Random& random, std::size_t size);

std::vector<double> rates(Random& random, std::size_t size);

// A list much like this one: a value, a stretch or all of it changed, in the same number.
void change(Random& random, std::vector<double>& values);

}  // namespace finance::hostile
