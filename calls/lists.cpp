#include "calls/lists.hpp"

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
