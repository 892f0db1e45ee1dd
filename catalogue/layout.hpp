// Which value of a call belongs to which parameter, where lists make that a matter of how many values there are.
#pragma once

#include <cstddef>
#include <vector>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

// How many of that many values each parameter takes, in the parameters' order. One list takes what the others leave.
// Two lists take half each; an odd value beyond them is that of the optional parameter after them.
std::vector<std::size_t> shares(const Calculation& calculation, std::size_t values);

struct Place {
    std::size_t parameter = 0;  // index; the number of parameters where the position is beyond them
    std::size_t element = 0;    // of a list: 1 the first; 0 where the parameter is no list
};

// The parameter of a position, 1 the first after the name.
Place place_of(const Calculation& calculation, std::size_t position, std::size_t values);

}  // namespace finance::catalogue
