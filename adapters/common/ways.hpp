// Every calculation has three functions in SQL, which differ in what they give where there is no value.
#pragma once

#include <array>
#include <cstdint>

namespace finance::adapters {

enum class Way : std::uint8_t {
    answer,   // fin_price: a refusal is an error
    attempt,  // fin_try_price: a refusal is missing, told by no error and in no words
    reason,  // fin_why_price: the sentence, of a refusal and of an answer that is missing; nothing where there is a value
};

inline constexpr std::array ways{Way::answer, Way::attempt, Way::reason};

}  // namespace finance::adapters
