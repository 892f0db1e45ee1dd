#include "calls/lists.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "catalogue/layout.hpp"

namespace finance::calls {

std::vector<host::Argument> unrolled(const catalogue::Calculation& calculation, Arguments scalars,
                                     std::span<const std::span<const double>> lists) {
    std::size_t size = scalars.size();
    for (const std::span<const double> list : lists) size += list.size();
    std::vector<host::Argument> arguments;
    arguments.reserve(size);
    for (std::size_t i = 0; i < scalars.size(); ++i) {
        if (is_list(calculation.parameters[i].kind)) {
            arguments.insert(arguments.end(), lists[i].begin(), lists[i].end());
        } else {
            arguments.push_back(scalars[i]);
        }
    }
    return arguments;
}

namespace {

bool is_day(const host::Argument& argument) { return argument.number() == std::floor(argument.number()); }

void reorder(std::span<host::Argument> values, std::span<const std::size_t> order) {
    const std::vector<host::Argument> before{values.begin(), values.end()};
    std::ranges::transform(order, values.begin(), [&](std::size_t i) { return before[i]; });
}

}  // namespace

void put_in_order_of_dates(const catalogue::Calculation& calculation, std::vector<host::Argument>& arguments) {
    const auto& parameters = calculation.parameters;
    const auto dates = std::ranges::find(parameters, catalogue::Kind::dates, &catalogue::Parameter::kind);
    if (dates == parameters.end() || !std::ranges::all_of(arguments, has_value)) return;
    const std::vector<std::size_t> shares = catalogue::shares(calculation, arguments.size());
    const auto at = static_cast<std::size_t>(dates - parameters.begin());
    const std::size_t size = shares[at];
    const auto first = std::accumulate(shares.begin(), shares.begin() + (dates - parameters.begin()), std::size_t{0});
    const std::span days = std::span{arguments}.subspan(first, size);
    if (!std::ranges::all_of(days, is_day) || std::ranges::is_sorted(days, {}, &host::Argument::number)) return;
    std::vector<std::size_t> order(size);
    std::iota(order.begin(), order.end(), std::size_t{0});
    // Equal days stay as they stand: so do their places.
    std::ranges::sort(order, {}, [&](std::size_t i) { return std::pair{days[i].number(), i}; });
    reorder(std::span{arguments}.subspan(first - size, size), order);  // the values stand before their dates
    reorder(days, order);
}

std::string pairing_words(const Unpaired& lists, std::string (*name)(std::string_view)) {
    return name(lists.first.name) + " and " + name(lists.second.name) +
           " do not pair up: " + std::to_string(lists.first_size) + " and " + std::to_string(lists.second_size) +
           " values";
}

std::string named_pairing_words(const catalogue::Calculation& calculation, const Unpaired& lists) {
    const auto counted = [](std::size_t size, const catalogue::Parameter& list) {
        return std::to_string(size) + ' ' + std::string{list.name};
    };
    return std::string{calculation.name} + ": " + counted(lists.first_size, lists.first) + ", but " +
           counted(lists.second_size, lists.second);
}

}  // namespace finance::calls
