// Why a call was refused, in one line.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "catalogue/catalogue.hpp"
#include "host/evaluator.hpp"

namespace finance::calls {

using Arguments = std::span<const host::Argument>;

// Neither left out nor missing.
bool has_value(const host::Argument& argument);

// The number of a place that may be left out, missing or beyond the arguments: then it is 0.
double number_or_0(Arguments arguments, std::size_t i);

// The argument to name for a refusal: the one that the module marked, or else, since a calculation may refuse a missing
// value without a mark, the first required one that has no value; 0 where none is at fault.
int argument_at_fault(const catalogue::Calculation& calculation, Arguments arguments, int flagged);

// The rule that the argument breaks, in words; nothing where value, kind, bounds and orders are as they must be.
// position: 1 the first after the name, of an argument that has a parameter.
std::optional<std::string> broken_rule(const catalogue::Calculation& calculation, Arguments arguments,
                                       std::size_t position);

// flagged: the position of the argument at fault; anything that is no argument's: none is at fault, and the
// calculation's failure sentence is the reason.
std::string reason(const catalogue::Calculation& calculation, Arguments arguments, int flagged);

// As help counts, a list as one: "argument 2 (nper)", in a list "argument 2 (flows, value 2)". position: each value
// counts.
std::string argument_label(const catalogue::Calculation& calculation, std::size_t position, std::size_t values);

}  // namespace finance::calls
