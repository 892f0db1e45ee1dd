// Why a call was refused, in one line.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "catalogue/catalogue.hpp"

namespace finance::catalogue {

// An argument as it was given: absent, a number (a NaN is missing), a text.
using Given = std::variant<std::monostate, double, std::string_view>;

// The argument to name for a refusal: the one that the module marked, or else, since a calculation may refuse a missing
// value without a mark, the first required one that has no value; 0 where none is at fault.
int argument_at_fault(const Calculation& calculation, std::span<const Given> arguments, int flagged);

// flagged: the position of the argument at fault, 1 the first after the name; anything else: none is at
// fault, and the calculation's failure sentence is the reason.
std::string reason(const Calculation& calculation, std::span<const Given> arguments, int flagged);

// "argument 2 (nper)", in a list "argument 3 (flows, value 2)".
std::string argument_label(const Calculation& calculation, std::size_t position, std::size_t values);

}  // namespace finance::catalogue
