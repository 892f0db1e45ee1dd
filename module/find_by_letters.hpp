// The short way to a calculation's name, by its letters.
//
//  (1) What a name means is what a binary search through the host's collating table finds (find_calculation.cpp). Where
//      that table has the letters in ascending order, each after what pads a shorter text, it has the names in the order
//      of the list, no two of them equal: the search then finds each row by the row's own name.
//  (2) A text of as many bytes, each of which the table maps as it maps the name's, goes the name's way through the search:
//      with every table of (1) a name in capitals does, and one in other letters where the table folds their case.
//  (3) Of everything else only the search can tell.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "module/collating_letters.hpp"
#include "module/financial_list.hpp"
#include "module/find_calculation.hpp"
#include "module/known_names.hpp"

namespace finance {

static_assert(std::ranges::all_of(calculation_names, may_be_known), "names are of 2 to 16 capitals");

inline constexpr KnownNames<calculation_count> known_rows = known_names(calculation_names);
static_assert(known_rows.are_apart, "no multiplier gives each name a slot of its own");

// Index in FinancialList of the name that a text without trailing blanks is by (2), where the table is one of (1);
// unknown_calculation where it is none.
inline std::int32_t find_by_letters(const unsigned char* mapped, const char* text, std::int64_t length) {
    if (length < least_known_length) return unknown_calculation;
    const NameKey key = key_of(text, length);
    const NameKey lower = in_lower_case(key);
    const bool in_capitals = !has_lower_case(key);  // asked here, the key is done with: no register is saved for it
    const std::size_t row = known_rows.candidate(lower);
    if (lower != known_rows.keys[row]) return unknown_calculation;
    if (!in_capitals && !case_is_folded(mapped, text, length)) return unknown_calculation;
    return static_cast<std::int32_t>(row);
}

}  // namespace finance
