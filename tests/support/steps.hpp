// How many steps a call may make, for builds that count them (abi/steps.hpp).
#pragma once

#include "abi/steps.hpp"

namespace finance::test {

// A call with so many arguments, of which the texts have so many characters.
constexpr std::int64_t most_steps(std::size_t arguments, std::size_t characters) {
    return most_steps_without_lists + most_steps_of_a_value * static_cast<std::int64_t>(arguments) +
           most_steps_of_a_character * static_cast<std::int64_t>(characters);
}

}  // namespace finance::test
