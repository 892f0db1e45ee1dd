// The lists of a call: where their values stand in it, and that two of them belong together value by value.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "calls/diagnosis.hpp"

namespace finance::calls {

// The call's arguments from one entry a parameter: lists unrolled where they stand. scalars and lists have an entry for
// each given parameter, and only the one of its kind is looked at.
std::vector<host::Argument> unrolled(const catalogue::Calculation& calculation, Arguments scalars,
                                     std::span<const std::span<const double>> lists);

// Values of a list of dates, and with them those of the list beside it, into the order of the dates; values of one day
// keep theirs. Calls without dates stay as they are, and so do those with a date that is no whole number or with a value
// that is missing: they are refused, and the argument at fault keeps its place.
void put_in_order_of_dates(const catalogue::Calculation& calculation, std::vector<host::Argument>& arguments);

// Two lists that have not equally many values: the call itself cannot tell where the first one ends.
struct Unpaired {
    const catalogue::Parameter& first;
    const catalogue::Parameter& second;
    std::size_t first_size;
    std::size_t second_size;
};

// size(i): how many values the list of parameter i has, of the `given` first ones.
template <typename Size>
std::optional<Unpaired> unpaired(const catalogue::Calculation& calculation, std::size_t given, Size size) {
    for (std::size_t i = 1; i < given; ++i) {
        const catalogue::Parameter& first = calculation.parameters[i - 1];
        const catalogue::Parameter& second = calculation.parameters[i];
        if (!is_list(first.kind) || !is_list(second.kind) || size(i - 1) == size(i)) continue;
        return Unpaired{first, second, size(i - 1), size(i)};
    }
    return {};
}

// "values and dates do not pair up: 3 and 2 values"; name: a parameter's as the reader knows it.
std::string pairing_words(const Unpaired& lists, std::string (*name)(std::string_view));
// "XNPV: 3 values, but 2 dates"
std::string named_pairing_words(const catalogue::Calculation& calculation, const Unpaired& lists);

}  // namespace finance::calls
