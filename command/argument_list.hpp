// The arguments after a calculation's name, read into the values of a call.
//
//  (1) Values stand in the parameters' order, or are named: name=value, the name in upper or lower case. Named ones
//      come last. A name that is given nothing (name=) counts as left out.
//  (2) What is left out before a value that is given is absent: the module says whether it can do without. What is left
//      out at the end is not in the call, and must be optional; but a required one at the end that was named with
//      nothing is absent too.
//  (3) A list takes the values that the parameters around it leave, one by one or separated by commas. Named, it takes
//      its values separated by commas or with its name repeated.
//  (4) Two lists share values evenly, the first half to the first; an odd one at the end is the optional parameter
//      after them. With commas, each list is one argument. A comma in brackets separates nothing here: max(a,b).
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.hpp"
#include "host/embedded_host.hpp"

namespace finance::command {

class Variables;

// A value's text and the parameter that takes it; empty where nothing is given.
struct PlacedText {
    std::size_t parameter = 0;
    std::string_view text{};
};

// By position in the call, the texts unread. Views into the tokens. UsageError where they do not fit the parameters.
std::vector<PlacedText> place_arguments(const catalogue::Calculation& calculation,
                                        std::span<const std::string_view> tokens);

// Bases are views into the tokens. variables: may be null. UsageError where they cannot be read.
std::vector<host::Argument> read_arguments(const catalogue::Calculation& calculation,
                                           std::span<const std::string_view> tokens,
                                           const Variables* variables = nullptr);

}  // namespace finance::command
