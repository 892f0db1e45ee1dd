// How many steps a call makes in loops whose length an argument decides. Builds that test this count them; in all others
// a count is nothing, and the module's code the same to the byte.
//
//  (1) A step is what a loop repeats: a period, a term, a value of a list, a character of a text. What is passed over in
//      a jump is not walked and not counted.
//  (2) No call makes more than most_steps_without_lists, and some for each value and character (tests/support/steps.hpp).
//  (3) Builds for fuzzers walk short: where a closed form takes over from a literal loop, it does so 12,500 times as
//      early. A fuzzer under sanitizers would otherwise spend nearly all of its time in loops of millions of steps.
#pragma once

#include <cstdint>

namespace finance {

// What limits of literal loops are divided by.
#ifdef ZELKOVAN_SHORT_WALKS
inline constexpr std::int64_t walks_shortened = 12'500;
#else
inline constexpr std::int64_t walks_shortened = 1;
#endif

#ifdef ZELKOVAN_COUNT_STEPS
inline thread_local std::int64_t steps_made = 0;
inline void count_steps(std::int64_t steps) { steps_made += steps; }
#else
inline void count_steps(std::int64_t) {}
#endif
inline void count_step() { count_steps(1); }

// Two hundred million terms of a sum, and what no limit shortens: DB comes to rest within 1.5 million periods, three sums
// over the calendar's cycles are of 80,000 periods each, a search adds a block of terms for each of its hundred rates. For
// each of a list's values, of which a flow and its date are two, three searches of 101 rates and some passes before them;
// a text is gone through twice.
inline constexpr std::int64_t most_steps_without_lists = 200'000'000 / walks_shortened + 2'000'000;
inline constexpr std::int64_t most_steps_of_a_value = 160;
inline constexpr std::int64_t most_steps_of_a_character = 2;

}  // namespace finance
