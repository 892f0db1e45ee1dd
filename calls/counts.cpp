#include "calls/counts.hpp"

#include <algorithm>
#include <cstddef>
#include <span>

#include "catalogue/layout.hpp"

namespace finance::calls {

using catalogue::Calculation;
using catalogue::Need;
using catalogue::Parameter;

namespace {

using Parameters = std::span<const Parameter>;

std::string as_typed(const host::Argument& argument) {
    if (argument.kind() == host::Argument::Kind::text) return std::string{argument.text()};
    return argument.kind() == host::Argument::Kind::number ? catalogue::plain_text(argument.number()) : std::string{};
}

bool has_a_place(const Parameter& parameter) { return parameter.need != Need::optional; }

void add_names(std::string& names, Parameters parameters) {
    for (const Parameter& parameter : parameters) {
        if (has_a_place(parameter)) names.append(names.empty() ? "" : ", ").append(parameter.name);
    }
}

std::string too_few(const std::string& names) { return names.empty() ? "" : too_few_words(names); }

std::string fault_without_lists(Parameters parameters, Arguments arguments) {
    if (arguments.size() > parameters.size()) {
        return too_many_words(as_typed(arguments[parameters.size()]));
    }
    std::string names;
    add_names(names, parameters.subspan(arguments.size()));
    return too_few(names);
}

// Those before the lists come first, then the lists; those after them come last. Of an odd number of values for two lists
// the last one is that of a parameter that may be left out.
std::string fault_with_lists(const Calculation& calculation, std::size_t given) {
    const Parameters parameters = calculation.parameters;
    const auto is_of_list = [](const Parameter& parameter) { return is_list(parameter.kind); };
    const auto first = static_cast<std::size_t>(std::ranges::find_if(parameters, is_of_list) - parameters.begin());
    const std::size_t lists = list_count(calculation);
    const Parameters after = parameters.subspan(first + lists);
    const auto scalars = static_cast<std::size_t>(std::ranges::count_if(after, has_a_place));
    const std::size_t before = std::min(given, first);
    std::size_t left = given - before;
    if (lists == 2 && left % 2 == 1 && !after.empty() && !has_a_place(after.back())) --left;
    std::string names;
    add_names(names, parameters.subspan(before, first - before));
    if (left == 0) add_names(names, parameters.subspan(first, lists));
    if (left <= scalars) add_names(names, after);
    if (!names.empty()) return too_few(names);
    if (lists == 1 || (left - scalars) % 2 == 0) return {};
    return unpaired_words(names_of_two(parameters[first], parameters[first + 1]));
}

}  // namespace

std::string names_of_two(const Parameter& first, const Parameter& second) {
    return std::string{first.name} + " and " + std::string{second.name};
}

std::string count_fault(const Calculation& calculation, Arguments arguments) {
    if (list_count(calculation) > 0) return fault_with_lists(calculation, arguments.size());
    return fault_without_lists(calculation.parameters, arguments);
}

int misplaced_text(const Calculation& calculation, Arguments arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i].kind() != host::Argument::Kind::text) continue;
        const std::size_t parameter = place_of(calculation, i + 1, arguments.size()).parameter;
        const bool placed = parameter < calculation.parameters.size();
        if (placed && calculation.parameters[parameter].kind != catalogue::Kind::basis) return static_cast<int>(i) + 1;
    }
    return 0;
}

}  // namespace finance::calls
